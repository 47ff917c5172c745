#include "app/startup/settings.h"

#include "messages/languages.h"

#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace
{

const QString organisation = QStringLiteral("KARVEX");
const QString application = QStringLiteral("Riglios");
const QString geometryGroup = QStringLiteral("LastGeometry");
const QString recentGroup = QStringLiteral("RecentUsedListFile");
// The language that the user chose precedes the environment file. The other key is the one that the file refers
// to: a language in the file precedes it.
const QString chosenLanguageKey = QStringLiteral("Interface/ChosenLanguage");
const QString sharedLanguageKey = QStringLiteral("Interface/Language");

const QString lastColorTableKey = QStringLiteral("Interface/LastColorTable");
const QString filerStateKey = QStringLiteral("Interface/FileDialogs");

QString recentKey(int index)
{
    return QStringLiteral("File_%1").arg(index);
}

/// A file or folder beside the file of the settings.
QString fileBesideSettings(const QString &word)
{
    return QStringLiteral("%1/%2/%3_%4")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), organisation, application,
             word);
}

} // namespace

LastGeometry readLastGeometry()
{
    QSettings settings(organisation, application);
    settings.beginGroup(geometryGroup);
    LastGeometry geometry;
    const QSize size = settings.value(QStringLiteral("size"), geometry.size).toSize();
    geometry.isDefault = !settings.contains(QStringLiteral("size")) || size.isEmpty();
    if (!size.isEmpty())
        geometry.size = size;
    geometry.position = settings.value(QStringLiteral("pos"), geometry.position).toPoint();
    geometry.showPreview = settings.value(QStringLiteral("showPreview"), geometry.showPreview).toBool();
    return geometry;
}

void writeLastGeometry(const LastGeometry &geometry)
{
    QSettings settings(organisation, application);
    settings.beginGroup(geometryGroup);
    settings.setValue(QStringLiteral("size"), geometry.size);
    settings.setValue(QStringLiteral("pos"), geometry.position);
    settings.setValue(QStringLiteral("showPreview"), geometry.showPreview);
}

QStringList readRecentFiles()
{
    QSettings settings(organisation, application);
    settings.beginGroup(recentGroup);
    QStringList paths;
    for (int index = 0; settings.contains(recentKey(index)); ++index)
        paths += settings.value(recentKey(index)).toString();
    return paths;
}

void writeRecentFiles(const QStringList &paths)
{
    QSettings settings(organisation, application);
    settings.beginGroup(recentGroup);
    settings.remove(QString());
    for (int index = 0; index < paths.size(); ++index)
        settings.setValue(recentKey(index), paths.at(index));
}

QString recentRunsFile()
{
    return fileBesideSettings(QStringLiteral("runs.json"));
}

QString lastSettingsFile()
{
    return fileBesideSettings(QStringLiteral("last.json"));
}

QString readLastColorTable()
{
    return QSettings(organisation, application).value(lastColorTableKey).toString();
}

void writeLastColorTable(const QString &file)
{
    QSettings(organisation, application).setValue(lastColorTableKey, file);
}

QByteArray readFilerState()
{
    return QSettings(organisation, application).value(filerStateKey).toByteArray();
}

void writeFilerState(const QByteArray &state)
{
    QSettings(organisation, application).setValue(filerStateKey, state);
}

QString ownColorTableFolder()
{
    return fileBesideSettings(QStringLiteral("colormap"));
}

QString ownLightFolder()
{
    return fileBesideSettings(QStringLiteral("lights"));
}

QString chosenLanguage(const QString &otherwise, const QString &messagesPath)
{
    const QString chosen = QSettings(organisation, application).value(chosenLanguageKey).toString();
    const QVector<Language> languages = availableLanguages(messagesPath);
    const bool known = std::any_of(languages.begin(), languages.end(),
                                   [&](const Language &language) { return language.name == chosen; });
    return known ? chosen : otherwise;
}

void writeChosenLanguage(const QString &language)
{
    QSettings settings(organisation, application);
    settings.setValue(chosenLanguageKey, language);
    settings.setValue(sharedLanguageKey, language);
}

QRect visibleGeometry(const QRect &wanted, const QSize &frame, const QVector<QRect> &screens)
{
    if (screens.isEmpty())
        return wanted;
    const QRect outer(wanted.topLeft(), wanted.size() + frame);
    const auto shownArea = [&](const QRect &screen) {
        const QRect shown = screen.intersected(outer);
        return shown.isEmpty() ? 0 : shown.width() * shown.height();
    };
    int area = 0;
    for (const QRect &screen : screens)
        area += shownArea(screen);
    if (area >= outer.width() * outer.height())
        return wanted;
    const QRect screen =
        *std::max_element(screens.begin(), screens.end(), [&](const QRect &one, const QRect &other) {
            return shownArea(one) < shownArea(other);
        });
    QRect inside(outer.topLeft(), outer.size().boundedTo(screen.size()));
    inside.moveLeft(qBound(screen.left(), inside.left(), screen.right() + 1 - inside.width()));
    inside.moveTop(qBound(screen.top(), inside.top(), screen.bottom() + 1 - inside.height()));
    return {inside.topLeft(), inside.size() - frame};
}
