// Feeds any bytes to the reader of raster headers, in memory and as a file that is opened twice.

#include "messages/rasterheader.h"
#include "tests/fuzz/fuzzing.h"

#include <unistd.h>

namespace
{

RasterHeaderBytes rewritten(std::string_view bytes)
{
    return rasterHeaderBytes(parseRasterHeader(bytes));
}

/// The bytes of the file after openRaster() has opened it.
QByteArray opened(const QString &path)
{
    const int descriptor = openRaster(QFile::encodeName(path).constData());
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the file is still there");
    const QByteArray bytes = file.readAll();
    if (bytes.size() < static_cast<int>(rasterHeaderSize))
        require(descriptor == -2, "a short header is refused");
    else
        require((descriptor >= 0) == (bytes.mid(26, 3) == "im2" || bytes.mid(26, 3) == "mi2"),
                "so is a foreign one");
    if (descriptor >= 0)
        close(descriptor);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzzBytes(data, size);
    const RasterHeaderBytes once = rewritten({bytes.constData(), size});
    require(rewritten({once.data(), once.size()}) == once, "a header comes back as it was");

    const QString path = fuzzFile(QStringLiteral("raster"), bytes);
    const QByteArray converted = opened(path);
    require(converted.size() == bytes.size() && converted.mid(256) == bytes.mid(256), "the cells stay");
    require(bytes.mid(26, 3) == "im*" || converted == bytes, "only the older magic is converted");
    require(opened(path) == converted, "a header is converted once");
    return 0;
}
