// render_icons <folder of the drawings> <folder of the pictures> <name>…
//
// Renders <name>.svg, in the size that it names, to <name>.png, and in twice that size to <name>@2x.png.
//
// render_icons --sizes <drawing> <folder> <size>…
//
// Renders a square drawing to <size>.png for each size in pixels.

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace
{

bool render(QSvgRenderer &drawing, const QString &path, const QSize &size)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    QDir().mkpath(QFileInfo(path).path());
    return picture.save(path);
}

/// Returns the exit code of the program.
int renderSizes(const QString &drawingFile, const QString &folder, const QStringList &sizes)
{
    QSvgRenderer drawing(drawingFile);
    for (const QString &size : sizes) {
        const int side = size.toInt();
        if (!drawing.isValid() || side < 1
            || !render(drawing, QStringLiteral("%1/%2.png").arg(folder, size), {side, side})) {
            qCritical("%s could not be rendered in the size %s", qUtf8Printable(drawingFile),
                      qUtf8Printable(size));
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() > 4 && arguments.at(1) == QLatin1String("--sizes"))
        return renderSizes(arguments.at(2), arguments.at(3), arguments.mid(4));
    const QStringList names = arguments.mid(3);
    if (names.isEmpty()) {
        qCritical("usage: render_icons <folder of the drawings> <folder of the pictures> <name>...");
        return 2;
    }
    for (const QString &name : names) {
        QSvgRenderer drawing(QStringLiteral("%1/%2.svg").arg(QString::fromLocal8Bit(argv[1]), name));
        const QString picture = QStringLiteral("%1/%2").arg(QString::fromLocal8Bit(argv[2]), name);
        if (!drawing.isValid() || !render(drawing, picture + QStringLiteral(".png"), drawing.defaultSize())
            || !render(drawing, picture + QStringLiteral("@2x.png"), drawing.defaultSize() * 2)) {
            qCritical("%s could not be rendered", qUtf8Printable(name));
            return 1;
        }
    }
    return 0;
}
