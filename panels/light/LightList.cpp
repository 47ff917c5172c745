#include "panels/light/LightList.h"

#include "messages/Prompt.h"
#include "panels/light/lightpicture.h"

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr QSize pictureSize(84, 56); // device-independent pixels
constexpr int textWidth = 120;
constexpr int textLines = 2;
constexpr int topMargin = 4;

} // namespace

LightList::LightList(QWidget *parent)
    : QListWidget(parent)
{
    setViewMode(QListView::IconMode);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Static);
    setWordWrap(true);
    setTextElideMode(Qt::ElideRight);
    setIconSize(pictureSize);
    setGridSize({textWidth, pictureSize.height() + textLines * fontMetrics().lineSpacing() + 14});
    setViewportMargins(0, topMargin, 0, 0);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QListWidget::itemClicked, this, &LightList::choose);
    connect(this, &QListWidget::itemActivated, this, &LightList::choose);
    refresh();
}

void LightList::setShelf(LightShelf *shelf)
{
    m_shelf = shelf;
    refresh();
}

/// Lists the lights anew. Their pictures come when the list is first seen, so that a start does not wait.
void LightList::refresh()
{
    m_lights = builtInLights();
    if (m_shelf)
        m_lights += m_shelf->lights();
    clear();
    for (const LightPreset &light : m_lights) {
        auto item = new QListWidgetItem(light.name, this);
        item->setTextAlignment(Qt::AlignHCenter | Qt::AlignTop);
        item->setToolTip(light.name);
        item->setSizeHint(gridSize()); // otherwise a text is as wide as its picture at most
    }
    setAccessibleName(tr("Lumières toutes prêtes", "MESS_LUM_PRETES"));
    m_isPainted = false;
    if (isVisible())
        paintPictures();
    showLight(m_shown);
    constexpr int rowsShown = 2; // more of them scroll
    setFixedHeight(rowsShown * gridSize().height() + topMargin + 2 * frameWidth());
}

void LightList::paintPictures()
{
    if (m_isPainted)
        return;
    m_isPainted = true;
    const qreal ratio = devicePixelRatioF();
    for (int row = 0; row < count(); ++row) {
        QPixmap picture =
            QPixmap::fromImage(lightPicture(sampleDem(), m_lights.at(row).options, pictureSize * ratio));
        picture.setDevicePixelRatio(ratio);
        if (!picture.isNull())
            item(row)->setIcon(picture);
    }
}

void LightList::showEvent(QShowEvent *event)
{
    // The pictures take as long as half of the window, which is shown without them first.
    constexpr int afterWindow = 50; // ms
    QTimer::singleShot(afterWindow, this, &LightList::paintPictures);
    QListWidget::showEvent(event);
}

void LightList::showLight(const ShadedOptions &light)
{
    m_shown = light;
    const auto found = std::find_if(m_lights.begin(), m_lights.end(), [&](const LightPreset &preset) {
        return isSameLight(preset.options, light);
    });
    if (found == m_lights.end()) {
        clearSelection();
        setCurrentRow(-1);
    } else {
        setCurrentRow(static_cast<int>(found - m_lights.begin()));
    }
}

const LightPreset *LightList::presetOf(const QListWidgetItem *item) const
{
    return item ? &m_lights.at(row(item)) : nullptr;
}

void LightList::choose(const QListWidgetItem *item)
{
    if (const LightPreset *preset = presetOf(item))
        emit chosen(preset->options);
}

void LightList::keep(const ShadedOptions &light)
{
    bool isAccepted = false;
    const QString name =
        QInputDialog::getText(this, tr("Garder cette lumière", "MESS_LUM_GARDER_TITRE"),
                              tr("Nom de la lumière :", "MESS_LUM_NOM"), QLineEdit::Normal, {}, &isAccepted)
            .trimmed();
    if (!isAccepted || name.isEmpty() || !m_shelf)
        return;
    const QVector<LightPreset> own = m_shelf->lights();
    const bool exists =
        std::any_of(own.begin(), own.end(), [&](const LightPreset &one) { return one.name == name; });
    if (exists
        && !Prompt::question(
            this,
            tr("Une lumière « %1 » existe déjà. Voulez-vous la remplacer ?", "MESS_LUM_EXISTE").arg(name)))
        return;
    const QString problem = m_shelf->keep(name, light);
    if (!problem.isEmpty())
        Prompt::warning(this, problem);
    m_shown = light;
    refresh();
}

void LightList::removeCurrent()
{
    const LightPreset *preset = presetOf(currentItem());
    if (!preset || !preset->isOwn || !m_shelf)
        return;
    const QString name = preset->name;
    if (!Prompt::question(this,
                          tr("Voulez-vous supprimer la lumière « %1 » ?", "MESS_LUM_SUPPRIMER").arg(name)))
        return;
    const QString problem = m_shelf->remove(name);
    if (!problem.isEmpty())
        Prompt::warning(this, problem);
    refresh();
}

void LightList::contextMenuEvent(QContextMenuEvent *event)
{
    const QListWidgetItem *clicked =
        event->reason() == QContextMenuEvent::Mouse ? itemAt(event->pos()) : currentItem();
    const LightPreset *preset = presetOf(clicked);
    if (!preset || !preset->isOwn)
        return;
    setCurrentRow(row(clicked));
    QMenu menu(this);
    menu.addAction(tr("Supprimer", "MESS_SUPPRIMER"), this, [this] { removeCurrent(); });
    menu.exec(event->globalPos());
}

void LightList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete)
        removeCurrent();
    else if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        choose(currentItem());
    else
        QListWidget::keyPressEvent(event);
}

void LightList::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        refresh(); // the program's own names
    QListWidget::changeEvent(event);
}
