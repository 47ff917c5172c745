#pragma once

#include "dataset/chooser/sourceinfo.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class ItemLister;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class SourceView;
class WorkFolder;

/// Chooses a raster band or a vector layer of anything that GDAL opens: a file, a file of an archive or a
/// folder, a subdataset, a connection. It shows what is known of the source and a picture of it, and says in
/// words why a source cannot be chosen.
///
/// Opening is one call of GDAL, which a server that does not answer holds up until its time limit; listing and
/// pictures are read in slices of the event loop.
class ImageChooser : public QDialog
{
    Q_OBJECT

public:
    /// workFolder: for a virtual raster that describes a file without a header. It outlives this object, and
    /// the chosen name is valid as long as the folder.
    ImageChooser(SourceWanted wanted, WorkFolder &workFolder, QWidget *parent = nullptr);
    ~ImageChooser() override;

    /// Opens a source as if it had been typed: a path, or a name of GDAL's.
    void setSource(const QString &name);

    /// What is chosen: the name by which GDAL opens it, the band (from 1) or the name of the layer. Valid after
    /// the dialog was accepted.
    QString name() const;
    int band() const;
    QString layer() const;

    /// Whether something may be chosen now.
    bool isComplete() const;

    /// Whether a list or a picture is being read.
    bool isBusy() const;

protected:
    /// Return opens what was typed, and accepts once it is open.
    void keyPressEvent(QKeyEvent *event) override;

private:
    QHBoxLayout *sourceRow();
    QHBoxLayout *buttonRow();
    void connectControls();

    void openTyped();
    void select(bool folder);
    void listItems();
    void listMore();
    void showItem();
    void activateItem();
    void showSource(const SourceInfo &info);
    void updateButtons();
    void readTile();
    void convertHeader();

    SourceWanted m_wanted;
    WorkFolder &m_workFolder;
    SourceInfo m_source; ///< what the field names; the view may show one of its items
    QTimer m_listTimer;
    std::unique_ptr<ItemLister> m_lister;

    QLineEdit *m_pLESource;
    QPushButton *m_pPBOpen;
    QPushButton *m_pPBFile;
    QPushButton *m_pPBFolder;
    QTreeWidget *m_pItems;
    SourceView *m_pView;
    QLabel *m_pLProblem;
    QPushButton *m_pPBReadTile;
    QPushButton *m_pPBConvert;
    QPushButton *m_pPBChoose;
    QPushButton *m_pPBCancel;
};
