#pragma once

#include "runner/processing.h"

/// Deletes the file and what its driver keeps beside it. A file that does not exist is none of its business;
/// one that is still there after its driver's deletion (a half-written file that the driver does not recognise)
/// is removed /// plainly, a folder that the driver wrote with all that it holds. Nothing is shown; a file that
/// cannot be removed is logged.
void deleteOutputFile(const QuvoOutputFile &file);

/// Deletes the files of each step in order, up to the first step that has none.
void deleteOutputFiles(const QuvoOutputFilesListCollection &files);
