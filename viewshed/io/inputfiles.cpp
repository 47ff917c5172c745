#include "viewshed/io/inputfiles.h"

#include "viewshed/problem.h"

#include <cpl_conv.h>
#include <cpl_minixml.h>
#include <cpl_string.h>
#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <set>

namespace viewshed
{

namespace
{

namespace fs = std::filesystem;

bool startsWith(const std::string &text, const char *start)
{
    return text.rfind(start, 0) == 0;
}

/// The local file or folder behind a name that GDAL opens: "a.zip" for "/vsizip/a.zip/b.tif". Empty if there is
/// none.
fs::path localFile(std::string name)
{
    std::error_code ignored;
    bool isVirtual = false;
    while (startsWith(name, "/vsi") && name.find('/', 1) != std::string::npos) {
        isVirtual = true;
        const bool isPart = startsWith(name, "/vsisubfile/"); // "/vsisubfile/0_1000,dem.tif"
        name.erase(0, name.find('/', 1) + 1);
        if (isPart)
            name.erase(0, name.find(',') + 1);
        if (startsWith(name, "{"))
            name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '{' || c == '}'; }),
                       name.end());
    }
    while (isVirtual && !name.empty() && (!fs::exists(name, ignored) || fs::is_directory(name, ignored)))
        name.erase(name.find_last_of('/') == std::string::npos ? 0 : name.find_last_of('/'));
    return fs::exists(name, ignored) ? fs::path(name) : fs::path();
}

/// The text of a virtual raster or virtual vector file, which may itself be the name; empty for any other name.
std::string virtualText(const std::string &name)
{
    constexpr GIntBig longest = 256 << 20; // bytes
    std::string text = name;
    GByte *bytes = nullptr;
    if (VSILFILE *file = startsWith(name, "<") ? nullptr : VSIFOpenL(name.c_str(), "rb")) {
        std::array<char, 1024> head{};
        VSIFReadL(head.data(), 1, head.size() - 1, file);
        text = head.data();
        const bool isText = text.find("<VRTDataset") != std::string::npos
            || text.find("<OGRVRTDataSource") != std::string::npos;
        if (isText && VSIIngestFile(file, nullptr, &bytes, nullptr, longest) != FALSE)
            text = reinterpret_cast<const char *>(bytes);
        VSIFree(bytes);
        VSIFCloseL(file);
    }
    const bool isVirtual =
        text.find("<VRTDataset") != std::string::npos || text.find("<OGRVRTDataSource") != std::string::npos;
    return isVirtual ? text : std::string();
}

/// Follows the references of the inputs. Each function returns whether it led to a local file.
class Search
{
public:
    explicit Search(const fs::path &destination)
        : m_destination(destination.filename().string())
    { }

    /// Adds the files of a data set that GDAL opens.
    bool addDataSet(const std::string &name)
    {
        if (!m_names.insert(name).second)
            return true;
        bool known = addFile(localFile(name));
        const std::string text = virtualText(name);
        if (!text.empty()) { // before GDAL opens what the text refers to
            const CPLXMLTreeCloser root(CPLParseXMLString(text.c_str()));
            known = addReferences(root.get(), fs::path(name).parent_path()) || known;
        }
        const char *const options[] = {"@WRITE_GFS=NO", nullptr};
        const std::unique_ptr<GDALDataset> dataset(
            GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_VECTOR, nullptr, options));
        const CPLStringList list(dataset ? dataset->GetFileList() : nullptr);
        for (int file = 0; file < list.Count(); ++file)
            known = addListed(list[file]) || known;
        if (!known)
            m_result.unknown.push_back(name);
        return known;
    }

    const InputFiles &result() const { return m_result; }

