#include "app/window/dialogs/guidepages.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>

QString guideFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/guide");
}

QString guidePageFolder(const QString &guide)
{
    // The language manager sets the default locale.
    const QString own = guide + QLatin1Char('/') + QLocale().name().section(QLatin1Char('_'), 0, 0);
    return QFile::exists(own) ? own : guide + QLatin1String("/en");
}

QString guideText(const QString &pageFolder, const QString &page)
{
    QFile file(pageFolder + QLatin1Char('/') + page + QLatin1String(".md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList linkedPages(const QString &markdown)
{
    static const QRegularExpression link(QStringLiteral("\\]\\(([a-z_]+)\\.md\\)"));
    QStringList pages;
    auto matches = link.globalMatch(markdown);
    while (matches.hasNext())
        pages += matches.next().captured(1);
    return pages;
}

QVector<GuidePage> guidePages(const QString &pageFolder)
{
    const QString index = guideText(pageFolder, guideIndex);
    if (index.isEmpty())
        return {};
    QStringList names{guideIndex};
    names += linkedPages(index);
    names.removeDuplicates();
    QVector<GuidePage> pages;
    for (const QString &name : names) {
        const QString heading = guideText(pageFolder, name).section(QLatin1Char('\n'), 0, 0);
        const bool isTitle = heading.startsWith(QLatin1String("# "));
        pages += {name, isTitle ? heading.mid(2) : name};
    }
    return pages;
}
