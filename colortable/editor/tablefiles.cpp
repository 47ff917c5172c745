#include "colortable/editor/tablefiles.h"

#include "colortable/colortablefile.h"
#include "colortable/editor/tablepainting.h"
#include "dataset/QuvoFilerDialog.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPushButton>

namespace
{

QString tableFilter()
{
    return labelText({"MESS_FICH_TC", "Fichier table couleur"}) + QStringLiteral(" (*.txt)");
}

/// The folder for files that belong to a table: the table's own, or the home folder for a table of the program.
QString folderFor(const QString &tableFile)
{
    return QFileInfo(tableFile).isWritable() ? QFileInfo(tableFile).path() : QDir::homePath();
}

bool mayReplace(QWidget *parent, const QString &file)
{
    return !QFileInfo::exists(file)
        || Prompt::question(parent, dico_label("MESS_FICHIER_EXISTANT", file.toLocal8Bit().constData()));
}

bool writeFile(QWidget *parent, const QString &file, const QByteArray &bytes)
{
    const QString problem = writeTableFile(file, bytes);
    if (problem.isEmpty())
        return true;
    Prompt::critical(parent,
                     dico_label("MESS_ERR_ECR_FICH", file.toLocal8Bit().constData()) + QStringLiteral("\n\n")
                         + problem);
    return false;
}

} // namespace

QString chooseTableToOpen(QWidget *parent, const QString &folder)
{
    return QuvoFilerDialog::getSelection(parent, QuvoFilerDialog::OpenFile,
                                         labelText({"MESS_CHOIX_TC", "Choisir un fichier table couleurs"}),
                                         folder, readableTablesFilter());
}

QString readableTablesFilter()
{
    return QStringLiteral("%1;;%2 (*.txt *.cpt *.qml *.sld *.xml *.clr *.rul *.pal *.ggr *.gpl *.act *.spr)")
        .arg(tableFilter(), labelText({"MESS_TF_TOUTES", "Toutes les tables lisibles"}));
}

QString chooseTableToSave(QWidget *parent, const QString &ownFolder, const QString &file)
{
    QDir().mkpath(ownFolder);
    const QString name = file.isEmpty() ? QStringLiteral("table.txt")
                                        : QFileInfo(file).completeBaseName() + QStringLiteral(".txt");
    QString chosen = QuvoFilerDialog::getSelection(
        parent, QuvoFilerDialog::SaveFile, labelText({"MESS_TCE_ENREG_TITRE", "Enregistrer la table couleur"}),
        QDir(ownFolder).filePath(name), tableFilter());
    if (chosen.isEmpty())
        return {};
    if (QFileInfo(chosen).suffix().isEmpty())
        chosen += QStringLiteral(".txt");
    return mayReplace(parent, chosen) ? chosen : QString();
}

bool mayLoadTable(QWidget *parent, const ColorTableReading &reading)
{
    if (reading.mixedUnits
        && !Prompt::question(
            parent,
            labelText({"MESS_ATN_TC_MIXTE",
                       "La table couleur que vous voulez charger, n'est pas prise en compte en totalité par "
                       "cet éditeur car elle contient un mélange de valeurs absolues et de valeurs exprimées "
                       "en pourcentage.\nCertaines couleurs seront ignorées.\nVoulez-vous la charger quand "
                       "même ?"})))
        return false;
    return !reading.invalidValues
        || Prompt::question(
            parent,
            labelText({"MESS_ATN_TC_VAL_INVAL",
                       "La table couleur que vous voulez charger, contient des valeurs invalides.\nVoulez-vous "
                       "la charger quand même ?"})
                + QStringLiteral("\n\n") + labelText({"MESS_TC_LIGNE", "Ligne %1"}).arg(reading.invalidLine));
}

std::optional<LoadedTable> acceptedTable(QWidget *parent, const QString &file)
{
    const ColorTableReading reading = readColorTable(file);
    if (!reading.problem.isEmpty() || elevationEntries(reading.entries).isEmpty()) {
        const QString reason = reading.problem.isEmpty() ? file : reading.problem;
        Prompt::critical(parent,
                         labelText({"MESS_TC_INVALID", "La table couleur spécifiée est invalide."})
                             + QStringLiteral("\n\n") + reason);
        return std::nullopt;
    }
    if (!mayLoadTable(parent, reading))
        return std::nullopt;
    return LoadedTable{entriesOfKind(reading.entries, reading.relative), reading.notes};
}

