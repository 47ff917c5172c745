// Grabs every window of the program into a folder, without a display:
//
//   pictures <folder> <language> <suffix> [dark]
//
// or checks every window (windowchecks.h), without pictures and without waiting for the maps, with a font that
// is <points> larger than usual, and ends with the number of faults:
//
//   pictures --check <language> <points>
//
// The scale comes from QT_SCALE_FACTOR. The target "pictures" runs it for each scale and language, and once
// with the colours of a dark desktop.

#include "app/preview/MapView.h"
#include "app/preview/PreviewDialog.h"
#include "app/preview/profile/ProfileView.h"
#include "app/series/SeriesResultDialog.h"
#include "app/startup/startupoptions.h"
#include "app/window/RecentRunsDialog.h"
#include "app/window/TilesDialog.h"
#include "app/window/dialogs/AboutDialog.h"
#include "app/window/dialogs/HelpDialog.h"
#include "app/window/dialogs/LightDialog.h"
#include "app/window/launch/processResultDialog.h"
#include "app/window/outputFileAdvancedOptionsDialog.h"
#include "app/window/quvoGdalUtilities.h"
#include "colortable/colortablefile.h"
#include "colortable/editor/ColorTableEditor.h"
#include "colortable/legend/legend.h"
#include "dataset/chooser/ImageChooser.h"
#include "dataset/chooser/TileForm.h"
#include "dataset/extraction/ExtractionDialog.h"
#include "dataset/gdalmessages.h"
#include "dataset/workfolder.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/rasterheader.h"
#include "panels/colorReliefOptionsWidget.h"
#include "panels/intervisibilityOptionsWidget.h"
#include "panels/observers/AbsoluteHeightEditor.h"
#include "panels/observers/LayerDialog.h"
#include "panels/observers/intervisibilityProcessInfoDialog.h"
#include "runner/ProgressWidget.h"
#include "runner/QuvoProgressDialog.h"
#include "tests/pictures/windowchecks.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>

#include <cpl_vsi.h>

#include <utility>

namespace
{

QPalette darkPalette()
{
    const QColor window(0x2d, 0x2d, 0x30);
    const QColor base(0x1e, 0x1e, 0x20);
    const QColor text(0xe6, 0xe6, 0xe6);
    QPalette palette(text, window, window.lighter(140), window.darker(140), window.darker(110), text, Qt::white,
                     base, window);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x7a, 0xc4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xf0));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    return palette;
}

/// Whether the windows are checked instead of grabbed.
bool isCheck = false;

/// The least screen, in pixels, less the frame of a window: 1920 x 1080 at a scale of 2.
constexpr QSize leastScreen(960 - 2, 540 - 32);

class Album
{
public:
    Album(const QString &folder, const QString &suffix)
        : m_folder(folder)
        , m_suffix(suffix)
    {
        if (!isCheck)
            QDir().mkpath(folder);
    }

    int faults() const { return m_faults; }

    void add(const QByteArray &picture, const QString &name)
    {
        if (!isCheck)
            save(QImage::fromData(picture, "PNG"), name);
    }

    void add(QWidget &window, const QString &name)
    {
        window.show();
        QApplication::processEvents();
        if (isCheck)
            check(window, name);
        else
            save(window.grab().toImage(), name);
        window.hide();
    }

    /// Saves a sheet with all pictures, made small, each above its name.
    void saveSheet()
    {
        constexpr int columns = 5;
        constexpr int gap = 12; // pixels
        const int line = QFontMetrics(QApplication::font()).height();
        const QSize cell(m_width + gap, m_width * 3 / 4 + gap + line);
        const int rows = static_cast<int>(m_small.size() + columns - 1) / columns;
        QImage sheet(cell.width() * columns + gap, cell.height() * rows + gap, QImage::Format_RGB32);
        sheet.fill(Qt::gray);
        QPainter painter(&sheet);
        for (int at = 0; at < static_cast<int>(m_small.size()); ++at) {
            const QPoint corner(gap + at % columns * cell.width(), gap + at / columns * cell.height());
            const auto &[name, picture] = m_small.at(at);
            painter.drawImage(corner, picture);
            painter.drawText(QRect(corner + QPoint(0, cell.height() - gap - line), QSize(m_width, line)),
                             Qt::AlignCenter, name);
        }
        sheet.save(QStringLiteral("%1/sheet_%2.png").arg(m_folder, m_suffix));
    }

private:
    static constexpr int m_width = 400; ///< of a small picture, in pixels

