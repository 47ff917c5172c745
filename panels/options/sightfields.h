#pragma once

#include "panels/options/fragments.h"
#include "panels/options/recordfields.h"

#include <QStringList>
#include <QVariantMap>

#include <optional>

// The fields of an intervisibility: what panels/options/processoptions.cpp asks of every record.

QVector<RecordField<IntervisibilityOptions>> fieldsOf(const IntervisibilityOptions &);
QString fieldProblem(const IntervisibilityOptions &options);
QString runProblem(const IntervisibilityOptions &options);
void complete(IntervisibilityOptions &options, const QStringList &givenFields, const QString &folder);
std::optional<QString> setRows(IntervisibilityOptions &options, const QString &name, const QVariant &value);
QVariantMap rowValues(const IntervisibilityOptions &options);
