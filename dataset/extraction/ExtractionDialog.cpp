#include "dataset/extraction/ExtractionDialog.h"

#include "dataset/QuvoFilerDialog.h"
#include "dataset/elevationpicture.h"
#include "dataset/extraction/vectorextent.h"
#include "messages/FittingArea.h"
#include "messages/Prompt.h"
#include "messages/label.h"
#include "messages/shownnumber.h"
#include "ui_ExtractionDialog.h"

#include <QEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLocale>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int pictureSide = 600; // cells on the longer side: about the pixels of the view

/// Decimals by which the coordinates of neighbouring cells differ, and two more.
int decimalsOf(double cellSize)
{
    constexpr int most = 9;
    return std::clamp(2 - static_cast<int>(std::floor(std::log10(cellSize))), 0, most);
}

/// A line with both lengths in the same unit; metres become kilometres where they are many.
QString lengthsText(QSizeF size, QString unit)
{
    constexpr double kilometre = 1000.0; // metres
    constexpr double longest = 10.0 * kilometre;
    if (unit == QLatin1String("m") && std::max(size.width(), size.height()) >= longest) {
        size /= kilometre;
        unit = QStringLiteral("km");
    }
    const auto text = [](double length) { return shownNumber(length, 'g', 4); };
    return QStringLiteral("\n%1 %3 × %2 %3").arg(text(size.width()), text(size.height()), unit);
}

} // namespace

ExtractionDialog::ExtractionDialog(const QString &dem, int band, const std::optional<QRect> &cells,
                                   QWidget *parent)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::ExtractionDialog>())
    , m_ground(dem, band)
    , m_grid(cellGrid(m_ground))
    , m_reader(dem, band, pictureSide)
    , m_vectorFolder(QFileInfo(dem).absolutePath())
{
    m_form->setupUi(this);
    m_form->m_pSideLayout->insertWidget(
        0, new FittingArea({m_form->m_pGrpBCells, m_form->m_pGrpBCorners, m_form->m_pGrpBVector}, this));
    setTabOrder(m_form->m_pPBVector, m_form->m_pPBWhole);
    setTabOrder(m_form->m_pPBWhole, m_form->m_pPBAccept);
    setTabOrder(m_form->m_pPBAccept, m_form->m_pPBCancel);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    m_form->m_pView->setGrid(m_grid.size);
    setRanges();
    applyTexts();
    const QRect whole(QPoint(0, 0), m_grid.size);
    const QRect begin = onGrid(cells.value_or(whole), m_grid.size);
    setCells(begin.isEmpty() ? whole : begin);
    connectControls();
    m_reading.start(0);
    m_form->m_pView->setFocus();
}

ExtractionDialog::~ExtractionDialog() = default;

std::optional<QRect> ExtractionDialog::cells() const
{
    const bool isWhole = m_cells == QRect(QPoint(0, 0), m_grid.size);
    return isWhole || m_cells.isEmpty() ? std::nullopt : std::optional(m_cells);
}

