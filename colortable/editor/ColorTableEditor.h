#pragma once

#include "colortable/editor/ReliefPreview.h"
#include "colortable/editor/TableHistory.h"
#include "dataset/elevationgrid.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class ColorGrid;
class ColorTriangle;
class CursorFields;
class GradientView;
class LibraryList;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QMenu;

/// What the editor opens with.
struct EditorStart
{
    QString file; ///< path of the table's file; a library table is not overwritten, and saved under a new name
    bool isTemporary = false; ///< the file goes with the program, so that the table is saved under a new name
    QList<QuvoColorDef> entries;
    QString libraryFolder;
    QString ownFolder; ///< folder of the user's tables, which may not exist yet
    QString dem;       ///< path of the DEM; empty: there is none
    int band = 1;      ///< from 1
    double minimum = 0.0;
    double maximum = 0.0;     ///< extreme elevations of the DEM, for percentages
    bool hasExtremes = false; ///< they are known
};

/// The colour table editor: the gradient with its cursors over the DEM's histogram, the fields, the triangle
/// and the grid of colours, and the colour relief of the reduced DEM, which follows each change. Nothing is
/// written to a file unless the user saves.
class ColorTableEditor : public QDialog
{
    Q_OBJECT

public:
    explicit ColorTableEditor(const EditorStart &start, QWidget *parent = nullptr);
    ~ColorTableEditor() override;

    /// The table under edit, for callers that show it elsewhere.
    const EditedTable &table() const { return m_history.table(); }

signals:
    /// The table was saved in a new file, which holds the table under edit from now on.
    void newColorFileCreated(const QString &path);
    /// The table was saved in the file with which the editor opened it.
    void currentColorFileDataChanged();
    /// The user wants to use the table without saving it in a file.
    void currentColorFileDataChanged(const QList<QuvoColorDef> &entries);
    /// A table of the user's folder was renamed.
    void colorFileRenamed(const QString &from, const QString &to);

public slots:
    void reject() override; ///< asks about unsaved changes
    bool save();
    bool saveAs();

private:
    void buildLayout();
    QWidget *buildTools();
    QWidget *buildColorParts();
    QWidget *buildPreview();
    QWidget *buildButtons();
    QMenu *buildOperations();
    QMenu *buildExports();
    QMenu *buildLegends();
    void connectParts();
    void showTable();
    void showTitle();
    void useSample();
    void zoomOnDem();
    void readGrid();
    void pickColor(const QColor &color, int series);
    void remember(const QColor &color, int series);
    void randomize();
    void scale();
    void chooseNoData();
    void saveLegend(bool classes);
    void openFile();
    void openTable(const QString &file);
    bool mayLeaveTable();
    bool write(const QString &file);
    void use();
    void operate(const QString &name, const EditedTable &table);

    EditorStart m_start;
    QString m_file;
    QStringList m_fileNotes; ///< about the reading of the file
    TableHistory m_history;
    ElevationGrid m_grid;
    std::unique_ptr<ElevationGridReader> m_reader;
    QTimer m_readTimer;
    QVector<double> m_sample;        ///< elevations of the DEM's cells in rising order
    bool m_sampleIsPercent = false;  ///< the gradient has them as percentages
    QVector<QAction *> m_demActions; ///< operations that need the DEM's elevations
    int m_pickSeries = 0;            ///< series of the last picked colour
    QVector<QColor> m_recent;        ///< colours picked in this editor, the last one first

    GradientView *m_gradient = nullptr;
    CursorFields *m_fields = nullptr;
    ColorTriangle *m_triangle = nullptr;
    ColorGrid *m_colors = nullptr;
    LibraryList *m_library = nullptr;
    ReliefPreview *m_preview = nullptr;
    QComboBox *m_vision = nullptr;
    QCheckBox *m_shaded = nullptr;
    QCheckBox *m_zoom = nullptr;
    QCheckBox *m_hasNoData = nullptr;
    QPushButton *m_noData = nullptr;
    QPushButton *m_save = nullptr;
    QLabel *m_note = nullptr;
};
