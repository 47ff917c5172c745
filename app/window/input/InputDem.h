#pragma once

#include "dataset/ExtremesScan.h"
#include "dataset/rasterinfo.h"
#include "panels/optionsWidget.h"

#include <QObject>
#include <QTimer>

class QComboBox;

/// The input DEM of the main dialog: an editable combo box of the recent paths, and a combo box of the bands.
class InputDem : public QObject
{
    Q_OBJECT

public:
    /// `dialog` owns the combo boxes and is the parent of warnings and file dialogs. All outlive this object.
    InputDem(QComboBox *paths, QComboBox *bands, QWidget *dialog);

    /// Path of the DEM: absolute, or a name by which GDAL opens a data set that is not a file. Empty while no
    /// DEM is open or the text in the combo box is another one.
    QString path() const;

    /// The tiles of the DEM where it is a mosaic; empty for a DEM that is one file, and with path().
    QStringList tiles() const;

    /// The file whose folder and base name name the products of the DEM: path(), or mosaicName(). Empty with
    /// path().
    QString namingInput() const;

    /// The files that the DEM is made of (RasterInfo::files).
    QStringList files() const { return m_files; }

    /// Number of the chosen band, from 1.
    int band() const;

    /// Path, band and extreme values of the DEM.
    const DemInfo &dem() const { return m_dem; }

    /// Sets the extreme values of the DEM's band, which replace an estimate; demChanged() follows.
    void setExtremes(const Extremes &extremes);

    /// Opens the file and makes it the input; changed() and demChanged() follow. On failure shows a warning,
    /// keeps text, bands and DEM, and returns false.
    bool choose(const QString &path);

    /// Makes the mosaic at `path` of these tiles the input, as choose() does. The recent list does not hold it.
    bool chooseMosaic(const QString &path, const QStringList &tiles);

    /// Opens the DEM again, whose file may have been written anew; a mosaic stays as it was opened.
    void reopen();

    /// Opens the file that the user selects in a file dialog.
    void select();

    /// Whether the first file dialog for a DEM opens in the current directory.
    void setKeepStartingDir(bool keep) { m_keepStartingDir = keep; }

signals:
    /// path() changed. It is empty while the user types.
    void changed(const QString &path);

    /// The DEM or band changed, or its extreme values became known. After each change of DEM or band the
    /// extreme values are estimated in the background, and the signal follows again; it follows once more where
    /// all cells are read quickly.
    void demChanged(const DemInfo &dem);

protected:
    /// Handles Return in the text field, which would also press the dialog's default button, and ignores the
    /// wheel, which would open one DEM after another.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Listing
    {
        MoveToFront,
        KeepOrder
    };

    bool open(const QString &typed, Listing listing);
    void openTyped();
    void openListed(int row);
    void showOpenedPath();
    void warn(const QString &file);
    void updateDem();
    void onScanned(const Extremes &extremes);
    void onTyped();
    void tryTyped();
    void accept(const QString &accepted, const RasterInfo &info, const QStringList &tiles, Listing listing);
    void showPath(Listing listing);

    QComboBox *m_paths;
    QComboBox *m_bands;
    QWidget *m_dialog;
    QTimer m_typingTimer;
    QString m_path;  ///< path of the DEM that was opened last
    QString m_shown; ///< how the combo box shows it: its path, or the mosaic's title
    QStringList m_tiles;
    QString m_problem; ///< why open() failed last, in a sentence
    QStringList m_files;
    double m_cellCount = 0.0; ///< cells of a band
    DemInfo m_dem;
    ExtremesScan m_scan;
    QString m_lastChosenFolder; ///< folder of the DEM that was last selected in a file dialog
    bool m_keepStartingDir = false;
};