    void save(QImage picture, const QString &name)
    {
        picture.save(QStringLiteral("%1/%2_%3.png").arg(m_folder, name, m_suffix));
        picture.setDevicePixelRatio(1.0);
        const QSize size = picture.size().scaled(m_width, m_width * 3 / 4, Qt::KeepAspectRatio);
        m_small.append(
            {name,
             picture.scaled(size.boundedTo(picture.size()), Qt::KeepAspectRatio, Qt::SmoothTransformation)});
    }

    void check(const QWidget &window, const QString &name)
    {
        // A text that came while events were handled has not been given its room yet.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        for (const QString &problem : windowProblems(window, leastScreen)) {
            qWarning("%s: %s", qPrintable(name), qPrintable(problem));
            ++m_faults;
        }
    }

    QString m_folder;
    QString m_suffix;
    int m_faults = 0;
    QVector<std::pair<QString, QImage>> m_small; ///< the pictures for the sheet
};

void addProgress(Album &album)
{
    QuvoProgressDialog dialog;
    dialog.setPixmap(QPixmap(QStringLiteral(":/QuvoGdalUtilities/images/icones/shadedReliefIcon.png")));
    dialog.setTitle(labelText(processRow(Process::ShadedRelief).stepTitle));
    dialog.show();
    dialog.setProgress(37);
    album.add(dialog, QStringLiteral("progress"));
    ProgressWidget wheel;
    wheel.resize(wheel.sizeHint());
    album.add(wheel, QStringLiteral("wheel"));
}

/// Waits until a map shows a product, which takes a moment on a busy machine.
void waitForPreview(const QWidget *window = nullptr)
{
    if (isCheck) {
        QApplication::processEvents();
        return;
    }
    const auto map = window ? window->findChild<MapView *>() : nullptr;
    const auto wait = [](int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    };
    constexpr int patience = 20; // seconds at most
    for (int turn = 0; map && !map->map().hasProduct() && turn < 2 * patience; ++turn)
        wait(500);
    wait(1500); // the last slices of a drawing, and windows without a map
}

/// The numbers of an intervisibility, and the lower end of its panel in a small window.
void addNumbers(Album &album, quvoGdalUtilities &dialog)
{
    Recipe recipe = dialog.recipe();
    auto &options = std::get<IntervisibilityOptions>(recipe.options);
    QScrollArea &area =
        *dialog.findChild<QWidget *>(QStringLiteral("intervisibilityTab"))->findChild<QScrollArea *>();
    const QString folder = QDir::tempPath() + QStringLiteral("/terrain/");
    for (const QString &result : {QStringLiteral("count"), QStringLiteral("height")}) {
        options.result = result;
        options.skyline = folder + QStringLiteral("dem_intervisibility_horizon.csv");
        dialog.setRecipe(recipe);
        waitForPreview();
        waitForPreview();
        album.add(dialog, QStringLiteral("intervisibility_") + result);
    }
    const QSize size = dialog.size();
    dialog.resize(1000, 700); // a screen of 1024 x 768
    dialog.show();
    area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
    album.add(dialog, QStringLiteral("intervisibility_small"));
    dialog.resize(size);
}

/// What the panel of a tab shows when it is scrolled to its end, if it has more than fits.
void addLowerHalf(Album &album, QWidget &dialog, const QWidget &tab)
{
    const auto area = tab.findChild<QScrollArea *>();
    if (!area || area->verticalScrollBar()->maximum() == 0)
        return;
    dialog.show();
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    album.add(dialog, tab.objectName() + QStringLiteral("_end"));
    area->verticalScrollBar()->setValue(0);
    dialog.show();
}

