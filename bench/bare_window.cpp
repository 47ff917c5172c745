// A window with one button, in a program that links what ours links: the least time for a first window.
// bench/start.py times it.

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

#include <gdal.h>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QPushButton button(QString::fromLatin1(GDALVersionInfo("RELEASE_NAME")));
    button.show();
    QTimer::singleShot(0, [] { std::fputs("the first window is shown\n", stderr); });
    return QApplication::exec();
}
