#pragma once

#include "colortable/colortablefile.h"

#include <optional>

/// Reads a colour table of another program's format, recognised by what the file holds. Nothing when it is of
/// no such format. The entries stand in the order of the file; the caller sorts them.
std::optional<ColorTableReading> readForeignTable(const QByteArray &bytes);
