#include "app/preview/mapsaving.h"

#include "app/preview/MapView.h"
#include "app/preview/map/scalebar.h"
#include "app/preview/previewgeometry.h"
#include "dataset/QuvoFilerDialog.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

/// The line below a map: a scale bar over at most a third of `width`, and a text beside it.
MapDrawing mapFooter(double metresPerPoint, bool known, double width, const QString &text)
{
    constexpr double line = 16.0;
    MapDrawing footer;
    footer.size = {width, line * 1.5};
    double left = 0.0;
    const ScaleBar bar = scaleBar(metresPerPoint, width / 3.0, known, QLocale());
    if (bar.metres > 0.0) {
        footer.texts += {{0.0, drawingTextSize}, bar.text};
        const double y = line + 2.0;
        footer.lines += {{{0.0, y - 4.0}, {0.0, y}, {bar.length, y}, {bar.length, y - 4.0}}, QColor(), 1.4};
        left = bar.length + line;
    }
    const auto widthOf = [](const QString &words, bool bold) { return pageTextWidth(words, bold); };
    footer.texts += {{left + 40.0, line + 2.0}, elided(text, width - left - 40.0, widthOf)};
    return footer;
}

} // namespace

void saveMap(QWidget *parent, const MapPage &page, const QString &proposal)
{
    QString file = QuvoFilerDialog::getSelection(
        parent, QuvoFilerDialog::SaveFile, labelText({"MESS_CARTE_ENREG_TIT", "Enregistrer la carte"}),
        proposal + QStringLiteral(".png"),
        labelText({"MESS_TCE_LEG_IMAGES", "Images"}) + QStringLiteral(" (*.png *.svg *.pdf)"));
    if (file.isEmpty())
        return;
    const QString ending = QFileInfo(file).suffix().toLower();
    MapFileFormat format = MapFileFormat::Png;
    if (ending == QLatin1String("svg"))
        format = MapFileFormat::Svg;
    else if (ending == QLatin1String("pdf"))
        format = MapFileFormat::Pdf;
    else if (ending != QLatin1String("png"))
        file += QStringLiteral(".png");
    if (QFileInfo::exists(file)
        && !Prompt::question(parent, dico_label("MESS_FICHIER_EXISTANT", file.toLocal8Bit().constData())))
        return;
    const QByteArray bytes = mapFile(page, format);
    QSaveFile target(file);
    if (bytes.isEmpty() || !target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size()
        || !target.commit())
        Prompt::critical(parent,
                         QStringLiteral("%1\n%2\n%3")
                             .arg(labelText({"MESS_CARTE_ECHEC", "La carte n'a pas pu être enregistrée."}),
                                  QDir::toNativeSeparators(file), target.errorString()));
}

MapPage mapPage(MapView &map, const QRectF &view, double metresPerCell, bool known, const QString &text,
                const MapLegend &legend)
{
    constexpr double legendWidth = 150.0; // in points, like the next
    constexpr double mapWidth = 560.0;
    const QSizeF shown = shownRect(view, map.size()).size();
    const QSizeF size = shown * (mapWidth / std::max(shown.width(), 1.0));
    const auto widthOf = [](const QString &words, bool bold) { return pageTextWidth(words, bold); };
    return {map.picture(), size, mapFooter(metresPerCell * view.width() / mapWidth, known, mapWidth, text),
            legendDrawing(legend, legendWidth, widthOf, QLocale())};
}