private:
    bool addFile(const fs::path &file)
    {
        if (file.empty() || !m_files.insert(file).second)
            return !file.empty();
        if (!fs::is_regular_file(file) && !fs::is_directory(file))
            throw Problem("The input " + file.string()
                          + " is a pipe or a device; copy its data to a file and choose that.");
        m_result.files.push_back(file);
        return true;
    }

    /// Adds a file that a data set lists or refers to. A virtual raster may have thousands of files, so most
    /// are not opened: only virtual ones, names within a file, and a file that the destination's name
    /// continues, because the destination may be its companion.
    bool addListed(const std::string &name)
    {
        const fs::path file = localFile(name);
        const bool known = addFile(file);
        const bool opens =
            !known || startsWith(m_destination, file.stem().c_str()) || !virtualText(name).empty();
        return opens ? addDataSet(name) : known;
    }

    /// Adds the files that the elements of a virtual file in `folder` name.
    bool addReferences(const CPLXMLNode *first, const fs::path &folder)
    {
        bool known = false;
        for (const CPLXMLNode *node = first; node != nullptr; node = node->psNext) {
            known = addReferences(node->psChild, folder) || known;
            const std::string element = node->pszValue;
            const bool isReference = node->eType == CXT_Element
                && (element == "SourceFilename" || element == "SourceDataset" || element == "SrcDataSource");
            if (isReference)
                known = addReference(CPLGetXMLValue(node, "", ""), folder) || known;
        }
        return known;
    }
    /// The value may be a name within a file: "GTIFF_DIR:1:dem.tif".
    bool addReference(const std::string &value, const fs::path &folder)
    {
        bool known = false;
        CPLStringList parts(CSLTokenizeString2(value.c_str(), ":\"", 0));
        parts.AddString(value.c_str());
        for (int part = 0; part < parts.Count(); ++part) {
            for (const std::string &name : {std::string(parts[part]), (folder / parts[part]).string()}) {
                const fs::path file = localFile(name);
                if (!file.empty() && !fs::is_directory(file))
                    known = addListed(name) || known;
            }
        }
        if (!known)
            m_result.unknown.push_back(value);
        return known;
    }

    std::string m_destination;
    InputFiles m_result;
    std::set<std::string> m_names; ///< the data sets that were searched
    std::set<fs::path> m_files;
};

bool isSameFile(const fs::path &one, const fs::path &other)
{
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

/// The files that the driver deletes or overwrites when it creates the picture.
std::vector<fs::path> replacedFiles(const Options &options)
{
    std::vector<fs::path> files = sideFiles(options.destination, options.creationOptions);
    const fs::path destination = localFile(options.destination);
    files.push_back(destination.empty() ? fs::path(options.destination) : destination);
    if (isGeoTiff(options.destination)) {
        const std::unique_ptr<GDALDataset> old(GDALDataset::Open(options.destination.c_str(), GDAL_OF_RASTER));
        const CPLStringList list(old ? old->GetFileList() : nullptr);
        files.insert(files.end(), list.List(), list.List() + list.Count());
    }
    return files;
}

} // namespace

InputFiles inputFiles(const Options &options)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    Search search(options.destination);
    search.addDataSet(options.source);
    search.addDataSet(options.pointFile);
    return search.result();
}

void checkDestination(const Options &options, const InputFiles &inputs)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    const std::string choose = "; choose another -DstFile.";
    const fs::path destination = localFile(options.destination);
    if (!destination.empty() && !fs::is_regular_file(destination))
        throw Problem(destination.string() + " is not a regular file, so the picture cannot replace it"
                      + choose);
    for (const fs::path &replaced : replacedFiles(options)) {
        for (const fs::path &file : inputs.files) {
            if (isSameFile(file, replaced))
                throw Problem("The picture would replace " + file.string() + ", which is an input" + choose);
        }
    }
    for (const auto &[side, name] :
         {std::pair{&options.skyline, "-Skyline"}, {&options.statistics, "-Statistics"}}) {
        for (const fs::path &file : inputs.files) {
            if (!side->empty() && isSameFile(file, localFile(*side)))
                throw Problem("The option " + std::string(name) + " would replace " + file.string()
                              + ", which is an input; choose another file.");
        }
    }
    if (!destination.empty() && !inputs.unknown.empty())
        throw Problem("The picture would replace " + destination.string()
                      + ", and nothing shows whether the input " + inputs.unknown.front().substr(0, 200)
                      + " consists of it" + choose);
}

std::vector<fs::path> sideFiles(const std::string &destination, const std::vector<std::string> &creationOptions)
{
    CPLStringList options;
    for (const std::string &option : creationOptions)
        options.AddString(option.c_str());
    std::vector<fs::path> files{destination + ".aux.xml"};
    if (options.FetchBool("TFW", false))
        files.push_back(fs::path(destination).replace_extension(".tfw"));
    if (options.FetchBool("WORLDFILE", false))
        files.push_back(fs::path(destination).replace_extension(".wld"));
    return files;
}

bool isGeoTiff(const std::string &path)
{
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    GDALDriverH driver = GDALIdentifyDriverEx(path.c_str(), GDAL_OF_RASTER, nullptr, nullptr);
    return driver != nullptr && EQUAL(GDALGetDescription(driver), "GTiff");
}

} // namespace viewshed
