#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// Rasters that begin with a header of 256 bytes, whose numbers stand in the byte order that its magic names.

constexpr std::size_t rasterHeaderSize = 256;

/// The header's fields, in host order. Their widths are known, the meaning of most is not.
struct RasterHeader
{
    std::uint32_t firstDimension = 0;
    std::uint32_t secondDimension = 0;
    std::uint16_t word8 = 0; ///< named after their place in the header
    std::uint8_t byte10 = 0;
    std::uint8_t byte11 = 0;
    float real12 = 0;
    float real16 = 0;
    float real20 = 0;
    std::int16_t word24 = 0;
    std::string
        magic; ///< 3 bytes: "im2" numbers in the other byte order than the host's; "mi2", "im*" in the host's
    std::string marker; ///< 2 bytes: "m#" or "m*"
    std::uint16_t word32 = 0;
    std::uint8_t byte34 = 0;
    std::uint8_t byte35 = 0;
    std::uint16_t word36 = 0;
    std::array<double, 4> reals40{};
    double real72 = 0;
    std::string text80;   ///< at most 31 bytes
    std::string typeName; ///< at most 16 bytes
    std::string comment;  ///< at most 128 bytes
};

using RasterHeaderBytes = std::array<char, rasterHeaderSize>;

/// Reads a header of 256 bytes; a shorter text is read as if zeros followed.
RasterHeader parseRasterHeader(std::string_view bytes);

/// The header as it is written: with magic "mi2" unless it is "im2" or "mi2" already, with marker "m#" unless
/// it is "m#" or "m*".
RasterHeaderBytes rasterHeaderBytes(const RasterHeader &header);

/// Opens such a raster, for reading and writing where that is allowed, else for reading with the warning
/// AVER_OUV_RDONLY (messages/dico.h). A header with the older magic "im*" is converted and rewritten in place.
/// Returns a file descriptor that the caller closes; -1 when the file cannot be opened, -2 when it has no whole
/// header, -3 for another magic. path: bytes as the file system has them; null or empty gives -1.
int openRaster(const char *path);
