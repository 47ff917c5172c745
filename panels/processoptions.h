#pragma once

#include "panels/fragments.h"
#include "panels/recordfields.h"

#include <variant>

/// The option record of any process. A new process adds its record here and an overload of each function below
/// that takes a single record.
using ProcessOptions = std::variant<ShadedOptions>;

/// The record's fields, in the order of its declaration.
const QVector<RecordField<ShadedOptions>> &fieldsOf(const ShadedOptions &);

/// Why the process would not understand the options, in a sentence; empty when they are good.
QString optionsProblem(const ShadedOptions &options);

/// What a field that was given implies for one that was not: a typed ratio is used.
void settle(ShadedOptions &options, const QStringList &givenFields);

QString optionsProblem(const ProcessOptions &options);
void settle(ProcessOptions &options, const QStringList &givenFields);

/// The argument fragment of the options (panels/fragments.h).
QString argumentFragment(const ProcessOptions &options);

/// Sets the field of that name. Returns why it could not, in a sentence that names the fields there are where
/// the name is unknown; empty when it did.
QString setOption(ProcessOptions &options, const QString &name, const QVariant &value);

/// The fields of the record, with its values as defaults.
QVector<FieldDescription> describeOptions(const ProcessOptions &options);
