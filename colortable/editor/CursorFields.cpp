#include "colortable/editor/CursorFields.h"

#include "messages/NumberBox.h"
#include "messages/label.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSpinBox>

namespace
{

constexpr double furthest = 99999999.9;

} // namespace

CursorFields::CursorFields(QWidget *parent)
    : QWidget(parent)
    , m_value(new NumberBox(this))
    , m_code(new QLineEdit(this))
    , m_even(new QCheckBox(labelText({"MESS_TCE_REGULIER", "Régulier à l'œil"}), this))
{
    auto *form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setVerticalSpacing(4);
    m_value->setDecimals(1);
    m_value->setKeyboardTracking(false);
    form->addRow(withColon(labelText({"MESS_TCE_VALEUR", "Valeur"})), m_value);
    for (const Label &label : {Label{"MESS_TCE_ROUGE", "Rouge"}, Label{"MESS_TCE_VERT", "Vert"},
                               Label{"MESS_TCE_BLEU", "Bleu"}, Label{"MESS_TCE_OPACITE", "Opacité"}})
        form->addRow(withColon(labelText(label)), addLevel(labelText(label)));
    m_code->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("#?[0-9a-fA-F]{6}([0-9a-fA-F]{2})?")), m_code));
    form->addRow(withColon(labelText({"MESS_TCE_CODE", "Code"})), m_code);
    m_code->setToolTip(labelText({"MESS_TCE_CODE_AIDE",
                                  "Rouge, vert et bleu en six chiffres hexadécimaux, et au besoin l'opacité en "
                                  "deux de plus"}));
    form->addRow(m_even);
    m_even->setToolTip(
        labelText({"MESS_TCE_REGUL_AIDE",
                   "Entre cette couleur et la suivante, les couleurs changent régulièrement pour "
                   "l'œil. La table en reçoit des couleurs intermédiaires quand elle est "
                   "enregistrée ou utilisée."}));
    QWidget *before = m_value;
    for (QWidget *field :
         QList<QWidget *>{m_levels.at(0), m_levels.at(1), m_levels.at(2), m_levels.at(3), m_code, m_even}) {
        setTabOrder(before, field);
        before = field;
    }
    connect(m_value, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &CursorFields::valueTyped);
    connect(m_code, &QLineEdit::editingFinished, this, &CursorFields::onCode);
    connect(m_even, &QCheckBox::toggled, this, &CursorFields::evenToggled);
}

QSpinBox *CursorFields::addLevel(const QString &name)
{
    auto *level = new QSpinBox(this);
    level->setRange(0, 255);
    level->setKeyboardTracking(false);
    level->setAccessibleName(name);
    m_levels += level;
    connect(level, qOverload<int>(&QSpinBox::valueChanged), this, &CursorFields::onLevels);
    return level;
}

void CursorFields::show(const EditedTable &table, int at)
{
    const bool isShown = at >= 0 && at < table.cursors.size();
    setEnabled(isShown);
    if (!isShown)
        return;
    const ColorCursor &cursor = table.cursors.at(at);
    m_color = cursor.color;
    const QSignalBlocker noValue(m_value);
    m_value->setRange(table.percent ? 0.0 : -furthest, table.percent ? 100.0 : furthest);
    m_value->setSuffix(table.percent ? QStringLiteral(" %") : QString());
    m_value->setValue(cursor.value);
    const int levels[] = {m_color.red(), m_color.green(), m_color.blue(), m_color.alpha()};
    for (int part = 0; part < m_levels.size(); ++part) {
        const QSignalBlocker noLevel(m_levels.at(part));
        m_levels.at(part)->setValue(levels[part]);
    }
    const QString alpha =
        m_color.alpha() < 255 ? QStringLiteral("%1").arg(m_color.alpha(), 2, 16, QLatin1Char('0')) : QString();
    if (!m_code->hasFocus() || !m_code->isModified())
        m_code->setText(m_color.name() + alpha);
    const QSignalBlocker noEven(m_even);
    m_even->setChecked(cursor.even);
    m_even->setEnabled(at + 1 < table.cursors.size());
}

void CursorFields::onLevels()
{
    emit colorTyped(QColor(m_levels.at(0)->value(), m_levels.at(1)->value(), m_levels.at(2)->value(),
                           m_levels.at(3)->value()));
}

void CursorFields::onCode()
{
    QString code = m_code->text();
    code.remove(QLatin1Char('#'));
    if (!m_code->isModified() || code.size() < 6)
        return;
    m_code->setModified(false);
    QColor color(QLatin1Char('#') + code.left(6));
    color.setAlpha(code.size() == 8 ? code.mid(6).toInt(nullptr, 16) : m_color.alpha());
    emit colorTyped(color);
}
