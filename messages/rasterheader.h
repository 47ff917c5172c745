#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// Rasters that begin with a header of 256 bytes. Its magic states the byte order of its numbers.

constexpr std::size_t rasterHeaderSize = 256;

/// The fields of the header, in the host's byte order. Their types are known, the meaning of most is not.
struct RasterHeader
{
    std::uint32_t firstDimension = 0;
    std::uint32_t secondDimension = 0;
    std::uint16_t word8 = 0; ///< this and the fields below: named after their offset in bytes
    std::uint8_t byte10 = 0;
    std::uint8_t byte11 = 0;
    float real12 = 0;
    float real16 = 0;
    float real20 = 0;
    std::int16_t word24 = 0;
    std::string magic; ///< 3 bytes; numbers are in the host's byte order for "mi2" and "im*", swapped for "im2"
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

/// Reads a header of 256 bytes; missing bytes count as zeros.
RasterHeader parseRasterHeader(std::string_view bytes);

/// Formats a header. A magic other than "im2" and "mi2" becomes "mi2", a marker other than "m#" and "m*"
/// becomes "m#".
RasterHeaderBytes rasterHeaderBytes(const RasterHeader &header);

/// Opens such a raster for reading and writing; where writing is not allowed, for reading, with the warning
/// AVER_OUV_RDONLY (messages/dico.h). A header with the older magic "im*" is converted to "im2" and rewritten
/// in place; a marker other than "m#" and "m*" becomes "m#". path: bytes in the encoding of the file system.
///
/// Returns a file descriptor that the caller closes, or an error: -1 the file cannot be opened or path is null
/// or empty, -2 the header is incomplete, -3 another magic.
int openRaster(const char *path);
