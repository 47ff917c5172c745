#include "app/window/dialogs/LightDialog.h"

#include "messages/label.h"
#include "panels/shadedOptionsWidget.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

std::optional<ShadedOptions> editLight(QWidget *parent, const ShadedOptions &light, LightShelf *shelf,
                                       const std::function<void(const ShadedOptions &)> &changed)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(labelText({"MESS_TC_LUMIERE", "Lumière du relief en couleur"}));
    auto panel = new shadedOptionsWidget;
    panel->setLightShelf(shelf);
    panel->hideEdges();
    panel->setProcessOptions(light);
    auto area = new QScrollArea(&dialog);
    area->setFocusPolicy(Qt::NoFocus); // the Tab key goes to the controls, and the area follows it
    area->setWidget(panel);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setMinimumWidth(panel->minimumSizeHint().width() + area->verticalScrollBar()->sizeHint().width());
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    auto layout = new QVBoxLayout(&dialog);
    layout->addWidget(area);
    layout->addWidget(buttons);
    // The dialog opens as high as its panel where the screen has room for it; the user may make it smaller.
    const QSize hint = dialog.sizeHint();
    const int whole = hint.height() - area->sizeHint().height() + panel->sizeHint().height();
    dialog.resize(hint.width(), std::min(whole, dialog.screen()->availableSize().height() * 3 / 4));
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QObject::connect(panel, &shadedOptionsWidget::completeChanged, &dialog, [&] {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(panel->isComplete());
        changed(panel->options());
    });
    return dialog.exec() == QDialog::Accepted ? std::optional(panel->options()) : std::nullopt;
}
