#include "messages/rasterheader.h"

#include "messages/dico.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#ifndef O_BINARY
#define O_BINARY 0
#endif

namespace
{

/// Reads fields from the bytes of a header. visitFields() calls it and FieldWriter with the same list of
/// fields.
class FieldReader
{
public:
    FieldReader(const char *bytes, bool swapped)
        : m_bytes(bytes)
        , m_swapped(swapped)
    { }

    template <class Number> void number(std::size_t offset, Number &value) const
    {
        char raw[sizeof(Number)];
        std::copy_n(m_bytes + offset, sizeof raw, raw);
        if (m_swapped)
            std::reverse(raw, raw + sizeof raw);
        std::memcpy(&value, raw, sizeof raw);
    }
    void text(std::size_t offset, std::size_t length, std::string &value) const
    {
        value.assign(m_bytes + offset, length);
        value.resize(std::min(value.find('\0'), value.size()));
    }

private:
    const char *m_bytes;
    bool m_swapped;
};

class FieldWriter
{
public:
    FieldWriter(char *bytes, bool swapped)
        : m_bytes(bytes)
        , m_swapped(swapped)
    { }

    template <class Number> void number(std::size_t offset, const Number &value) const
    {
        std::memcpy(m_bytes + offset, &value, sizeof value);
        if (m_swapped)
            std::reverse(m_bytes + offset, m_bytes + offset + sizeof value);
    }
    void text(std::size_t offset, std::size_t length, const std::string &value) const
    {
        std::copy_n(value.data(), std::min(value.size(), length), m_bytes + offset);
    }

private:
    char *m_bytes;
    bool m_swapped;
};

template <class Header, class Fields> void visitFields(Header &header, const Fields &fields)
{
    fields.number(0, header.firstDimension);
    fields.number(4, header.secondDimension);
    fields.number(8, header.word8);
    fields.number(10, header.byte10);
    fields.number(11, header.byte11);
    fields.number(12, header.real12);
    fields.number(16, header.real16);
    fields.number(20, header.real20);
    fields.number(24, header.word24);
    fields.text(26, 3, header.magic);
    fields.text(29, 2, header.marker);
    fields.number(32, header.word32);
    fields.number(34, header.byte34);
    fields.number(35, header.byte35);
    fields.number(36, header.word36);
    for (std::size_t index = 0; index < header.reals40.size(); ++index)
        fields.number(40 + 8 * index, header.reals40[index]);
    fields.number(72, header.real72);
    fields.text(80, 31, header.text80);
    fields.text(111, 16, header.typeName);
    fields.text(127, 128, header.comment);
}

/// Whether numbers are swapped: only under "im2", not under the older magic.
bool isSwapped(const std::string &magic)
{
    return magic == "im2";
}

void makeMarkerKnown(RasterHeader &header)
{
    if (header.marker != "m#" && header.marker != "m*")
        header.marker = "m#";
}

/// Rewrites the header with the new magic and type name, and with a known marker. Bytes that belong to no field
/// stay as they were.
void convertOlderHeader(int descriptor, const RasterHeaderBytes &older)
{
    RasterHeader header = parseRasterHeader({older.data(), older.size()});
    header.magic = "im2";
    header.typeName = "INCONNU";
    makeMarkerKnown(header);
    RasterHeaderBytes bytes = older;
    std::fill_n(bytes.begin() + 111, 16, '\0');
    visitFields(header, FieldWriter(bytes.data(), isSwapped(header.magic)));
    if (lseek(descriptor, 0, SEEK_SET) == 0) {
        [[maybe_unused]] const auto written = write(descriptor, bytes.data(), bytes.size());
    }
}

bool isRegularFile(const char *path)
{
    struct stat status
    { };
    return stat(path, &status) == 0 && (status.st_mode & S_IFMT) == S_IFREG;
}

} // namespace

RasterHeader parseRasterHeader(std::string_view text)
{
    RasterHeaderBytes bytes{};
    std::copy_n(text.data(), std::min(text.size(), bytes.size()), bytes.data());
    RasterHeader header;
    visitFields(header, FieldReader(bytes.data(), isSwapped(std::string(bytes.data() + 26, 3))));
    return header;
}

RasterHeaderBytes rasterHeaderBytes(const RasterHeader &header)
{
    RasterHeader written = header;
    if (written.magic != "im2" && written.magic != "mi2")
        written.magic = "mi2";
    makeMarkerKnown(written);
    RasterHeaderBytes bytes{};
    visitFields(written, FieldWriter(bytes.data(), isSwapped(written.magic)));
    return bytes;
}

int openRaster(const char *path)
{
    if (!path || !*path || !isRegularFile(path)) // opening a pipe could block
        return -1;
    bool readOnly = false;
    int descriptor = open(path, O_RDWR | O_BINARY);
    if (descriptor < 0) {
        readOnly = true;
        descriptor = open(path, O_RDONLY | O_BINARY);
    }
    if (descriptor < 0)
        return -1;

    RasterHeaderBytes bytes{};
    if (read(descriptor, bytes.data(), bytes.size()) != static_cast<long>(bytes.size())) {
        close(descriptor);
        return -2;
    }
    const std::string magic(bytes.data() + 26, 3);
    if (magic != "im2" && magic != "mi2" && magic != "im*") {
        close(descriptor);
        return -3;
    }
    if (readOnly)
        dico_message("AVER_OUV_RDONLY", path);
    else if (magic == "im*")
        convertOlderHeader(descriptor, bytes);
    return descriptor;
}
