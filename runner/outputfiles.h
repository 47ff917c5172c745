#pragma once

#include "runner/processing.h"

/// Deletes the file and what came with it (QuvoOutputFile::before), or what its driver keeps beside it. A file
/// that does not exist is none of its business; one that is still there after its driver's deletion (a
/// half-written file that the driver does not recognise) is removed plainly, a folder with all that it holds.
/// Nothing is shown; a file that cannot be removed is logged.
void deleteOutputFile(const QuvoOutputFile &file);

/// The files of the output's folder that are named like it: its whole name with a dot and more behind it, and
/// where it owns its base name that one, alone or with an extension of drivers' side files.
QStringList namesakes(const QuvoOutputFile &output);

/// Deletes the files of each step in order, up to the first step that has none.
void deleteOutputFiles(const QuvoOutputFilesListCollection &files);
