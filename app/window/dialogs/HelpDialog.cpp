#include "app/window/dialogs/HelpDialog.h"

#include "messages/label.h"

#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <utility>

namespace
{

// Widths in characters of average width.
constexpr int windowWidth = 124;
constexpr int listMargin = 3;
constexpr int leastWidthWithList = 84;
constexpr int findWidth = 26;
constexpr int windowHeight = 40; // lines of text

constexpr double leastScale = 0.3; // of a picture in a narrow window

/// Reads pages as Markdown; in place of one that cannot be read it shows a sentence.
class GuideBrowser : public QTextBrowser
{
public:
    GuideBrowser(std::function<void()> resized, QWidget *parent)
        : QTextBrowser(parent)
        , m_resized(std::move(resized))
    { }

    QVariant loadResource(int type, const QUrl &url) override
    {
        if (type != QTextDocument::MarkdownResource)
            return QTextBrowser::loadResource(type, url);
        const QFileInfo file(url.toLocalFile());
        const QString text = guideText(file.path(), file.completeBaseName());
        if (!text.isEmpty())
            return text;
        return labelText({"MESS_AIDE_ABSENTE",
                          "La page « %1 » du guide ne peut pas être lue dans le dossier « %2 »."})
            .arg(file.completeBaseName(), file.path());
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QTextBrowser::resizeEvent(event);
        m_resized();
    }

private:
    std::function<void()> m_resized;
};

void format(QTextCursor cursor, const QTextFragment &fragment, const QTextCharFormat &with)
{
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(with);
}

QVector<QTextTable *> tablesOf(const QTextDocument &document)
{
    QVector<QTextTable *> tables;
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        if (const auto table = qobject_cast<QTextTable *>(frame))
            tables += table;
    }
    return tables;
}

/// Tables without lines.
void refineTables(QTextDocument &document)
{
    const double line = QFontMetricsF(document.defaultFont()).height();
    for (QTextTable *table : tablesOf(document)) {
        QTextTableFormat look = table->format();
        look.setBorder(0);
        look.setCellSpacing(0);
        look.setCellPadding(line / 4);
        look.setTopMargin(line / 2);
        look.setBottomMargin(line / 2);
        table->setFormat(look);
    }
}

/// The pictures in a table.
QVector<QTextFragment> picturesIn(const QTextTable &table)
{
    QVector<QTextFragment> pictures;
    for (QTextBlock block = table.firstCursorPosition().block();
         block.isValid() && block.position() <= table.lastPosition(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (at.fragment().charFormat().isImageFormat())
                pictures += at.fragment();
        }
    }
    return pictures;
}

/// Scales the pictures that a table shows side by side to `width`, where that is less than their own widths: Qt
/// would draw them over each other. `page`: the address to which those of the pictures are relative.
void fitPictures(QTextDocument &document, const QUrl &page, double width)
{
    for (const QTextTable *table : tablesOf(document)) {
        const double room = width / table->columns() - 2 * table->format().cellPadding();
        for (const QTextFragment &fragment : picturesIn(*table)) {
            QTextImageFormat picture = fragment.charFormat().toImageFormat();
            const QSizeF own = QImageReader(page.resolved(QUrl(picture.name())).toLocalFile()).size();
            const double scale = std::clamp(room / own.width(), leastScale, 1.0);
            if (own.isEmpty() || qAbs(picture.width() - own.width() * scale) < 1.0)
                continue;
            picture.setWidth(own.width() * scale);
            picture.setHeight(own.height() * scale);
            format(QTextCursor(&document), fragment, picture);
        }
    }
}

/// Gives code a monospace font, which Qt does not where the desktop names none, and a background of the
/// palette; gives headings some room above, and tables no lines.
void refine(QTextDocument &document, const QPalette &palette)
{
    QTextCharFormat code;
    code.setFontFamilies({QStringLiteral("monospace")});
    code.setFontFamily(QStringLiteral("monospace"));
    code.setFontStyleHint(QFont::Monospace);
    code.setBackground(palette.alternateBase());
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QVector<QTextFragment> codes;
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (at.fragment().charFormat().hasProperty(QTextFormat::FontFixedPitch))
                codes += at.fragment();
        }
        for (const QTextFragment &fragment : std::as_const(codes))
            format(cursor, fragment, code);
        QTextBlockFormat room;
        if (block.blockFormat().headingLevel() > 1)
            room.setTopMargin(QFontMetricsF(document.defaultFont()).height());
        if (block.blockFormat().nonBreakableLines())
            room.setBackground(palette.alternateBase());
        cursor.setPosition(block.position());
        cursor.mergeBlockFormat(room);
    }
    cursor.endEditBlock();
    refineTables(document);
}