void addMainDialog(Album &album)
{
    quvoGdalUtilities dialog(findTools(QStringLiteral(QUVO_TREE)), nullptr, {});
    // Under a path that says nothing of this machine.
    const QDir folder(QDir::tempPath() + QStringLiteral("/terrain"));
    QDir().mkpath(folder.path());
    QFile::copy(QStringLiteral(QUVO_TREE "/samples/sample_dem.tif"),
                folder.filePath(QStringLiteral("dem.tif")));
    dialog.setInputDem(folder.filePath(QStringLiteral("dem.tif")));
    const auto tabs = dialog.findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"));
    for (int tab = tabs->count() - 1; tab >= 0; --tab)
        tabs->setCurrentIndex(tab); // its panel is made
    dialog.findChild<colorReliefOptionsWidget *>()->loadLibrary(
        QStringLiteral(QUVO_TREE "/libraries/colormap"));
    for (const QPointF &place : {QPointF(548700, 5151300), QPointF(566300, 5154400), QPointF(560200, 5141100)})
        dialog.findChild<intervisibilityOptionsWidget *>()->placeObserver(-1, place);
    dialog.findChild<QLineEdit *>(QStringLiteral("m_pLEElevationInterval"))->setText(QStringLiteral("100.000"));
    dialog.resize(1354, 728); // larger than the screen of the offscreen platform
    dialog.show();            // a map that nobody sees is not computed
    for (int index = 0; index < tabs->count(); ++index) {
        if (!tabs->isTabVisible(index))
            continue;
        tabs->setCurrentIndex(index);
        waitForPreview(&dialog);
        album.add(dialog, tabs->widget(index)->objectName());
        addLowerHalf(album, dialog, *tabs->widget(index));
    }
    tabs->setCurrentWidget(dialog.findChild<QWidget *>(QStringLiteral("intervisibilityTab")));
    addNumbers(album, dialog);
    // The notes below the fields of options that cannot be used.
    dialog.setRecipe({.process = QStringLiteral("slope"),
                      .options = SlopeOptions{.scaleIndex = -1, .scaleText = QStringLiteral("1 -of PNG")}});
    waitForPreview();
    album.add(dialog, QStringLiteral("slope_notes"));
    dialog.setRecipe({.process = QStringLiteral("contour"),
                      .options = ContourOptions{.attribute = QStringLiteral("élévation_m"),
                                                .fixedLevels = QStringLiteral("40 20 10"),
                                                .noDataValue = -2147483648.0,
                                                .offset = 1234567.0}});
    waitForPreview();
    album.add(dialog, QStringLiteral("contour_notes"));
    QMenu &menu = *dialog.findChild<QToolButton *>(QStringLiteral("m_pTBSettings"))->menu();
    menu.resize(menu.sizeHint());
    album.add(menu, QStringLiteral("settings_menu"));
    QMenu &inputs = *dialog.findChild<QToolButton *>(QStringLiteral("m_pPBSelectInputDEM"))->menu();
    inputs.resize(inputs.sizeHint());
    album.add(inputs, QStringLiteral("input_menu"));
}

void addProfile(Album &album)
{
    const QString dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif");
    const auto terrain = LiveTerrain::read(dem, 1).terrain;
    if (!terrain)
        return;
    const DemGround ground(dem, 1);
    const QSizeF size(terrain->width(), terrain->height());
    const QPointF eye = terrain->toGround({0.2 * size.width(), 0.3 * size.height()});
    const ToolObserver observer{eye.x(), eye.y(), ground.surfaceElevation(eye).value_or(0.0) + 30.0, 0.0};
    ProfileView view;
    view.setDem(dem, ground.elevationUnit());
    view.resize(760, 180);
    album.add(view, QStringLiteral("profile_empty"));
    int number = 0;
    for (const QPointF &far : {QPointF(0.9, 0.6), QPointF(1.2, 0.5), QPointF(0.21, 0.32)}) {
        const QPointF end = terrain->toGround({far.x() * size.width(), far.y() * size.height()});
        view.setProfile(profileAlong(*terrain, observer, end, {.targetHeight = 0.0, .curvature = 0.85714}));
        if (++number > 1)
            view.setCursor(0.6 * view.profile().length);
        album.add(view, QStringLiteral("profile_%1").arg(number));
    }
    view.resize(420, 140);
    album.add(view, QStringLiteral("profile_small"));
}

/// The light of a colour relief is edited in a dialog that waits for its end.
void addLightDialog(Album &album)
{
    QTimer::singleShot(500, [&album] {
        if (QWidget *dialog = QApplication::activeModalWidget()) {
            album.add(*dialog, QStringLiteral("light"));
            dialog->close();
        }
    });
    editLight(nullptr, {.light = lightWord(Light::Igor)}, nullptr, [](const ShadedOptions &) {});
}

