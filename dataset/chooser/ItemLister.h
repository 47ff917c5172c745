#pragma once

#include "dataset/chooser/sourceinfo.h"

#include <QVector>

#include <memory>

/// Lists the files of a folder or an archive that GDAL takes for rasters or for vector data, in portions: each
/// file is looked at. Of an archive the files in its folders, too. Pipes and devices are left out, and so are
/// the files that only accompany others (overviews, attributes).
class ItemLister
{
public:
    /// The most files that are listed; a folder may hold any number.
    static constexpr int mostItems = 5000;

    /// listing: SourceInfo::listing.
    ItemLister(const QString &listing, SourceWanted wanted);
    ~ItemLister();
    ItemLister(const ItemLister &) = delete;
    ItemLister &operator=(const ItemLister &) = delete;

    /// Looks at one file at least, and at further ones until the milliseconds have passed. Returns whether
    /// files are left.
    bool advance(int milliseconds);

    /// What was found so far, in the order of the folder. A title is the path below the listed folder.
    const QVector<SourceItem> &items() const { return m_items; }

private:
    struct Folder;
    bool isWanted(const QString &path) const;

    QString m_listing;
    SourceWanted m_wanted;
    std::unique_ptr<Folder> m_folder;
    QVector<SourceItem> m_items;
};