QString pageOf(const QUrl &url)
{
    return QFileInfo(url.path()).completeBaseName();
}

QToolButton *button(const char *picture, const QKeySequence &keys, QWidget *parent)
{
    auto made = new QToolButton(parent);
    made->setIcon(QIcon(QStringLiteral(":/QuvoGdalUtilities/images/%1.png").arg(QLatin1String(picture))));
    made->setObjectName(QLatin1String(picture));
    made->setShortcut(keys);
    made->setAutoRaise(true);
    return made;
}

void setButtonText(QToolButton &button, const QString &text)
{
    button.setToolTip(
        QStringLiteral("%1 (%2)").arg(text, button.shortcut().toString(QKeySequence::NativeText)));
    button.setAccessibleName(text);
}

} // namespace

HelpDialog::HelpDialog(QString guide, QWidget *parent)
    : QDialog(parent)
    , m_guide(std::move(guide))
    , m_pBack(button("guide_back", QKeySequence(QStringLiteral("Alt+Left")), this))
    , m_pForward(button("guide_forward", QKeySequence(QStringLiteral("Alt+Right")), this))
    , m_pHome(button("guide_home", QKeySequence(QStringLiteral("Alt+Home")), this))
    , m_pFind(new QLineEdit(this))
    , m_pNotFound(new QLabel(this))
    , m_pPages(new QListWidget(this))
    , m_pGuide(new GuideBrowser([this] { fit(m_pGuide->source()); }, this))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    makeControls();
    connectControls();
    applyTexts();
    showPage(guideIndex);
    const QSize room = QGuiApplication::primaryScreen()->availableGeometry().size();
    resize(QSize(fontMetrics().averageCharWidth() * windowWidth, fontMetrics().height() * windowHeight)
               .boundedTo(room));
}

void HelpDialog::makeControls()
{
    m_pGuide->setOpenExternalLinks(true);
    m_pGuide->setFrameShape(QFrame::NoFrame);
    // A scroll bar that came and went with the pictures' size would change that size again.
    m_pGuide->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_pGuide->document()->setDocumentMargin(fontMetrics().height());
    m_pPages->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pFind->setClearButtonEnabled(true);
    m_pFind->setMaximumWidth(fontMetrics().averageCharWidth() * findWidth);
    m_pNotFound->hide();
    auto bar = new QHBoxLayout;
    for (QToolButton *button : {m_pBack, m_pForward, m_pHome})
        bar->addWidget(button);
    bar->addStretch();
    bar->addWidget(m_pNotFound);
    bar->addWidget(m_pFind, 1);
    auto row = new QHBoxLayout;
    row->addWidget(m_pPages);
    row->addWidget(m_pGuide, 1);
    auto layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addLayout(row, 1);
    m_pGuide->setFocus();
}

void HelpDialog::connectControls()
{
    connect(m_pBack, &QToolButton::clicked, m_pGuide, &QTextBrowser::backward);
    connect(m_pForward, &QToolButton::clicked, m_pGuide, &QTextBrowser::forward);
    connect(m_pHome, &QToolButton::clicked, this, [this] { showPage(guideIndex); });
    connect(m_pGuide, &QTextBrowser::backwardAvailable, m_pBack, &QWidget::setEnabled);
    connect(m_pGuide, &QTextBrowser::forwardAvailable, m_pForward, &QWidget::setEnabled);
    connect(m_pGuide, &QTextBrowser::sourceChanged, this, &HelpDialog::slot_pageShown);
    connect(m_pPages, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            showPage(m_pages.at(row).name);
    });
    connect(m_pFind, &QLineEdit::textChanged, m_pNotFound, &QWidget::hide);
    connect(m_pFind, &QLineEdit::returnPressed, this, [this] { search({}); });
    const auto key = [this](const QKeySequence &keys, auto act) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
    };
    key(QKeySequence::Find, [this] {
        m_pFind->setFocus();
        m_pFind->selectAll();
    });
    key(QKeySequence(QStringLiteral("F3")), [this] { search({}); });
    key(QKeySequence(QStringLiteral("Shift+F3")), [this] { search(QTextDocument::FindBackward); });
}

