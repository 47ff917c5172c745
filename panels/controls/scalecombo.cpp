#include "panels/controls/scalecombo.h"

#include "messages/label.h"

#include <QFrame>
#include <QLabel>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace
{

constexpr char noteName[] = "m_pScaleNote";

} // namespace

QStringList scaleLabels()
{
    return {labelText({"MESS_UNIT_MEME_XYZ", "X, Y et Z sont dans la même unité (1)"}),
            labelText({"MESS_UNIT_XY_M_Z_FT", "X et Y sont en mètres, Z en pieds (0.31)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_M", "X et Y sont en degrés, Z en mètres (111120)"}),
            labelText({"MESS_UNIT_XY_DEG_Z_FT", "X et Y sont en degrés, Z en pieds (370400)"})};
}

QEditableComboBox *makeScaleCombo(QFrame *frame)
{
    auto combo = new QEditableComboBox(frame);
    combo->addItems(scaleLabels());
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(24);
    combo->lineEdit()->setCursorPosition(0);
    auto layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(combo);
    auto note = new QLabel(frame);
    note->setObjectName(QLatin1String(noteName));
    note->setWordWrap(true);
    note->setVisible(false);
    QObject::connect(note, &QLabel::linkActivated, combo, [combo] { combo->choose(0); });
    layout->addWidget(note);
    QObject::connect(combo->lineEdit(), &QLineEdit::textEdited, combo, [combo](const QString &text) {
        // The rows of the list hold commas, too, so this is no validator of the field.
        static const QRegularExpression numberWithComma(QStringLiteral("^\\s*[-+]?\\d*,[\\d.]*\\s*$"));
        if (!numberWithComma.match(text).hasMatch())
            return;
        const int cursor = combo->lineEdit()->cursorPosition();
        combo->lineEdit()->setText(QString(text).replace(QLatin1Char(','), QLatin1Char('.')));
        combo->lineEdit()->setCursorPosition(cursor);
    });
    return combo;
}

void showScaleNote(QEditableComboBox &combo, const QString &note)
{
    auto label = combo.parentWidget()->findChild<QLabel *>(QLatin1String(noteName));
    label->setText(note);
    label->setVisible(!note.isEmpty() && !combo.currentText().isEmpty()); // an empty field shows that itself
}

void showScaleHint(QEditableComboBox &combo, const QString &note, const QString &hint)
{
    if (!note.isEmpty() || hint.isEmpty()) {
        showScaleNote(combo, note);
        return;
    }
    showScaleNote(
        combo,
        hint.toHtmlEscaped()
            + QStringLiteral(" <a href=\"first\">%1</a>")
                  .arg(labelText({"MESS_ECHELLE_METRES", "Prendre les vrais mètres"}).toHtmlEscaped()));
}

void showScale(QEditableComboBox &combo, int scaleIndex, const QString &scaleText)
{
    if (scaleIndex >= 0)
        combo.choose(scaleIndex);
    else
        combo.showTyped(scaleText);
}