void addTableEditor(Album &album)
{
    const QString library = QStringLiteral(QUVO_TREE "/libraries/colormap");
    for (const char *name : {"dtm", "viridis"}) {
        const QString file = QStringLiteral("%1/%2.txt").arg(library, QLatin1String(name));
        ColorTableEditor editor({.file = file,
                                 .entries = readColorTable(file).entries,
                                 .libraryFolder = library,
                                 .ownFolder = QDir::tempPath() + QStringLiteral("/terrain/tables"),
                                 .dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif"),
                                 .band = 1},
                                nullptr);
        editor.show();
        waitForPreview();
        album.add(editor, QStringLiteral("table_editor_") + QLatin1String(name));
        Legend legend{.entries = readColorTable(file).entries,
                      .minimum = 386.0,
                      .maximum = 2405.0,
                      .title = QStringLiteral("Altitude"),
                      .noDataText = QStringLiteral("–")};
        album.add(legendPicture(legend, LegendFormat::Png), QStringLiteral("legend_") + QLatin1String(name));
        legend.classes = true;
        album.add(legendPicture(legend, LegendFormat::Png),
                  QStringLiteral("legend_classes_") + QLatin1String(name));
    }
}

/// The observers with names and all columns.
void addObservers(Album &album)
{
    WorkFolder workFolder;
    intervisibilityOptionsWidget panel(workFolder);
    IntervisibilityOptions options;
    options.observers = {
        {.name = QStringLiteral("Tour du Guet"), .limits = {2.0, 350.0, 20.0, -10.0, 5.0, 100.0}},
        {.height = 1200.0, .mode = AltitudeMode::Absolute, .name = QStringLiteral("Pic")}};
    panel.setProcessOptions(options);
    panel.setSeenAreas({12.5, 1034.0});
    panel.resize(1500, 1000);
    album.add(panel, QStringLiteral("observers"));
}

void addSmallDialogs(Album &album)
{
    outputFileAdvancedOptionsDialog raster(Process::ShadedRelief, {}, QString());
    album.add(raster, QStringLiteral("output_raster"));
    outputFileAdvancedOptionsDialog cog(Process::Slope, {.format = QStringLiteral("COG"), .statistics = true},
                                        QString());
    album.add(cog, QStringLiteral("output_cog"));
    outputFileAdvancedOptionsDialog vector(Process::Contour, {}, QStringLiteral("UTM 32N"));
    album.add(vector, QStringLiteral("output_vector"));
    VectorObservers source;
    source.lines += {{0.0, 0.0}, {0.0, 90000.0}};
    source.sites += VectorSite{.position = {1.0, 1.0}, .z = 7.0};
    source.hasZ = true;
    source.crsNotes += labelText({"MESS_OBS_SCR_AUTRE", "%1 → %2 : les coordonnées sont reprojetées."})
                           .arg(QStringLiteral("EPSG:4326"), QStringLiteral("EPSG:2154"));
    intervisibilityProcessInfoDialog choices(source, 1200, 1200, 30.0);
    album.add(choices, QStringLiteral("import"));
    source.lines.clear();
    intervisibilityProcessInfoDialog points(source, 1200, 1200, 30.0);
    album.add(points, QStringLiteral("import_points"));
    LayerDialog layers(
        {{QStringLiteral("waypoints"), LayerGeometry::Points, 12500, QStringLiteral("WGS 84 (EPSG:4326)")},
         {QStringLiteral("tracks"), LayerGeometry::Lines, 3, QStringLiteral("WGS 84 (EPSG:4326)")},
         {QStringLiteral("communes"), LayerGeometry::Areas, 36000, {}}});
    album.add(layers, QStringLiteral("import_layers"));
    AbsoluteHeightEditor editor;
    album.add(editor, QStringLiteral("import_outside"));
}

/// Copies a file into an archive, which is created where it is missing.
void addToArchive(const QString &archive, const QString &file, const QString &member)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = source.readAll();
    VSILFILE *target =
        VSIFOpenL(QStringLiteral("/vsizip/%1/%2").arg(archive, member).toUtf8().constData(), "wb");
    VSIFWriteL(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), target);
    VSIFCloseL(target);
}

