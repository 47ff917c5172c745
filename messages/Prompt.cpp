#include "messages/Prompt.h"

#include "messages/label.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QToolTip>
#include <QVariant>

#include <optional>

namespace
{

constexpr char answersProperty[] = "quvoPromptAnswers";
constexpr char shownProperty[] = "quvoPromptShown";

/// The answer that a test supplied; nothing when the box must be shown.
std::optional<bool> answerOf(const QString &title, const QString &text)
{
    if (!qApp->property(answersProperty).isValid())
        return std::nullopt;
    QVariantList answers = qApp->property(answersProperty).toList();
    const bool answer = !answers.isEmpty() && answers.takeFirst().toBool();
    qApp->setProperty(answersProperty, answers);
    qApp->setProperty(shownProperty,
                      qApp->property(shownProperty).toStringList() << title + QStringLiteral(": ") + text);
    return answer;
}

void show(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    if (answerOf(title, text))
        return;
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace

void Prompt::warning(QWidget *parent, const QString &text)
{
    show(parent, QMessageBox::Warning, labelText({"MESS_ATTENTION", "Attention"}), text);
}

void Prompt::critical(QWidget *parent, const QString &text)
{
    show(parent, QMessageBox::Critical, labelText({"MESS_ERREUR", "Erreur"}), text);
}

bool Prompt::question(QWidget *parent, const QString &text)
{
    const QString title = labelText({"MESS_QUESTION", "Question"});
    if (const auto answer = answerOf(title, text))
        return *answer;
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const auto yes = box.addButton(labelText({"MESS_OUI", "Oui"}), QMessageBox::YesRole);
    const auto no = box.addButton(labelText({"MESS_NON", "Non"}), QMessageBox::NoRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

Prompt::SaveAnswer Prompt::saveQuestion(QWidget *parent, const QString &text)
{
    const QString title = labelText({"MESS_QUESTION", "Question"});
    if (const auto answer = answerOf(title, text))
        return *answer ? Save : Discard;
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const auto save =
        box.addButton(labelText({"MESS_TCE_ENREGISTRER", "Enregistrer"}), QMessageBox::AcceptRole);
    const auto discard =
        box.addButton(labelText({"MESS_NE_PAS_ENREG", "Ne pas enregistrer"}), QMessageBox::DestructiveRole);
    const auto cancel = box.addButton(labelText({"MESS_ANNULER", "Annuler"}), QMessageBox::RejectRole);
    box.setDefaultButton(save);
    box.setEscapeButton(cancel);
    box.exec();
    if (box.clickedButton() == save)
        return Save;
    return box.clickedButton() == discard ? Discard : Cancel;
}

int Prompt::choice(QWidget *parent, const QString &text, const QStringList &buttons)
{
    const QString title = labelText({"MESS_QUESTION", "Question"});
    if (const auto answer = answerOf(title, text))
        return *answer ? 0 : static_cast<int>(buttons.size()) - 1;
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    QList<QAbstractButton *> shown;
    for (const QString &button : buttons)
        shown += box.addButton(button, QMessageBox::AcceptRole);
    box.setDefaultButton(static_cast<QPushButton *>(shown.first()));
    box.setEscapeButton(box.addButton(labelText({"MESS_ANNULER", "Annuler"}), QMessageBox::RejectRole));
    box.exec();
    return static_cast<int>(shown.indexOf(box.clickedButton()));
}

void Prompt::notice(QWidget *button, const QString &text)
{
    const int duration = 3000 + 40 * static_cast<int>(text.size()); // ms, to read it
    if (qApp->property(answersProperty).isValid())
        qApp->setProperty(shownProperty, qApp->property(shownProperty).toStringList() << text);
    else
        QToolTip::showText(button->mapToGlobal(QPoint(0, 0)), text, nullptr, {}, duration);
}

void Prompt::answerBeforehand(const QVector<bool> &answers)
{
    QVariantList list;
    for (const bool answer : answers)
        list += answer;
    qApp->setProperty(answersProperty, list);
    qApp->setProperty(shownProperty, QStringList());
}

QStringList Prompt::takeShown()
{
    const QStringList shown = qApp->property(shownProperty).toStringList();
    qApp->setProperty(shownProperty, QStringList());
    return shown;
}
