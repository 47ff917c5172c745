#include "app/preview/MapBar.h"

#include "runner/ProgressWidget.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QSlider>
#include <QTimer>
#include <QToolButton>

namespace
{

constexpr int wholeSlider = 100;

} // namespace

MapBar::MapBar(QWidget *parent)
    : QWidget(parent)
    , m_ground(new QLabel)
    , m_slider(new QSlider(Qt::Horizontal))
    , m_product(new QLabel)
    , m_wheel(new ProgressWidget)
    , m_wheelDelay(new QTimer(this))
    , m_percent(new QLabel)
{
    constexpr int patience = 500; // ms
    auto row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    m_ground->setObjectName(QStringLiteral("m_pLInputImgPreviewText"));
    m_product->setObjectName(QStringLiteral("m_pLOutputImgPreviewText"));
    m_product->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_slider->setObjectName(QStringLiteral("m_pSliderOpacity"));
    m_slider->setRange(0, wholeSlider);
    m_slider->setValue(wholeSlider);
    m_slider->setFixedWidth(60);
    const int line = fontMetrics().height();
    m_wheel->setFixedSize(line, line);
    QSizePolicy always = m_wheel->sizePolicy();
    always.setRetainSizeWhenHidden(true); // nothing moves when it appears
    m_wheel->setSizePolicy(always);
    m_wheel->hide();
    row->addWidget(m_ground);
    row->addWidget(m_slider);
    row->addWidget(m_product, 1);
    row->addWidget(m_percent);
    row->addWidget(m_wheel);
    m_swipe = addButton(QStringLiteral("m_pTBSwipe"), QStringLiteral("map_swipe"));
    m_profile = addButton(QStringLiteral("m_pTBProfile"), QStringLiteral("map_profile"));
    m_legend = addButton(QStringLiteral("m_pTBLegend"), QStringLiteral("map_legend"));
    for (QToolButton *button : {m_swipe, m_profile, m_legend})
        button->setCheckable(true);
    m_legend->setChecked(true);
    m_profile->hide();
    m_zoomOut = addButton(QStringLiteral("m_pTBZoomOut"), QStringLiteral("map_zoom_out"));
    m_zoomIn = addButton(QStringLiteral("m_pTBZoomIn"), QStringLiteral("map_zoom_in"));
    m_whole = addButton(QStringLiteral("m_pTBZoomAll"), QStringLiteral("map_zoom_all"));
    m_save = addButton(QStringLiteral("m_pTBSaveMap"), QStringLiteral("save"));
    auto menu = new QMenu(m_save);
    connect(menu->addAction(QString()), &QAction::triggered, this, &MapBar::saveClicked);
    connect(menu->addAction(QString()), &QAction::triggered, this, &MapBar::copyClicked);
    m_save->setMenu(menu);
    m_save->setPopupMode(QToolButton::InstantPopup);
    connect(m_slider, &QSlider::valueChanged, this,
            [this](int value) { emit opacityChanged(static_cast<double>(value) / wholeSlider); });
    connect(m_zoomIn, &QToolButton::clicked, this, &MapBar::zoomInClicked);
    connect(m_zoomOut, &QToolButton::clicked, this, &MapBar::zoomOutClicked);
    connect(m_whole, &QToolButton::clicked, this, &MapBar::wholeClicked);
    m_wheelDelay->setSingleShot(true);
    m_wheelDelay->setInterval(patience);
    connect(m_wheelDelay, &QTimer::timeout, this, [this] {
        m_wheel->show();
        emit slow();
    });
    applyTexts();
}

QToolButton *MapBar::addButton(const QString &name, const QString &icon)
{
    auto button = new QToolButton;
    button->setObjectName(name);
    button->setIcon(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/%1.png").arg(icon)));
    button->setAutoRaise(true);
    layout()->addWidget(button);
    return button;
}

void MapBar::setProductName(const QString &name)
{
    m_product->setText(name);
}

QString MapBar::productName() const
{
    return m_product->text();
}

void MapBar::setOpacity(double opacity)
{
    const QSignalBlocker silent(m_slider);
    m_slider->setValue(qRound(opacity * wholeSlider));
}

void MapBar::hideComparison()
{
    for (QWidget *widget : QList<QWidget *>{m_ground, m_slider, m_swipe})
        widget->hide();
}

void MapBar::setProgress(int percent)
{
    if (percent < 0) {
        m_wheelDelay->stop();
        m_wheel->hide();
    } else if (m_wheel->isHidden() && !m_wheelDelay->isActive()) {
        m_wheelDelay->start();
    }
    const QString text =
        m_wheel->isHidden() || percent <= 0 ? QString() : locale().toString(percent) + QStringLiteral(" %");
    // Without room the wheel alone says that something is under way; the product's name is not cut.
    const int room = m_product->width() - m_product->sizeHint().width() + m_percent->width();
    m_percent->setText(m_percent->fontMetrics().horizontalAdvance(text) <= room ? text : QString());
}

void MapBar::applyTexts()
{
    m_ground->setText(tr("MNT", "MESS_APERCU_MNT"));
    m_slider->setToolTip(tr("Du MNT seul (touche D) au produit seul (touche P)", "MESS_CARTE_OPACITE"));
    m_swipe->setToolTip(tr("Rideau : le MNT à gauche de la ligne, le produit à droite", "MESS_CARTE_RIDEAU"));
    m_profile->setToolTip(
        tr("Profil du terrain entre l'observateur choisi et la souris ; un clic le fixe", "MESS_CARTE_PROFIL"));
    m_legend->setToolTip(tr("Légende et altitudes", "MESS_CARTE_LEGENDE"));
    m_zoomOut->setToolTip(tr("Réduire (touche −)", "MESS_CARTE_REDUIRE"));
    m_zoomIn->setToolTip(tr("Agrandir (touche +)", "MESS_CARTE_AGRANDIR"));
    m_whole->setToolTip(tr("Tout le MNT (touche 0)", "MESS_CARTE_TOUT"));
    m_save->setToolTip(tr("Enregistrer ou copier la carte", "MESS_CARTE_IMAGE"));
    m_save->menu()->actions().at(0)->setText(tr("Enregistrer la carte…", "MESS_CARTE_ENREG"));
    m_save->menu()->actions().at(1)->setText(tr("Copier la carte", "MESS_CARTE_COPIER"));
    for (QWidget *widget :
         QList<QWidget *>{m_slider, m_swipe, m_profile, m_legend, m_zoomOut, m_zoomIn, m_whole, m_save})
        widget->setAccessibleName(widget->toolTip());
}
