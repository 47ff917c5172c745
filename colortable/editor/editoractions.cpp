// The tool bar of the editor: undo, redo, and the operations on the whole table.

#include "colortable/editor/ColorTableEditor.h"
#include "colortable/editor/GradientView.h"
#include "colortable/editor/ScaleDialog.h"
#include "colortable/editor/tablefiles.h"
#include "messages/label.h"

#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QInputDialog>
#include <QMenu>
#include <QRandomGenerator>
#include <QToolButton>

QWidget *ColorTableEditor::buildTools()
{
    auto *tools = new QWidget(this);
    auto *row = new QHBoxLayout(tools);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](QAction *action, const char *picture) {
        action->setIcon(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/") + QLatin1String(picture)));
        auto *button = new QToolButton(this);
        button->setDefaultAction(action);
        button->setFocusPolicy(Qt::TabFocus);
        row->addWidget(button);
        addAction(action); // its shortcut works in the whole window
    };
    QAction *undo = m_history.stack().createUndoAction(this, labelText({"MESS_TCE_ANNULER", "Annuler :"}));
    undo->setShortcut(QKeySequence::Undo);
    QAction *redo = m_history.stack().createRedoAction(this, labelText({"MESS_TCE_RETABLIR", "Rétablir :"}));
    redo->setShortcuts({QKeySequence(QKeySequence::Redo), QKeySequence(QStringLiteral("Ctrl+Y"))});
    add(undo, "undo.png");
    add(redo, "redo.png");
    const auto addMenu = [&](const Label &label, QMenu *menu) {
        auto *button = new QToolButton(this);
        button->setText(labelText(label) + QLatin1Char(' '));
        button->setPopupMode(QToolButton::InstantPopup);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setFocusPolicy(Qt::TabFocus);
        button->setMenu(menu);
        row->addWidget(button);
    };
    row->addSpacing(8);
    addMenu({"MESS_TCE_OPERATIONS", "Transformer"}, buildOperations());
    addMenu({"MESS_TCE_EXPORTER", "Exporter"}, buildExports());
    addMenu({"MESS_TCE_LEGENDE", "Légende"}, buildLegends());
    row->addStretch();
    m_zoom = new QCheckBox(labelText({"MESS_TCE_ZOOM", "Montrer les seules altitudes du MNT"}), this);
    m_zoom->setEnabled(!m_start.dem.isEmpty());
    connect(m_zoom, &QCheckBox::toggled, this, [this](bool zoomed) { m_gradient->setZoomed(zoomed); });
    row->addWidget(m_zoom);
    return tools;
}

QMenu *ColorTableEditor::buildOperations()
{
    auto *menu = new QMenu(this);
    const auto add = [&](const Label &label, const auto &operation) {
        const QString name = labelText(label);
        QAction *action = menu->addAction(name);
        connect(action, &QAction::triggered, this,
                [this, name, operation] { operate(name, operation(table())); });
        return action;
    };
    const auto addWithDem = [&](const Label &label, const auto &operation) {
        m_demActions += add(label, operation);
    };
    add({"MESS_TCE_INVERSER", "Inverser l'ordre"}, inverted);
    add({"MESS_TCE_NEGATIF", "Négatif"}, negative);
    connect(menu->addAction(labelText({"MESS_TCE_HASARD", "Couleurs au hasard"}) + QStringLiteral("…")),
            &QAction::triggered, this, &ColorTableEditor::randomize);
    menu->addSeparator();
    add({"MESS_TCE_REPARTIR", "Répartir à intervalles égaux"}, spreadEvenly);
    addWithDem({"MESS_TCE_SURFACE", "Répartir à surfaces égales du MNT"},
               [this](const EditedTable &edited) { return spreadByArea(edited, m_gradient->sample()); });
    addWithDem({"MESS_TCE_AJUSTER", "Étaler sur les altitudes du MNT"}, [this](const EditedTable &edited) {
        return edited.percent ? edited : fitted(edited, m_start.minimum, m_start.maximum, false);
    });
    addWithDem({"MESS_TCE_CHARNIERE", "Étaler sur les altitudes du MNT, le niveau 0 restant fixe"},
               [this](const EditedTable &edited) {
                   return edited.percent ? edited : fitted(edited, m_start.minimum, m_start.maximum, true);
               });
    connect(
        menu->addAction(labelText({"MESS_TCE_ECHELLE", "Mettre à l'échelle et décaler"}) + QStringLiteral("…")),
        &QAction::triggered, this, &ColorTableEditor::scale);
    menu->addSeparator();
    addWithDem(
        {"MESS_TCE_POURCENT", "Passer aux pourcentages des altitudes du MNT"},
        [this](const EditedTable &edited) { return toPercent(edited, m_start.minimum, m_start.maximum); });
    addWithDem({"MESS_TCE_ALTITUDES", "Passer aux altitudes du MNT"}, [this](const EditedTable &edited) {
        return toAbsolute(edited, m_start.minimum, m_start.maximum);
    });
    menu->addSeparator();
    add({"MESS_TCE_TOUT_REGUL", "Rendre tous les segments réguliers à l'œil"}, [](EditedTable edited) {
        for (int at = 0; at + 1 < edited.cursors.size(); ++at)
            edited.cursors[at].even = true;
        return edited;
    });
    return menu;
}

QMenu *ColorTableEditor::buildExports()
{
    auto *menu = new QMenu(this);
    for (const ExportKind &kind : exportKinds())
        connect(menu->addAction(QStringLiteral("%1 (%2)…").arg(kind.name, kind.ending)), &QAction::triggered,
                this, [this, kind] { exportTable(this, plainEntries(table()), kind, m_file); });
    return menu;
}

QMenu *ColorTableEditor::buildLegends()
{
    auto *menu = new QMenu(this);
    connect(menu->addAction(labelText({"MESS_TCE_LEG_CONTINUE", "En dégradé"}) + QStringLiteral("…")),
            &QAction::triggered, this, [this] { saveLegend(false); });
    connect(menu->addAction(labelText({"MESS_TCE_LEG_CLASSES", "En classes"}) + QStringLiteral("…")),
            &QAction::triggered, this, [this] { saveLegend(true); });
    return menu;
}

/// The number that stands for the colours can be noted, and typed again for the same colours.
void ColorTableEditor::randomize()
{
    constexpr int highest = 999999;
    bool accepted = false;
    const QString name = labelText({"MESS_TCE_HASARD", "Couleurs au hasard"});
    const int seed = QInputDialog::getInt(
        this, name,
        labelText({"MESS_TCE_GRAINE", "Nombre de départ ; le même nombre redonne les mêmes couleurs"}),
        QRandomGenerator::global()->bounded(highest), 0, highest, 1, &accepted);
    if (accepted)
        operate(QStringLiteral("%1 (%2)").arg(name, QString::number(seed)),
                randomized(table(), static_cast<quint32>(seed)));
}

void ColorTableEditor::scale()
{
    ScaleDialog dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        operate(dialog.windowTitle(), scaledAndShifted(table(), dialog.factor(), dialog.shift()));
}

void ColorTableEditor::saveLegend(bool classes)
{
    Legend legend;
    legend.entries = plainEntries(table());
    if (m_start.hasExtremes) {
        legend.minimum = m_start.minimum;
        legend.maximum = m_start.maximum;
    }
    legend.classes = classes;
    legend.title = labelText({"MESS_TCE_LEG_TITRE", "Altitude"});
    legend.noDataText = labelText({"MESS_TCE_LEG_SANS", "Sans donnée"});
    saveLegendPicture(this, legend, m_file);
}
