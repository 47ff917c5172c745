#pragma once

#include "panels/options/fragments.h"
#include "panels/options/recordfields.h"

// The fields of contours: what panels/options/processoptions.cpp asks of every record.

QVector<RecordField<ContourOptions>> fieldsOf(const ContourOptions &);
QString fieldProblem(const ContourOptions &options);
QString runProblem(const ContourOptions &options);
bool dependsOnExtremes(const ContourOptions &);
