#include "panels/processoptions.h"

#include <QStringList>

const QVector<RecordField<ShadedOptions>> &fieldsOf(const ShadedOptions &)
{
    static const QVector<RecordField<ShadedOptions>> fields{
        QUVO_FIELD(ShadedOptions, exaggeration, 0, 100, "MESS_OPT_EXAGERATION",
                   "facteur appliqué aux altitudes"),
        QUVO_FIELD(
            ShadedOptions, scaleIndex, -1, scaleRowCount - 1, "MESS_OPT_ECHELLE",
            "unités : 0 X, Y et Z dans la même ; 1 X et Y en mètres, Z en pieds ; 2 X et Y en degrés, Z en "
            "mètres ; 3 X et Y en degrés, Z en pieds ; -1 le rapport donné par scaleText"),
        QUVO_FIELD(ShadedOptions, scaleText, 0, 0, "MESS_OPT_RAPPORT",
                   "rapport de l'unité verticale à l'unité horizontale, un nombre positif"),
        QUVO_FIELD(ShadedOptions, compass, 0, 360, "MESS_OPT_BOUSSOLE",
                   "lecture de la boussole, en degrés, 0 au nord ; l'outil reçoit l'azimut 270 - compass"),
        QUVO_FIELD(ShadedOptions, altitude, 0, 90, "MESS_OPT_ALTITUDE",
                   "hauteur du soleil sur l'horizon, en degrés"),
        QUVO_FIELD(ShadedOptions, computeEdges, 0, 0, "MESS_OPT_BORDS",
                   "calculer aussi sur les bords et à côté des cellules sans donnée"),
        QUVO_FIELD(ShadedOptions, zevenbergenThorne, 0, 0, "MESS_OPT_ZEVENBERGEN",
                   "formule de Zevenbergen et Thorne (terrain lisse) au lieu de celle de Horn"),
    };
    return fields;
}

QString optionsProblem(const ShadedOptions &options)
{
    if (options.scaleIndex >= 0)
        return {};
    double ratio = 0.0;
    if (readNumber(options.scaleText, ratio) && ratio > 0.0)
        return {};
    return labelText({"MESS_OPT_RAPPORT_INV", "scaleText doit être un nombre positif, pas « %1 »."})
        .arg(options.scaleText);
}

void settle(ShadedOptions &options, const QStringList &givenFields)
{
    if (givenFields.contains(QLatin1String("scaleText")) && !givenFields.contains(QLatin1String("scaleIndex")))
        options.scaleIndex = -1;
}

QString optionsProblem(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return optionsProblem(record); }, options);
}

void settle(ProcessOptions &options, const QStringList &givenFields)
{
    std::visit([&](auto &record) { settle(record, givenFields); }, options);
}

QString argumentFragment(const ProcessOptions &options)
{
    struct Fragment
    {
        QString operator()(const ShadedOptions &record) const { return shadedFragment(record); }
    };
    return std::visit(Fragment{}, options);
}

QString setOption(ProcessOptions &options, const QString &name, const QVariant &value)
{
    return std::visit(
        [&](auto &record) {
            QStringList names;
            for (const auto &field : fieldsOf(record)) {
                if (name == QLatin1String(field.name))
                    return setField(record, field, value);
                names += QString::fromLatin1(field.name);
            }
            return labelText({"MESS_OPT_INCONNUE", "Option inconnue : « %1 ». Options de ce traitement : %2."})
                .arg(name, names.join(QLatin1String(", ")));
        },
        options);
}

QVector<FieldDescription> describeOptions(const ProcessOptions &options)
{
    return std::visit([](const auto &record) { return describeFields(record, fieldsOf(record)); }, options);
}
