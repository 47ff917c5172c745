#include "dataset/chooser/ItemLister.h"

#include "dataset/chooser/ownraster.h"
#include "dataset/gdalmessages.h"
#include "dataset/pathencoding.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <cpl_vsi.h>
#include <gdal.h>

#include <algorithm>

struct ItemLister::Folder
{
    explicit Folder(const QString &listing)
    {
        constexpr int onlyThis = 0;
        constexpr int everyDepth = -1;
        const GdalMessages messages;
        directory = VSIOpenDir(encodePath(listing).constData(), isVirtualPath(listing) ? everyDepth : onlyThis,
                               nullptr);
    }
    ~Folder()
    {
        if (directory)
            VSICloseDir(directory);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    VSIDIR *directory = nullptr;
};

namespace
{

/// Whether the file accompanies another one, although a driver opens it.
bool isSideFile(const QString &path)
{
    const QString lower = path.toLower();
    const QStringList endings{".ovr", ".msk", ".aux.xml", ".shx", ".dbf", ".prj"};
    return std::any_of(endings.begin(), endings.end(),
                       [&](const QString &ending) { return lower.endsWith(ending); });
}

} // namespace

ItemLister::ItemLister(const QString &listing, SourceWanted wanted)
    : m_listing(listing)
    , m_wanted(wanted)
    , m_folder(std::make_unique<Folder>(listing))
{
    while (m_listing.endsWith(QLatin1Char('/')))
        m_listing.chop(1);
}

ItemLister::~ItemLister() = default;

bool ItemLister::isWanted(const QString &path) const
{
    if (isSideFile(path) || (!isVirtualPath(path) && !QFileInfo(path).isFile()))
        return false;
    const bool rasters = m_wanted == SourceWanted::Rasters;
    const unsigned kind = rasters ? GDAL_OF_RASTER : GDAL_OF_VECTOR;
    if (GDALIdentifyDriverEx(encodePath(path).constData(), kind, nullptr, nullptr))
        return true;
    // What GDAL does not open by itself, and the chooser explains.
    return rasters && (path.endsWith(QLatin1String(".hgt"), Qt::CaseInsensitive) || readOwnHeader(path));
}

bool ItemLister::advance(int milliseconds)
{
    const GdalMessages messages;
    QElapsedTimer clock;
    clock.start();
    do {
        const VSIDIREntry *entry = m_folder->directory && m_items.size() < mostItems
            ? VSIGetNextDirEntry(m_folder->directory)
            : nullptr;
        if (!entry)
            return false;
        const QString title = decodePath(entry->pszName);
        const QString path = m_listing + QLatin1Char('/') + title;
        const bool isFolder = entry->bModeKnown && VSI_ISDIR(entry->nMode);
        if (!isFolder && isWanted(path))
            m_items += {path, title};
    } while (clock.elapsed() < milliseconds);
    return true;
}
