#pragma once

#include "messages/rasterheader.h"

#include <QString>

#include <optional>

// Rasters that begin with a header of 256 bytes (messages/rasterheader). GDAL cannot read their cells.

/// The header of such a file, read without changing it. Nothing where the file is no regular file, shorter than
/// a header, or has another magic.
std::optional<RasterHeader> readOwnHeader(const QString &path);

/// Whether the header has the older magic, which convertOwnHeader() replaces.
bool isOlderHeader(const RasterHeader &header);

/// A text of a header: UTF-8 where it is valid UTF-8, else Latin 1.
QString headerText(const std::string &text);

/// Rewrites the older header of a file in place. Returns what the user should know, in sentences: the messages
/// of the reader (messages/dico), or why it could not be called; empty when the header was rewritten. The
/// reader ends the process where its dictionary is missing, so it is called only when the dictionary is there.
QString convertOwnHeader(const QString &path);
