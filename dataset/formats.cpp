#include "dataset/formats.h"

#include "messages/label.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr auto byNameOnly = FormatOffer::ByNameOnly;
constexpr auto refused = FormatOffer::Refused;

constexpr FormatTraits rows[] = {
    {.driver = "AAIGrid", .bands = FormatBands::One, .readInOrder = true},
    {.driver = "BAG", .vector = refused}, // has fixed layers
    {.driver = "COG",
     .overviews = OverviewPlace::BuiltIn,
     .keepsToWholeName = true,
     .temporarySuffix = ".ovr.tmp"},
    {.driver = "CSV", .vector = refused}, // holds no geometries
    {.driver = "DGN", .vector = refused}, // needs a seed file
    {.driver = "DTED", .raster = byNameOnly},
    // Under its other extensions the driver would make an archive, or a table without shapes.
    {.driver = "ESRI Shapefile",
     .longestAttribute = 10,
     .extensions = "shp",
     .sideExtensions = "shx dbf prj cpg qix sbn sbx idm ind qpj",
     .reservedAttributes = "id"},
    {.driver = "FITS", .vector = refused}, // holds no geometries
    {.driver = "GIF", .bands = FormatBands::One, .keepsToWholeName = true},
    {.driver = "GML", .sideExtensions = "xsd gfs"},
    {.driver = "GPKG",
     .overviews = OverviewPlace::InProduct,
     .isDatabase = true,
     .reservedAttributes = "id fid geom"},
    {.driver = "GPSBabel", .vector = refused}, // needs another program
    {.driver = "GPX", .vector = refused},      // has fixed layers
    {.driver = "GS7BG", .bands = FormatBands::One},
    {.driver = "GRASSASCIIGrid", .readInOrder = true},
    {.driver = "GSAG", .bands = FormatBands::One},
    {.driver = "GSBG", .bands = FormatBands::One},
    {.driver = "GTiff", .keepsToWholeName = true},
    {.driver = "ILWIS", .raster = refused}, // leaves files of other names behind
    {.driver = "ISG", .readInOrder = true},
    {.driver = "Interlis 2", .vector = refused}, // needs a model file
    {.driver = "JPEG", .keepsToWholeName = true},
    {.driver = "KMLSUPEROVERLAY", .raster = refused}, // leaves folders behind
    {.driver = "MBTiles", .raster = byNameOnly, .overviews = OverviewPlace::InProduct},
    {.driver = "MEM", .raster = byNameOnly},
    {.driver = "MRF", .raster = refused}, // leaves files of other names behind
    {.driver = "MVT", .vector = refused}, // makes a folder
    // The driver also names .mid, which is a part of a .mif product.
    {.driver = "MapInfo File", .extensions = "tab mif", .sideExtensions = "tab map id dat ind mif mid"},
    {.driver = "NITF", .raster = byNameOnly},
    {.driver = "NTv2", .raster = byNameOnly},
    {.driver = "netCDF", .bands = FormatBands::One},
    {.driver = "ODS", .vector = refused},     // holds no geometries
    {.driver = "OGR_VRT", .vector = refused}, // refers to other files
    {.driver = "PCRaster", .raster = byNameOnly},
    {.driver = "PDF", .raster = byNameOnly, .overviews = OverviewPlace::InProduct},
    {.driver = "PGDUMP", .vector = refused}, // is a script
    {.driver = "PNG", .keepsToWholeName = true},
    {.driver = "S57", .vector = refused}, // has fixed layers
    {.driver = "SQLite", .isDatabase = true, .reservedAttributes = "id ogc_fid geometry"},
    {.driver = "SRTMHGT", .raster = byNameOnly},
    {.driver = "VDV", .vector = refused}, // has fixed layers
    {.driver = "VRT", .raster = refused}, // refers to the input instead of holding the product
    {.driver = "WEBP", .bands = FormatBands::Several, .keepsToWholeName = true},
    {.driver = "XLSX", .vector = refused}, // holds no geometries
    {.driver = "XPM", .bands = FormatBands::One},
};
constexpr FormatTraits otherDrivers{};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

const FormatTraits &formatTraits(const QString &driver)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const FormatTraits &row) {
        return driver.compare(QLatin1String(row.driver), Qt::CaseInsensitive) == 0;
    });
    return found == std::end(rows) ? otherDrivers : *found;
}

QStringList extensionsOfOurs(const QString &driver)
{
    return words(formatTraits(driver).extensions);
}

QString attributeProblem(const QString &driver, const QString &name)
{
    const FormatTraits &traits = formatTraits(driver);
    const auto bytes = name.toUtf8().size();
    if (traits.longestAttribute > 0 && bytes > traits.longestAttribute)
        return labelText({"MESS_ATTR_LONG",
                          "Le format « %1 » admet %2 octets pour le nom d'un attribut ; « %3 » en a %4. "
                          "Choisissez un "
                          "nom plus court ou un autre format."})
            .arg(driver, QString::number(traits.longestAttribute), name, QString::number(bytes));
    if (words(traits.reservedAttributes).contains(name, Qt::CaseInsensitive))
        return labelText(
                   {"MESS_ATTR_RESERVE",
                    "Un fichier au format « %1 » a déjà un champ « %2 » : choisissez un autre nom d'attribut."})
            .arg(driver, name);
    return {};
}

QString attributesProblem(const QString &driver, const QStringList &names)
{
    QString problem;
    for (const QString &name : names) {
        if (problem.isEmpty())
            problem = attributeProblem(driver, name);
    }
    return problem;
}

QStringList sideExtensions(const QString &driver, ProductKind product)
{
    constexpr char usualOfRasters[] = "hdr prj clr stx aux aux.xml ers rrd wld tfw blw";
    const QStringList own = words(formatTraits(driver).sideExtensions);
    return own.isEmpty() && product == ProductKind::Raster ? words(usualOfRasters) : own;
}

bool takesNoFields(const QString &driver)
{
    return driver == QLatin1String("DXF");
}