void ExtractionDialog::connectControls()
{
    connect(&m_reading, &QTimer::timeout, this, &ExtractionDialog::readSlice);
    connect(m_form->m_pView, &ExtractionView::cellsChanged, this, &ExtractionDialog::setCells);
    for (QSpinBox *field : {m_form->m_pSBColumn, m_form->m_pSBRow, m_form->m_pSBWidth, m_form->m_pSBHeight})
        connect(field, qOverload<int>(&QSpinBox::valueChanged), this, &ExtractionDialog::takeTypedCells);
    for (QDoubleSpinBox *field :
         {m_form->m_pSBFirstX, m_form->m_pSBFirstY, m_form->m_pSBLastX, m_form->m_pSBLastY})
        connect(field, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                &ExtractionDialog::takeTypedCorners);
    connect(m_form->m_pPBVector, &QPushButton::clicked, this, &ExtractionDialog::slot_takeVectorExtent);
    connect(m_form->m_pPBWhole, &QPushButton::clicked, this, &ExtractionDialog::slot_showWhole);
    connect(m_form->m_pPBAccept, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_form->m_pPBCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ExtractionDialog::setRanges()
{
    constexpr double farthest = 1e12; // beyond the coordinates of every CRS
    constexpr int widestMargin = 100000;
    m_form->m_pSBColumn->setRange(0, std::max(0, m_grid.size.width() - 1));
    m_form->m_pSBRow->setRange(0, std::max(0, m_grid.size.height() - 1));
    m_form->m_pSBWidth->setRange(1, std::max(1, m_grid.size.width()));
    m_form->m_pSBHeight->setRange(1, std::max(1, m_grid.size.height()));
    m_form->m_pSBMargin->setRange(0, widestMargin);
    const double cell = m_ground.isOpen() ? m_ground.cellSize() : 1.0;
    for (QDoubleSpinBox *field :
         {m_form->m_pSBFirstX, m_form->m_pSBFirstY, m_form->m_pSBLastX, m_form->m_pSBLastY}) {
        field->setDecimals(decimalsOf(cell));
        field->setRange(-farthest, farthest);
        field->setSingleStep(cell);
    }
    for (QWidget *control : QList<QWidget *>{m_form->m_pGrpBCells, m_form->m_pPBWhole, m_form->m_pPBAccept})
        control->setEnabled(!m_grid.isEmpty());
    m_form->m_pGrpBCorners->setVisible(m_ground.isGeoreferenced());
    m_form->m_pGrpBVector->setVisible(m_ground.isGeoreferenced());
}

void ExtractionDialog::readSlice()
{
    constexpr int slice = 30; // ms
    if (!m_reader.advance(slice))
        m_reading.stop();
    m_form->m_pView->setPicture(elevationPicture(m_reader.grid()));
}

void ExtractionDialog::setCells(const QRect &cells)
{
    m_cells = cells;
    m_form->m_pView->setCells(cells);
    showCells();
}

void ExtractionDialog::takeTypedCells()
{
    const QRect typed(m_form->m_pSBColumn->value(), m_form->m_pSBRow->value(), m_form->m_pSBWidth->value(),
                      m_form->m_pSBHeight->value());
    setCells(onGrid(typed, m_grid.size)); // never empty: the ranges keep its corner on the grid
}

void ExtractionDialog::takeTypedCorners()
{
    const QRect typed =
        onGrid(cellsBetween(m_grid, {m_form->m_pSBFirstX->value(), m_form->m_pSBFirstY->value()},
                            {m_form->m_pSBLastX->value(), m_form->m_pSBLastY->value()}),
               m_grid.size);
    setCells(typed.isEmpty() ? m_cells : typed);
}

void ExtractionDialog::slot_showWhole()
{
    setCells({QPoint(0, 0), m_grid.size});
}

void ExtractionDialog::slot_takeVectorExtent()
{
    const QString title = tr("Choisir un fichier vecteur", "MESS_EXTR_CHX_VECT");
    const QString file = QuvoFilerDialog::getSelection(
        this, QuvoFilerDialog::OpenFile, title, m_vectorFolder,
        QStringLiteral("%1 (*)").arg(tr("Fichiers vecteur", "MESS_EXTR_VECTEURS")));
    if (file.isEmpty())
        return;
    m_vectorFolder = QFileInfo(file).absolutePath();
    takeExtent(file);
}

void ExtractionDialog::takeExtent(const QString &file)
{
    setCursor(Qt::WaitCursor);
    VectorExtent extent = readVectorExtent(file, m_ground.crs());
    unsetCursor();
    QRect found;
    if (extent.problem.isEmpty()) {
        found = onGrid(touchedCells(cellsAround(m_grid, extent.ground)), m_grid.size);
        if (found.isEmpty())
            extent.problem =
                labelText({"MESS_EXTR_DEHORS", "L'étendue de « %1 » est en dehors du MNT."}).arg(file);
    }
    if (extent.problem.isEmpty())
        setCells(withMargin(found, m_form->m_pSBMargin->value(), m_grid.size));
    for (const QString &text : {extent.problem, extent.note}) {
        if (!text.isEmpty())
            Prompt::warning(this, text);
    }
}

/// Shows the rectangle in every field.
void ExtractionDialog::showCells()
{
    const auto show = [](auto *field, auto value) {
        const QSignalBlocker blocker(field);
        field->setValue(value);
    };
    show(m_form->m_pSBColumn, m_cells.left());
    show(m_form->m_pSBRow, m_cells.top());
    show(m_form->m_pSBWidth, m_cells.width());
    show(m_form->m_pSBHeight, m_cells.height());
    const QPointF first = groundOf(m_grid, m_cells.topLeft());
    const QPointF last = groundOf(m_grid, m_cells.topLeft() + QPoint(m_cells.width(), m_cells.height()));
    show(m_form->m_pSBFirstX, first.x());
    show(m_form->m_pSBFirstY, first.y());
    show(m_form->m_pSBLastX, last.x());
    show(m_form->m_pSBLastY, last.y());
    m_form->m_pLSize->setText(sizeText());
}

QString ExtractionDialog::sizeText() const
{
    if (m_grid.isEmpty())
        return tr("Ce fichier n'est pas un raster que GDAL peut lire.", "MESS_RASTER_INCONNU");
    const QLocale numbers;
    QString text = tr("%1 × %2 cellules", "MESS_EXTR_TAILLE")
                       .arg(numbers.toString(m_cells.width()), numbers.toString(m_cells.height()));
    const QSizeF size = groundSize(m_grid, m_cells.size());
    if (!m_ground.unit().isEmpty())
        text += lengthsText(size, m_ground.unit());
    if (m_ground.unit() == QStringLiteral("°")) {
        const QSizeF metres = m_ground.metresPerUnit(groundOf(m_grid, QRectF(m_cells).center()));
        text +=
            lengthsText({size.width() * metres.width(), size.height() * metres.height()}, QStringLiteral("m"));
    }
    return text;
}

void ExtractionDialog::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || !qobject_cast<QAbstractSpinBox *>(focusWidget()))
        QDialog::keyPressEvent(event);
}

void ExtractionDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_form->retranslateUi(this);
        applyTexts();
        showCells();
    }
    QDialog::changeEvent(event);
}

/// Sets the texts that the form does not hold.
void ExtractionDialog::applyTexts()
{
    m_form->m_pView->setAccessibleName(windowTitle());
    m_form->m_pView->setToolTip(tr(
        "Tirez les poignées, ou un nouveau rectangle. Au clavier : les flèches déplacent le rectangle, Maj + "
        "flèches le redimensionnent, Ctrl + flèches avancent d'une cellule.",
        "MESS_EXTR_VUE_AIDE"));
}
