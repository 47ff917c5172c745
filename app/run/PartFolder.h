#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A hidden folder beside an output, ".<output's name>.part-XXXXXX". A run writes its product there, under the
/// output's own name, which formats also store inside of files, and moves it to its place when it is whole.
/// Until then, what stands in that place is not touched.
///
/// The folder holds "new" with the product, "steps" with intermediate files, and while the product is moved
/// "old" with what it replaces and "names" with the names of its files. It is removed with this object.
class PartFolder
{
public:
    /// Creates the folder. The output's folder exists.
    explicit PartFolder(const QString &output);

    bool isValid() const { return m_folder.isValid(); }

    /// Path of the product inside the folder.
    QString product() const;

    /// Path of a folder for the intermediate files of the run; empty when it cannot be created.
    QString stepsFolder() const;

    /// The text with the output's folder in the place of this one.
    QString withFinalPaths(QString text) const;

    /// Moves every file of the product to its place, the product itself last, and removes the files of
    /// `replaced`, which are in the output's folder. Returns why that failed, in a sentence that also says
    /// whether the old files are whole; empty otherwise.
    QString place(const QStringList &replaced);

private:
    QString m_output;
    QTemporaryDir m_folder;
};

/// Absolute path of a hidden file or folder of ours beside an output: ".<output's name><suffix>", or a hash of
/// the name where that is long.
QString hiddenBeside(const QString &output, const QString &suffix);

/// Whether the path is that of a product in a part folder.
bool isInPartFolder(const QString &path);

/// A sentence: no part folder could be created beside the output.
QString partFolderProblem(const QString &output);

/// Removes the part folders of dead runs onto this output, after it has put back the old files where such a run
/// died while it moved its product. Only folders that `owner` owns and that hold nothing else are touched.
/// Called by the holder of the output's lock, before it creates a part folder.
void sweepPartFolders(const QString &output, uint owner);
