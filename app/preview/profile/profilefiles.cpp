#include "app/preview/profile/profilefiles.h"

#include "app/preview/profile/profiletexts.h"
#include "dataset/QuvoFilerDialog.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

#include <qwt_plot_renderer.h>
#include <qwt_text.h>

namespace
{

/// The proposed file: beside the DEM, or in the home folder if nothing can be written there.
QString proposal(const QString &dem, const QString &ending)
{
    const QFileInfo file(dem);
    const bool writable = !dem.isEmpty() && QFileInfo(file.path()).isWritable();
    const QString stem = dem.isEmpty() ? QString() : file.completeBaseName() + QLatin1Char('_');
    return QDir(writable ? file.path() : QDir::homePath()).filePath(stem + QStringLiteral("profile") + ending);
}

/// Lets the user choose a file; an ending that is not in `endings` gets the first of these.
QString chosenFile(QWidget *parent, const QString &title, const QString &dem, const QString &kind,
                   const QStringList &endings)
{
    const QString filter = kind + QStringLiteral(" (*") + endings.join(QStringLiteral(" *")) + QLatin1Char(')');
    QString file = QuvoFilerDialog::getSelection(parent, QuvoFilerDialog::SaveFile, title,
                                                 proposal(dem, endings.first()), filter);
    if (file.isEmpty())
        return {};
    if (!endings.contains(QLatin1Char('.') + QFileInfo(file).suffix().toLower()))
        file += endings.first();
    const bool mayWrite = !QFileInfo::exists(file)
        || Prompt::question(parent, dico_label("MESS_FICHIER_EXISTANT", file.toLocal8Bit().constData()));
    return mayWrite ? file : QString();
}

/// Returns the path; empty after a failure.
QString written(QWidget *parent, const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!bytes.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
        && file.commit())
        return path;
    Prompt::critical(parent,
                     dico_label("MESS_ERR_ECR_FICH", path.toLocal8Bit().constData()) + QStringLiteral("\n\n")
                         + file.errorString());
    return {};
}

/// The bytes of the picture; `ending` is "png", "svg" or "pdf". The renderer writes files only, so it writes
/// one aside. Empty if that fails.
QByteArray pictureBytes(const ProfilePicture &picture, const QString &ending)
{
    ProfilePlot plot;
    plot.setPalette(QPalette(Qt::lightGray, Qt::white));
    plot.setProfile(picture.profile, picture.unit, picture.colors);
    QwtText title(picture.title);
    title.setFont(plot.font());
    title.setRenderFlags(Qt::AlignCenter | Qt::TextWordWrap);
    plot.setTitle(title);
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("profile.") + ending));
    const QSizeF millimetres(240.0, 90.0);
    constexpr int dotsPerInch = 150;
    QwtPlotRenderer().renderDocument(&plot, file.fileName(), ending, millimetres, dotsPerInch);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString saveProfileCsv(QWidget *parent, const Profile &profile, const QString &dem)
{
    const QString file =
        chosenFile(parent, labelText({"MESS_PROF_ENREG_CSV_T", "Enregistrer le profil en CSV"}), dem,
                   QStringLiteral("CSV"), {QStringLiteral(".csv")});
    return file.isEmpty() ? file : written(parent, file, profileCsv(profile));
}

QString saveProfilePicture(QWidget *parent, const ProfilePicture &picture, const QString &dem)
{
    const QString file =
        chosenFile(parent, labelText({"MESS_PROF_ENREG_IMG_T", "Enregistrer l'image du profil"}), dem,
                   labelText({"MESS_TCE_LEG_IMAGES", "Images"}),
                   {QStringLiteral(".png"), QStringLiteral(".svg"), QStringLiteral(".pdf")});
    return file.isEmpty() ? file
                          : written(parent, file, pictureBytes(picture, QFileInfo(file).suffix().toLower()));
}
