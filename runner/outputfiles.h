#pragma once

#include "runner/processing.h"

/// Deletes an output and its side files: those that came since the step began where QuvoOutputFile::before is
/// known, else those that the driver lists. A file that does not exist is skipped. A file that the driver does
/// not recognise, because it is half written, is removed like any file; a folder is removed with all that it
/// holds. Nothing is shown; a file that cannot be removed is logged.
void deleteOutputFile(const QuvoOutputFile &file);

/// The files of the output's folder whose names begin with the output's: its whole name followed by a dot and
/// more, and, where the driver writes side files of the base name, the base name alone or with one of
/// QuvoOutputFile::sideExtensions.
QStringList namesakes(const QuvoOutputFile &output);

/// Deletes the files of each step in order; stops at the first step without files.
void deleteOutputFiles(const QuvoOutputFilesListCollection &files);