/// The chooser with a raster, an archive, a source that cannot be read, elevations without a header, an older
/// header and a vector file, and the form for elevations without a header.
void addChooser(Album &album)
{
    const QDir folder(QDir::tempPath() + QStringLiteral("/terrain"));
    const QString dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif");
    const auto path = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
    const auto write = [&](const char *name, const QByteArray &bytes) {
        QFile file(path(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    };
    QFile::remove(path("tiles.zip"));
    for (const char *member : {"north/N46E006.tif", "south/N45E006.tif", "south/N45E007.tif"})
        addToArchive(path("tiles.zip"), dem, QLatin1String(member));
    write("dem.hgt", QByteArray(2 * 61 * 61, '\1'));
    RasterHeader header;
    header.firstDimension = 1200;
    header.secondDimension = 800;
    header.comment = "Massif du Mont-Blanc";
    write("older.img", QByteArray(rasterHeaderBytes(header).data(), rasterHeaderSize).replace(26, 3, "im*"));
    write("paths.csv",
          "id,WKT\n1,\"LINESTRING (0 0,4 3,9 2,12 6)\"\n2,\"POLYGON ((2 5,6 5,5 9,2 8,2 5))\"\n"
          "3,\"POINT (10 9)\"\n");
    WorkFolder work;
    const std::pair<const char *, QString> sources[] = {
        {"raster", path("dem.tif")}, {"archive", path("tiles.zip")}, {"failure", path("paths.csv")},
        {"hgt", path("dem.hgt")},    {"header", path("older.img")},  {"vector", path("paths.csv")}};
    for (const auto &[name, source] : sources) {
        const bool isVector = QByteArray(name) == "vector";
        ImageChooser chooser(isVector ? SourceWanted::Vectors : SourceWanted::Rasters, work);
        chooser.setSource(source);
        chooser.show();
        waitForPreview();
        album.add(chooser, QStringLiteral("chooser_") + QLatin1String(name));
    }
    TileForm form(QStringLiteral("dem.hgt"), 2 * 61 * 61);
    album.add(form, QStringLiteral("chooser_form"));
}

void addExtraction(Album &album)
{
    const QString dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif");
    ExtractionDialog whole(dem, 1, std::nullopt, nullptr);
    ExtractionDialog part(dem, 1, QRect(300, 250, 420, 300), nullptr);
    for (ExtractionDialog *dialog : {&whole, &part}) {
        dialog->show();
        waitForPreview();
        album.add(*dialog,
                  dialog == &whole ? QStringLiteral("extraction_whole") : QStringLiteral("extraction"));
    }
}

void addResults(Album &album)
{
    const QString folder = QStringLiteral("/terrain/");
    SeriesResultDialog series(
        {{folder + QStringLiteral("N45E006.hgt"), folder + QStringLiteral("N45E006_hillshade.tif"),
          SeriesRow::Done},
         {folder + QStringLiteral("N45E007.hgt"), folder + QStringLiteral("N45E007_hillshade.tif"),
          SeriesRow::Kept},
         {folder + QStringLiteral("N46E006.hgt"), QString(), SeriesRow::Failed,
          labelText({"MESS_RASTER_DROITS", "Vous n'avez pas le droit de lire ce fichier."})},
         {folder + QStringLiteral("N46E007.hgt"), QString(), SeriesRow::Stopped},
         {folder + QStringLiteral("N46E008.hgt"), QString(), SeriesRow::Waiting}},
        nullptr);
    album.add(series, QStringLiteral("series"));
    ProcessResult result;
    result.title = QStringLiteral("result");
    result.picture = QStringLiteral(":/QuvoGdalUtilities/images/ok2.png");
    result.text = labelText(
        {"MESS_TRAIT_FINI_RES", "Le traitement s'est déroulé avec succès et le résultat est disponible."});
    result.file = QStringLiteral("/home/user/terrain/valley of the two lakes/dem_hillshade.tif");
    result.command = QStringLiteral("\"/opt/gdal_dem.exe\" hillshade \"/home/user/dem.tif\" -z 1");
    processResultDialog good(result, nullptr);
    album.add(good, QStringLiteral("result_done"));

    const QString dem = QStringLiteral(QUVO_TREE "/samples/sample_dem.tif");
    const QString slope = QDir::tempPath() + QStringLiteral("/terrain/dem_slope.tif");
    QProcess::execute(
        findTools(QStringLiteral(QUVO_TREE)).dem,
        {QStringLiteral("slope"), dem, slope, QStringLiteral("-q"), QStringLiteral("-compute_edges")});
    PreviewDialog relief(
        slope, ProductSource{SlopeOptions(), dem, 1, labelText(processRow(Process::Slope).title)}, nullptr);
    relief.show();
    waitForPreview(&relief);
    album.add(relief, QStringLiteral("preview"));

    result.picture = QStringLiteral(":/QuvoGdalUtilities/images/cancel2.png");
    result.text =
        labelText({"MESS_ERR_CREAT_IMG", "Une erreur est survenue lors de la création de l'image de sortie."});
    result.file.clear();
    result.exitCode = 1;
    result.toolText = QStringLiteral("ERROR 4: dem.tif: No such file or directory");
    processResultDialog failed(result, nullptr);
    failed.findChild<QAbstractButton *>(QStringLiteral("m_pPBDetails"))->setChecked(true);
    album.add(failed, QStringLiteral("result_failed"));
}

void addSettings(Album &album)
{
    HelpDialog help(QStringLiteral(QUVO_TREE "/guide"), nullptr);
    album.add(help, QStringLiteral("help"));
    help.showPage(QStringLiteral("shaded_relief"));
    album.add(help, QStringLiteral("help_page"));
    help.resize(help.width() / 2, help.height());
    album.add(help, QStringLiteral("help_narrow"));
    const QString file = QDir::tempPath() + QStringLiteral("/terrain/runs.json");
    QFile::remove(file);
    const QDateTime first(QDate(2024, 5, 6), QTime(7, 8), Qt::UTC);
    const QString folder = QStringLiteral("/home/user/terrain/");
    int count = 0;
    for (const NamedProcess &process : namedProcesses()) {
        Recipe recipe;
        recipe.process = processWord(process.defaults);
        recipe.options = process.defaults;
        recipe.input = folder + QStringLiteral("valley of the two lakes.tif");
        recipe.output = folder + QStringLiteral("valley of the two lakes_")
            + QString::fromLatin1(processRow(process.process).suffix) + QStringLiteral(".tif");
        addRecentRun(
            file, {first.addSecs(4000 * count), static_cast<RunEnd>(count % 3), 61.0 * count * count, recipe});
        ++count;
    }
    RecentRunsDialog runs(file, nullptr);
    album.add(runs, QStringLiteral("recent_runs"));
    Recipe relief;
    relief.process = processWord(namedProcesses().first().defaults);
    relief.options = namedProcesses().first().defaults;
    relief.input = folder + QStringLiteral("valley of the two lakes.tif");
    TilesDialog tiles(relief, folder, nullptr);
    album.add(tiles, QStringLiteral("tiles"));
}

} // namespace

int main(int argc, char *argv[])
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps); // Qt 6 always uses them
#endif
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    isCheck = arguments.value(1) == QLatin1String("--check");
    const bool isDark = arguments.value(4) == QLatin1String("dark");
    if (arguments.size() != (isDark ? 5 : 4)) {
        qCritical("usage: pictures <folder> <language> <suffix> [dark] | --check <language> <points>");
        return 2;
    }
    Q_INIT_RESOURCE(quvo);
    // The sample DEM stands beside the program, as in an installation.
    QFile::link(QStringLiteral(QUVO_TREE "/samples"), QApplication::applicationDirPath() + "/samples");
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (isDark)
        QApplication::setPalette(darkPalette());
    application.setStyleSheet(composeStyleSheet(QString()));
    if (isCheck) {
        QFont font = QApplication::font();
        font.setPointSize(font.pointSize() + arguments.at(3).toInt());
        QApplication::setFont(font);
    }
    setUpGdal();
    QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), arguments.at(2),
                                                     QString());

    Album album(arguments.at(1), arguments.at(3));
    addMainDialog(album);
    addProgress(album);
    addResults(album);
    addChooser(album);
    addProfile(album);
    addTableEditor(album);
    addLightDialog(album);
    addObservers(album);
    addSmallDialogs(album);
    addExtraction(album);
    addSettings(album);
    AboutDialog about(nullptr);
    album.add(about, QStringLiteral("about"));
    if (!isCheck)
        album.saveSheet();
    return qMin(album.faults(), 100);
}
