#include "colortable/formats/cptcolor.h"

#include "colortable/formats/colornames.h"
#include "colortable/formats/tableparts.h"

#include <QRegularExpression>

namespace
{

/// Whether all numbers lie from 0 to the highest.
bool within(const QVector<double> &numbers, double highest)
{
    return std::all_of(numbers.begin(), numbers.end(),
                       [&](double number) { return number >= 0.0 && number <= highest; });
}

std::optional<CptColor> hsvColor(const QVector<double> &numbers, double alpha)
{
    if (!within(numbers.mid(0, 1), 360.0) || !within(numbers.mid(1), 1.0))
        return std::nullopt;
    CptColor color;
    color.color = colorOfHsv(numbers.at(0), numbers.at(1), numbers.at(2), alpha);
    color.isHsv = true;
    std::copy(numbers.begin(), numbers.end(), color.parts);
    return color;
}

std::optional<CptColor> rgbColor(const QVector<double> &numbers, double alpha)
{
    if (!within(numbers, 255.0))
        return std::nullopt;
    CptColor color;
    color.color = colorOfParts(numbers.at(0) / 255.0, numbers.at(1) / 255.0, numbers.at(2) / 255.0, alpha);
    color.isRgb = true;
    std::copy(numbers.begin(), numbers.end(), color.parts);
    return color;
}

std::optional<CptColor> ofNumbers(const QVector<double> &numbers, CptModel model, double alpha)
{
    CptColor color;
    switch (numbers.size()) {
    case 1: // a grey
        if (!within(numbers, 255.0))
            return std::nullopt;
        color.color = colorOfParts(numbers.at(0) / 255.0, numbers.at(0) / 255.0, numbers.at(0) / 255.0, alpha);
        return color;
    case 3:
        return model == CptModel::Hsv ? hsvColor(numbers, alpha) : rgbColor(numbers, alpha);
    case 4: {
        if (!within(numbers, 100.0))
            return std::nullopt;
        const auto ink = [&](int at) { return 1.0 - numbers.at(at) / 100.0; };
        color.color = colorOfParts(ink(0) * ink(3), ink(1) * ink(3), ink(2) * ink(3), alpha);
        return color;
    }
    default:
        return std::nullopt;
    }
}

std::optional<QVector<double>> numbersOf(const QStringList &texts)
{
    QVector<double> numbers;
    for (const QString &text : texts) {
        const std::optional<double> number = finiteNumber(text);
        if (!number)
            return std::nullopt;
        numbers += *number;
    }
    return numbers;
}

/// The colour of one field without its transparency.
std::optional<CptColor> ofText(const QString &text, CptModel model, double alpha)
{
    static const QRegularExpression hyphened(QStringLiteral("^([0-9.]+)-([0-9.]+)-([0-9.]+)$"));
    const QRegularExpressionMatch hsv = hyphened.match(text);
    if (hsv.hasMatch()) {
        const auto numbers = numbersOf(hsv.capturedTexts().mid(1));
        std::optional<CptColor> color = numbers ? hsvColor(*numbers, alpha) : std::nullopt;
        if (color)
            color->isHyphened = true;
        return color;
    }
    const auto numbers = numbersOf(text.split(QLatin1Char('/')));
    if (numbers)
        return ofNumbers(*numbers, model, alpha);
    CptColor named;
    named.color = x11NamedColor(text);
    if (!named.color.isValid())
        return std::nullopt;
    named.color.setAlpha(qRound(255 * alpha));
    return named;
}

} // namespace

std::optional<CptColor> readCptColor(const QStringList &fields, CptModel model)
{
    if (fields.size() != 1) {
        const auto numbers = numbersOf(fields);
        return numbers ? ofNumbers(*numbers, model, 1.0) : std::nullopt;
    }
    if (fields.first() == QLatin1String("-")) {
        CptColor dash;
        dash.color = Qt::transparent;
        dash.isDash = true;
        return dash;
    }
    const QString text = fields.first().section(QLatin1Char('@'), 0, 0);
    double alpha = 1.0;
    if (text != fields.first()) {
        const std::optional<double> percent = finiteNumber(fields.first().section(QLatin1Char('@'), 1));
        if (!percent || *percent < 0.0 || *percent > 100.0)
            return std::nullopt;
        alpha = 1.0 - *percent / 100.0;
    }
    return ofText(text, model, alpha);
}