void HelpDialog::applyTexts()
{
    setWindowTitle(tr("Aide", "MESS_AIDE"));
    setButtonText(*m_pBack, tr("Page précédente", "MESS_AIDE_AVANT"));
    setButtonText(*m_pForward, tr("Page suivante", "MESS_AIDE_APRES"));
    setButtonText(*m_pHome, tr("Sommaire", "MESS_AIDE_SOMMAIRE"));
    m_pFind->setPlaceholderText(tr("Chercher dans le guide", "MESS_AIDE_CHERCHER"));
    m_pFind->setAccessibleName(m_pFind->placeholderText());
    m_pNotFound->setText(tr("Introuvable", "MESS_AIDE_INTROUVABLE"));
    m_pGuide->setAccessibleName(windowTitle());
    m_pPages->setAccessibleName(tr("Pages du guide", "MESS_AIDE_PAGES"));
    const QSignalBlocker silent(m_pPages);
    m_pages = guidePages(guidePageFolder(m_guide));
    m_pPages->clear();
    for (const GuidePage &page : std::as_const(m_pages))
        m_pPages->addItem(page.title);
    m_pPages->setFixedWidth(m_pPages->sizeHintForColumn(0) + fontMetrics().averageCharWidth() * listMargin);
}

void HelpDialog::showPage(const QString &page)
{
    const QString file = QStringLiteral("%1/%2.md").arg(guidePageFolder(m_guide), page);
    m_pGuide->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
}

QString HelpDialog::page() const
{
    return pageOf(m_pGuide->source());
}

void HelpDialog::fit(const QUrl &page)
{
    QTextDocument &document = *m_pGuide->document();
    fitPictures(document, page, m_pGuide->viewport()->width() - 2 * document.documentMargin());
}

/// `url`: of the page; the browser's own source is still that of the page before.
void HelpDialog::slot_pageShown(const QUrl &url)
{
    refine(*m_pGuide->document(), palette());
    fit(url);
    const QSignalBlocker silent(m_pPages);
    m_pPages->setCurrentRow(-1);
    for (int row = 0; row < m_pages.size(); ++row) {
        if (m_pages.at(row).name == pageOf(url))
            m_pPages->setCurrentRow(row);
    }
}

/// Finds the text of the search field: the next place, or backwards the previous place. The search begins on
/// the page that is shown and goes on through the other pages.
void HelpDialog::search(QTextDocument::FindFlags direction)
{
    const QString text = m_pFind->text();
    const bool isFound = text.isEmpty() || m_pGuide->find(text, direction) || searchOtherPages(text, direction);
    m_pNotFound->setVisible(!isFound);
}

/// Searches the pages that follow, and the one that is shown last, from its other end.
bool HelpDialog::searchOtherPages(const QString &text, QTextDocument::FindFlags direction)
{
    const bool back = direction.testFlag(QTextDocument::FindBackward);
    const int count = static_cast<int>(m_pages.size());
    const int shown = qMax(0, m_pPages->currentRow());
    for (int step = 1; step <= count; ++step) {
        const QString &name = m_pages.at((shown + (back ? count - step : step)) % count).name;
        QTextDocument document;
        document.setMarkdown(guideText(guidePageFolder(m_guide), name));
        if (document.find(text).isNull())
            continue;
        showPage(name);
        m_pGuide->moveCursor(back ? QTextCursor::End : QTextCursor::Start);
        return m_pGuide->find(text, direction);
    }
    return false;
}

void HelpDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        const QString shown = page();
        applyTexts();
        showPage(shown);
        m_pGuide->clearHistory(); // the pages before are in the other language
    } else if (event->type() == QEvent::PaletteChange) {
        m_pGuide->reload(); // the colours of links and code come from the palette
    }
    QDialog::changeEvent(event);
}

void HelpDialog::resizeEvent(QResizeEvent *event)
{
    m_pPages->setVisible(width() >= fontMetrics().averageCharWidth() * leastWidthWithList);
    QDialog::resizeEvent(event);
}
