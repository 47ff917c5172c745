#include "dataset/references.h"

#include "dataset/pathencoding.h"
#include "messages/label.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <utility>

namespace
{

/// Follows references from one name to the next.
class Search
{
public:
    QStringList files;
    QString endless; ///< the first pipe, device or socket that was met; empty: none

    /// Adds the files that the name leads to. Relative names count from `folder`, and from the current
    /// directory.
    void addName(const QString &name, const QString &folder, int depth)
    {
        if (name.contains(QLatin1String("/vsistdin")))
            noteEndless(name);
        if (name.trimmed().startsWith(QLatin1Char('<'))) {
            addText(name, folder, depth);
            return;
        }
        constexpr int longestName = 4096;
        static const QRegularExpression number(QStringLiteral("^[-+0-9.eE, ]*$"));
        const QString seen = folder + QLatin1Char('\n') + name;
        if (name.size() > longestName || number.match(name).hasMatch() || m_seen.contains(seen))
            return;
        m_seen += seen; // the values of a large mosaic repeat
        for (const QString &part : partsOf(name)) {
            for (const QString &start : {folder, QDir::currentPath()})
                addFile(QDir(start).absoluteFilePath(localFile(part)), depth);
        }
    }

private:
    /// The parts of a name that may be a file's: between quotes, and between any two colons.
    static QStringList partsOf(const QString &name)
    {
        static const QRegularExpression quoted(QStringLiteral("\"([^\"]+)\""));
        QStringList parts{name};
        for (auto match = quoted.globalMatch(name); match.hasNext();)
            parts += match.next().captured(1);
        constexpr int mostPieces = 12; // more would make too many pairs, and no driver's prefix has as many
        const QStringList pieces = name.split(QLatin1Char(':'));
        for (int begin = 0; pieces.size() <= mostPieces && begin < pieces.size(); ++begin) {
            for (int end = begin; end < pieces.size(); ++end) {
                QString part = pieces.mid(begin, end - begin + 1).join(QLatin1Char(':'));
                parts += part;
                if (part.startsWith(QLatin1String("//")))
                    parts += part.mid(2).section(QLatin1Char('?'), 0, 0); // "vrt://a.tif?bands=1"
            }
        }
        parts.removeAll(QString());
        parts.removeDuplicates();
        return parts;
    }

    void addFile(const QString &path, int depth)
    {
        constexpr int deepest = 8;
        constexpr qint64 largestText = 16LL * 1024 * 1024;
        const QFileInfo info(path);
        if (info.exists() && !info.isFile() && !info.isDir())
            noteEndless(path);
        if (!info.isFile() || files.contains(path))
            return;
        files += path;
        QFile file(path);
        if (depth < deepest && file.size() <= largestText && file.open(QIODevice::ReadOnly)
            && file.peek(64).trimmed().startsWith('<'))
            addText(QString::fromUtf8(file.readAll()), info.absolutePath(), depth + 1);
    }

    /// Adds what the contents and attributes of an XML text name.
    void addText(const QString &text, const QString &folder, int depth)
    {
        static const QRegularExpression values(
            QStringLiteral(">([^<>]+)<|=\\s*\"([^\"<>]+)\"|=\\s*'([^'<>]+)'"));
        for (auto match = values.globalMatch(text); match.hasNext();) {
            const QRegularExpressionMatch value = match.next();
            QString name = (value.captured(1) + value.captured(2) + value.captured(3)).trimmed();
            for (const auto &[entity, character] :
                 {std::pair("&lt;", "<"), std::pair("&gt;", ">"), std::pair("&quot;", "\""),
                  std::pair("&apos;", "'"), std::pair("&amp;", "&")})
                name.replace(QLatin1String(entity), QLatin1String(character));
            if (!name.isEmpty())
                addName(name, folder, depth);
        }
    }

    void noteEndless(const QString &name)
    {
        if (endless.isEmpty())
            endless = name;
    }

    QSet<QString> m_seen; ///< folder and name
};

} // namespace

QStringList referencedFiles(const QString &name)
{
    Search search;
    search.addName(name, QDir::currentPath(), 0);
    return search.files;
}

QString endlessSource(const QString &name)
{
    Search search;
    search.addName(name, QDir::currentPath(), 0);
    return search.endless;
}

QString endlessSourceProblem(const QString &name)
{
    const QString endless = endlessSource(name);
    if (endless.isEmpty())
        return {};
    return labelText({"MESS_ENTREE_SPECIALE",
                      "« %1 » est un tube, un périphérique ou l'entrée standard, et non un fichier."})
        .arg(endless);
}

QString localFile(QString path)
{
    static const QRegularExpression prefix(QStringLiteral("^/vsi[a-z0-9_]+/"));
    bool isVirtual = false;
    while (isVirtualPath(path) && prefix.match(path).hasMatch()) {
        isVirtual = true;
        path.remove(prefix);
        path = path.mid(path.indexOf(QLatin1Char(',')) + 1); // "/vsisubfile/0_1000,dem.tif"
        path.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
    }
    while (isVirtual && !path.isEmpty() && (QFileInfo(path).isDir() || !QFileInfo::exists(path)))
        path.truncate(qMax(0, static_cast<int>(path.lastIndexOf(QLatin1Char('/')))));
    return path;
}