const QVector<ExportKind> &exportKinds()
{
    static const QVector<ExportKind> kinds{
        {TableFormat::GmtCpt, QStringLiteral("GMT"), QStringLiteral(".cpt"), QStringLiteral(".cpt")},
        {TableFormat::QgisText, QStringLiteral("QGIS"), QStringLiteral(".txt"), QStringLiteral("_qgis.txt")},
        {TableFormat::QgisStyle, QStringLiteral("QGIS"), QStringLiteral(".qml"), QStringLiteral(".qml")},
        {TableFormat::Sld, QStringLiteral("SLD"), QStringLiteral(".sld"), QStringLiteral(".sld")},
        {TableFormat::GrassRules, QStringLiteral("GRASS"), QStringLiteral(".rul"), QStringLiteral(".rul")},
    };
    return kinds;
}

void exportTable(QWidget *parent, const QList<QuvoColorDef> &entries, const ExportKind &kind,
                 const QString &tableFile)
{
    const QStringList losses = exportLosses(entries, kind.format);
    if (!losses.isEmpty()
        && !Prompt::question(parent,
                             losses.join(QLatin1Char('\n')) + QStringLiteral("\n\n")
                                 + labelText({"MESS_TCE_EXPORT_QUAND", "Exporter quand même ?"})))
        return;
    QString file = QuvoFilerDialog::getSelection(
        parent, QuvoFilerDialog::SaveFile, labelText({"MESS_TCE_EXPORTER", "Exporter"}),
        QDir(folderFor(tableFile)).filePath(QFileInfo(tableFile).completeBaseName() + kind.proposal),
        QStringLiteral("%1 (*%2)").arg(kind.name, kind.ending));
    if (file.isEmpty())
        return;
    if (QFileInfo(file).suffix().isEmpty())
        file += kind.ending;
    if (mayReplace(parent, file))
        writeFile(parent, file, exportedTable(entries, kind.format));
}

bool writeTable(QWidget *parent, const QString &file, const QList<QuvoColorDef> &entries)
{
    return writeFile(parent, file, colorTableText(entries));
}

void saveLegendPicture(QWidget *parent, const Legend &legend, const QString &tableFile)
{
    QString file = QuvoFilerDialog::getSelection(
        parent, QuvoFilerDialog::SaveFile, labelText({"MESS_TCE_LEG_ENREG", "Enregistrer la légende"}),
        QDir(folderFor(tableFile))
            .filePath(QFileInfo(tableFile).completeBaseName() + QStringLiteral("_legend.png")),
        labelText({"MESS_TCE_LEG_IMAGES", "Images"}) + QStringLiteral(" (*.png *.svg *.pdf)"));
    if (file.isEmpty())
        return;
    const QString ending = QFileInfo(file).suffix().toLower();
    LegendFormat format = LegendFormat::Png;
    if (ending == QLatin1String("svg"))
        format = LegendFormat::Svg;
    else if (ending == QLatin1String("pdf"))
        format = LegendFormat::Pdf;
    else if (ending != QLatin1String("png"))
        file += QStringLiteral(".png");
    if (mayReplace(parent, file))
        writeFile(parent, file, legendPicture(legend, format));
}

QStringList tableNotes(const EditedTable &table)
{
    if (table.noData)
        return {};
    return {labelText({"MESS_TCE_VIDES",
                       "Sans couleur pour elles, les cellules sans donnée reçoivent celle d'une altitude."})};
}

void showSwatch(QPushButton &button, const std::optional<QColor> &color)
{
    QPixmap picture(28, 14);
    picture.fill(Qt::transparent);
    if (color) {
        QPainter painter(&picture);
        paintSwatch(painter, picture.rect(), *color, button.palette());
    }
    button.setIcon(QIcon(picture));
    button.setIconSize(picture.size());
    button.setToolTip(color ? color->name(QColor::HexArgb) : QString());
}
