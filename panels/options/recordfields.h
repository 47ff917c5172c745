#pragma once

#include "messages/label.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>
#include <variant>

// Reads and writes an option record by the names of its fields, for recipes and for the command line of the
// batch program.

/// A field of a record. Recipes and the command line use its name in the code.
template <class Record> struct RecordField
{
    const char *name;
    std::variant<double Record::*, std::optional<double> Record::*, int Record::*, bool Record::*,
                 QString Record::*>
        member;
    double lowest;  ///< smallest allowed number; not used for switches and texts
    double highest; ///< largest allowed number; not used for switches and texts
    Label meaning;  ///< description for listings, with the unit
};

/// A row of a field table. The macro writes the name and the member from one word, so that they cannot differ.
#define QUVO_FIELD(Record, field, lowest, highest, key, text)                                                  \
    RecordField<Record>                                                                                        \
    {                                                                                                          \
#field, &Record::field, lowest, highest,                                                               \
        {                                                                                                      \
            key, text                                                                                          \
        }                                                                                                      \
    }

/// The largest number that an option takes for an elevation or a length, in any unit.
constexpr double highestElevation = 1e9;

/// A field in a listing.
struct FieldDescription
{
    QString name;
    QString range; ///< "0 - 90", "true | false", or empty for a text
    QString defaultValue;
    QString meaning;
};

/// The finite number in a text of the C locale, or a JSON number; nothing for any other value.
std::optional<double> readNumber(const QVariant &value);

/// The switch in the texts "true" and "false", or a JSON boolean; nothing for any other value.
std::optional<bool> readSwitch(const QVariant &value);

/// Whether the value is JSON's null, which stands for an optional number that is not given.
bool isNone(const QVariant &value);

// Why a value does not fit the field `name`, in a sentence: a number from `lowest` to `highest`, a switch, a
// text.

QString numberProblem(const QString &name, const QVariant &value, double lowest, double highest, bool whole);
QString switchProblem(const QString &name, const QVariant &value);
QString textProblem(const QString &name);

/// Sets a field of the record from a JSON value or a text. Returns the problem in a sentence, and leaves the
/// record as it is; empty when the field is set.
template <class Record>
QString setField(Record &record, const RecordField<Record> &field, const QVariant &value)
{
    const QString name = QString::fromLatin1(field.name);
    if (auto member = std::get_if<QString Record::*>(&field.member)) {
        if (value.userType() != QMetaType::QString || value.toString().contains(QChar(0)))
            return textProblem(name);
        record.**member = value.toString();
        return {};
    }
    if (auto member = std::get_if<bool Record::*>(&field.member)) {
        const auto on = readSwitch(value);
        record.**member = on.value_or(record.**member);
        return on ? QString() : switchProblem(name, value);
    }

    if (auto optional = std::get_if<std::optional<double> Record::*>(&field.member);
        optional && isNone(value)) {
        record.**optional = std::nullopt;
        return {};
    }
    const auto number = readNumber(value);
    const bool whole = std::holds_alternative<int Record::*>(field.member);
    const bool fits = number && *number >= field.lowest && *number <= field.highest
        && (!whole || *number == static_cast<int>(*number));
    if (!fits)
        return numberProblem(name, value, field.lowest, field.highest, whole);
    if (auto member = std::get_if<double Record::*>(&field.member))
        record.**member = *number;
    else if (auto optional = std::get_if<std::optional<double> Record::*>(&field.member))
        record.**optional = *number;
    else
        record.*std::get<int Record::*>(field.member) = static_cast<int>(*number);
    return {};
}

/// The field's value as a JSON value that setField() accepts.
template <class Record> QVariant fieldValue(const Record &record, const RecordField<Record> &field)
{
    return std::visit(
        [&](auto member) {
            const auto &value = record.*member;
            if constexpr (std::is_same_v<decltype(value), const std::optional<double> &>)
                return value ? QVariant(*value) : QVariant::fromValue(nullptr);
            else
                return QVariant(value);
        },
        field.member);
}

/// The field's value as a text that setField() accepts; empty for a number that is not given.
template <class Record> QString fieldText(const Record &record, const RecordField<Record> &field)
{
    return std::visit(
        [&](auto member) {
            const auto &value = record.*member;
            if constexpr (std::is_same_v<decltype(value), const std::optional<double> &>)
                return value ? QVariant(*value).toString() : QString();
            else
                return QVariant(value).toString();
        },
        field.member);
}

/// Describes the fields for a listing, with the record's values as their defaults.
template <class Record>
QVector<FieldDescription> describeFields(const Record &defaults, const QVector<RecordField<Record>> &fields)
{
    QVector<FieldDescription> rows;
    for (const auto &field : fields) {
        QString range;
        if (std::holds_alternative<bool Record::*>(field.member))
            range = QStringLiteral("true | false");
        else if (!std::holds_alternative<QString Record::*>(field.member))
            range =
                QStringLiteral("%1 - %2").arg(QString::number(field.lowest), QString::number(field.highest));
        rows += {QString::fromLatin1(field.name), range, fieldText(defaults, field), labelText(field.meaning)};
    }
    return rows;
}
