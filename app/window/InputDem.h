#pragma once

#include "dataset/ExtremesScan.h"
#include "dataset/rasterinfo.h"
#include "panels/optionsWidget.h"

#include <QObject>
#include <QTimer>

class QComboBox;

/// The input DEM of the main dialog: an editable combo of the paths used last, and a combo of the raster's
/// bands.
class InputDem : public QObject
{
    Q_OBJECT

public:
    /// The combos belong to the dialog, which is the parent of the warnings, too.
    InputDem(QComboBox *paths, QComboBox *bands, QWidget *dialog);

    /// The DEM as GDAL is given it; empty while there is none, or while the text in the combo is not the DEM's.
    QString path() const;

    /// The files that the DEM is made of (RasterInfo::files).
    QStringList files() const { return m_files; }

    /// Number of the chosen band, from 1.
    int band() const;

    /// Path and band as above, and what is known of the band's extreme values.
    const DemInfo &dem() const { return m_dem; }

    /// Somebody read every cell of the DEM.
    void setExtremes(const Extremes &extremes);

    /// Opens the file and makes it the input. On failure a warning follows, and text, bands and DEM are as
    /// before.
    bool choose(const QString &path);

    /// Asks for a file and makes it the input.
    void select();

    /// Whether the first dialog for choosing a DEM opens in the current directory.
    void setKeepStartingDir(bool keep) { m_keepStartingDir = keep; }

signals:
    /// There is another DEM, or none for the moment (an empty path).
    void changed(const QString &path);

    /// There is another DEM or band, or more is known of it. An estimate of the extreme values follows each
    /// change of DEM or band.
    void demChanged(const DemInfo &dem);

protected:
    /// Takes Return from the text field, which would press the dialog's default button, too, and the wheel,
    /// which would open one DEM after another.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum Listing
    {
        MoveToFront,
        KeepOrder
    };

    bool open(const QString &typed, Listing listing);
    void describe();
    void onTyped();
    void tryTyped();
    void accept(const QString &accepted, const RasterInfo &info, Listing listing);
    void showPath(Listing listing);

    QComboBox *m_paths;
    QComboBox *m_bands;
    QWidget *m_dialog;
    QTimer m_typingTimer;
    QString m_path; ///< the DEM that was opened last, and the text that stands for it
    QStringList m_files;
    DemInfo m_dem;
    ExtremesScan m_scan;
    QString m_lastChosenFolder; ///< of the DEM that was last chosen in a file dialog
    bool m_keepStartingDir = false;
};
