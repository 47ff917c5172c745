#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The guide is a folder with a folder of Markdown pages for each language ("en", "fr") and one of pictures. A
// page is named by its file, without the extension.

/// A page and its title.
struct GuidePage
{
    QString name;
    QString title;
};

/// The page that links to all others.
inline const QString guideIndex = QStringLiteral("index");

/// The folder of the guide beside the program.
QString guideFolder();

/// The folder of the pages in the language in use, or of the English ones where the guide lacks that language.
QString guidePageFolder(const QString &guide);

/// The index and the pages that it links to, in the order of the links, each only once. A page without a title
/// or that is missing has its name as the title. Empty where the index cannot be read.
QVector<GuidePage> guidePages(const QString &pageFolder);

/// The text of a page in Markdown; null where it cannot be read.
QString guideText(const QString &pageFolder, const QString &page);

/// The names of the pages that a text in Markdown links to, in its order.
QStringList linkedPages(const QString &markdown);
