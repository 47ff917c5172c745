// render_icons <folder of the drawings> <folder of the pictures> <name>…
//
// Renders <name>.svg, in the size that it names, to <name>.png, and in twice that size to <name>@2x.png.

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace
{

bool render(QSvgRenderer &drawing, const QString &path, int scale)
{
    QImage picture(drawing.defaultSize() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    QDir().mkpath(QFileInfo(path).path());
    return picture.save(path);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    const QStringList names = QGuiApplication::arguments().mid(3);
    if (names.isEmpty()) {
        qCritical("usage: render_icons <folder of the drawings> <folder of the pictures> <name>...");
        return 2;
    }
    for (const QString &name : names) {
        QSvgRenderer drawing(QStringLiteral("%1/%2.svg").arg(QString::fromLocal8Bit(argv[1]), name));
        const QString picture = QStringLiteral("%1/%2").arg(QString::fromLocal8Bit(argv[2]), name);
        if (!drawing.isValid() || !render(drawing, picture + QStringLiteral(".png"), 1)
            || !render(drawing, picture + QStringLiteral("@2x.png"), 2)) {
            qCritical("%s could not be rendered", qUtf8Printable(name));
            return 1;
        }
    }
    return 0;
}
