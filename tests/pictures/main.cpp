// Grabs every window of the program into a folder, without a display:
//
//   pictures <folder> <suffix>
//
// The scale comes from QT_SCALE_FACTOR. The target "pictures" runs it for each scale.

#include "runner/ProgressWidget.h"
#include "runner/QuvoProgressDialog.h"

#include <QApplication>
#include <QDir>

namespace
{

class Album
{
public:
    Album(const QString &folder, const QString &suffix)
        : m_folder(folder)
        , m_suffix(suffix)
    {
        QDir().mkpath(folder);
    }

    void add(QWidget &window, const QString &name)
    {
        window.show();
        QApplication::processEvents();
        window.grab().save(QStringLiteral("%1/%2_%3.png").arg(m_folder, name, m_suffix));
        window.hide();
    }

private:
    QString m_folder;
    QString m_suffix;
};

void addProgress(Album &album)
{
    QuvoProgressDialog dialog;
    dialog.setTitle(QStringLiteral("Calcul d'une image ombrée du relief."));
    dialog.show();
    dialog.setProgress(37);
    album.add(dialog, QStringLiteral("progress"));
    ProgressWidget wheel;
    wheel.resize(wheel.sizeHint());
    album.add(wheel, QStringLiteral("wheel"));
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: pictures <folder> <suffix>");
        return 2;
    }
    Album album(arguments.at(1), arguments.at(2));
    addProgress(album);
    return 0;
}
