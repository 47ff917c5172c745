#include "app/preview/profile/ProfileView.h"

#include "app/preview/profile/profilefiles.h"
#include "app/preview/profile/profiletexts.h"
#include "messages/Prompt.h"

#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

ProfileView::ProfileView(QWidget *parent)
    : QWidget(parent)
    , m_pVerdict(new QLabel(this))
    , m_pTBSave(new QToolButton(this))
    , m_pSaveMenu(new QMenu(this))
    , m_pCsv(m_pSaveMenu->addAction(QString(), this, &ProfileView::saveCsv))
    , m_pPicture(m_pSaveMenu->addAction(QString(), this, &ProfileView::savePicture))
    , m_pTBClose(new QToolButton(this))
    , m_pPlot(new ProfilePlot(this))
{
    m_pVerdict->setTextFormat(Qt::PlainText);
    m_pVerdict->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long text is cut
    m_pTBSave->setMenu(m_pSaveMenu);
    m_pTBSave->setPopupMode(QToolButton::InstantPopup);
    m_pTBSave->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_pTBClose->setToolButtonStyle(Qt::ToolButtonTextOnly);
    auto *line = new QHBoxLayout;
    line->addWidget(m_pVerdict, 1);
    for (QToolButton *button : {m_pTBSave, m_pTBClose}) {
        button->setFocusPolicy(Qt::StrongFocus); // it can be reached by Tab
        line->addWidget(button);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(line);
    layout->addWidget(m_pPlot, 1);
    constexpr int leastHeight = 140;
    setMinimumHeight(leastHeight);
    m_pPlot->setMinimumSize(1, 1); // its own minimum leaves no room in a low window
    m_pPlot->canvas()->setMouseTracking(true);
    m_pPlot->canvas()->installEventFilter(this);
    m_pPlot->canvas()->setCursor(Qt::CrossCursor);
    connect(m_pTBClose, &QToolButton::clicked, this, &ProfileView::closeRequested);
    retranslate();
}

void ProfileView::setDem(const QString &path, const QString &elevationUnit)
{
    m_dem = path;
    m_unit = elevationUnit;
}

void ProfileView::setColors(const ProfileColors &colors)
{
    m_colors = colors;
    m_pPlot->setProfile(m_profile, m_unit, m_colors);
}

void ProfileView::setProfile(const Profile &profile)
{
    m_profile = profile;
    m_cursor.reset();
    m_pPlot->setProfile(m_profile, m_unit, m_colors);
    showVerdict();
    showMark();
}

void ProfileView::setCursor(const std::optional<double> &distance)
{
    m_cursor = distance;
    showMark();
}

void ProfileView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ProfileView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layout()->activate();
    showVerdict();
}

bool ProfileView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove && !m_profile.samples.isEmpty()) {
        const double distance = m_pPlot->distanceAt(static_cast<const QMouseEvent *>(event)->pos().x());
        setCursor(distance);
        emit hovered(distance);
    } else if (event->type() == QEvent::Leave) {
        setCursor(std::nullopt);
        emit left();
    }
    return QWidget::eventFilter(watched, event);
}

void ProfileView::saveCsv()
{
    confirm(saveProfileCsv(this, m_profile, m_dem));
}

void ProfileView::savePicture()
{
    const QLocale locale;
    const QString title =
        verdictText(m_profile, m_unit, locale) + QLatin1Char(' ') + conditionsText(m_profile, locale);
    confirm(saveProfilePicture(this, {m_profile, m_unit, m_colors, title}, m_dem));
}

void ProfileView::confirm(const QString &file)
{
    if (!file.isEmpty())
        Prompt::notice(m_pTBSave,
                       tr("Le profil est enregistré dans « %1 ».", "MESS_PROF_ENREGISTRE")
                           .arg(QFileInfo(file).fileName()));
}

void ProfileView::retranslate()
{
    m_pTBSave->setText(tr("Enregistrer", "MESS_PROF_ENREG"));
    m_pCsv->setText(tr("En CSV…", "MESS_PROF_CSV"));
    m_pPicture->setText(tr("Image…", "MESS_PROF_IMAGE"));
    m_pTBClose->setText(tr("Fermer", "MESS_FERMER"));
    m_pPlot->setAccessibleName(tr("Profil du terrain", "MESS_PROF_TITRE"));
    m_pPlot->restyle(); // the numbers of the axes follow the language
    showVerdict();
    showMark();
}

void ProfileView::showVerdict()
{
    const bool shown = !m_profile.samples.isEmpty();
    const QString text = shown
        ? verdictText(m_profile, m_unit, QLocale())
        : tr("Survolez la carte : le profil va de l'observateur au pointeur.", "MESS_PROF_VIDE");
    m_pVerdict->setText(m_pVerdict->fontMetrics().elidedText(text, Qt::ElideRight, m_pVerdict->width()));
    m_pVerdict->setToolTip(text);
    m_pTBSave->setEnabled(shown);
}

void ProfileView::showMark()
{
    const bool shown = !m_profile.samples.isEmpty();
    m_pPlot->setMark(shown ? m_cursor : std::nullopt);
    const QLocale locale;
    if (shown && m_cursor)
        m_pPlot->setText(readoutText(sampleAt(m_profile, *m_cursor), m_unit, locale));
    else
        m_pPlot->setText(shown ? conditionsText(m_profile, locale) : QString());
}
