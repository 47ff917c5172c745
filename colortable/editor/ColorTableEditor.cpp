#include "colortable/editor/ColorTableEditor.h"

#include "colortable/colortablefile.h"
#include "colortable/editor/ColorGrid.h"
#include "colortable/editor/ColorTriangle.h"
#include "colortable/editor/CursorFields.h"
#include "colortable/editor/GradientView.h"
#include "colortable/editor/LibraryList.h"
#include "colortable/editor/tablefiles.h"
#include "colortable/editor/tablelibrary.h"
#include "messages/FittingArea.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "messages/label.h"

#include <QAction>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

// The triangle and the grid number their own series of changes; the offsets keep them apart.
constexpr int gradientSeries = 1000000;
constexpr int triangleSeries = 2000000;

} // namespace

ColorTableEditor::ColorTableEditor(const EditorStart &start, QWidget *parent)
    : QDialog(parent)
    , m_start(start)
    , m_file(start.file)
{
    buildLayout();
    connectParts();
    m_history.open(editedTable(start.entries));
    m_history.stack().setClean();
    m_library->refresh(m_file);
    if (!m_start.dem.isEmpty()) {
        constexpr int side = 400; // cells of the grid's longer side
        m_reader = std::make_unique<ElevationGridReader>(m_start.dem, m_start.band, side);
        m_readTimer.start(0);
    }
    m_gradient->setFocus();
}

ColorTableEditor::~ColorTableEditor()
{
    m_history.disconnect(this);
    m_history.stack().disconnect(this);
}

void ColorTableEditor::buildLayout()
{
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(buildTools());
    auto *columns = new QSplitter(this);
    m_library = new LibraryList(m_start.libraryFolder, m_start.ownFolder, this);
    m_library->setAccessibleName(labelText({"MESS_TCE_TABLES", "Tables couleur"}));
    auto *middle = new QWidget(this);
    auto *middleLayout = new QVBoxLayout(middle);
    middleLayout->setContentsMargins(0, 0, 0, 0);
    m_gradient = new GradientView(this);
    m_gradient->setAccessibleName(labelText({"MESS_TCE_NOM_DEGRADE", "Dégradé"}));
    middleLayout->addWidget(m_gradient, 1);
    middleLayout->addWidget(new FittingArea(buildColorParts(), this));
    columns->setChildrenCollapsible(false); // a small screen must not hide the gradient
    columns->addWidget(m_library);
    columns->addWidget(middle);
    columns->addWidget(buildPreview());
    columns->setStretchFactor(0, 0);
    columns->setStretchFactor(1, 3);
    columns->setStretchFactor(2, 2);
    outer->addWidget(columns, 1);
    outer->addWidget(buildButtons());
    const QSize wanted(1080, 640);
    const QScreen *screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    resize(screen ? wanted.boundedTo(screen->availableSize() - QSize(40, 60)) : wanted);
    columns->setSizes({220, qMax(520, width() - 500), 280});
}

QWidget *ColorTableEditor::buildColorParts()
{
    auto *parts = new QWidget(this);
    auto *row = new QHBoxLayout(parts);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    m_fields = new CursorFields(this);
    m_triangle = new ColorTriangle(this);
    m_triangle->setAccessibleName(labelText({"MESS_TCE_NOM_TRIANGLE", "Teinte, saturation et luminosité"}));
    m_colors = new ColorGrid(this);
    m_colors->setAccessibleName(labelText({"MESS_TCE_NOM_GRILLE", "Couleurs à choisir"}));
    auto *right = new QVBoxLayout;
    right->addWidget(m_colors);
    auto *noDataRow = new QHBoxLayout;
    m_hasNoData = new QCheckBox(labelText({"MESS_TCE_SANS_DONNEE", "Cellules sans donnée"}), this);
    m_noData = new QPushButton(this);
    m_noData->setProperty("swatch", true);
    m_noData->setFixedSize(36, 22);
    m_noData->setAutoDefault(false);
    m_noData->setAccessibleName(labelText({"MESS_TCE_COUL_SANS", "Couleur des cellules sans donnée"}));
    noDataRow->addWidget(m_hasNoData);
    noDataRow->addWidget(m_noData);
    noDataRow->addStretch();
    right->addLayout(noDataRow);
    right->addStretch();
    row->addWidget(m_fields);
    row->addWidget(m_triangle, 1);
    row->addLayout(right);
    return parts;
}

QWidget *ColorTableEditor::buildPreview()
{
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    m_preview = new ReliefPreview(this);
    m_preview->setHint(labelText(
        {"MESS_TCE_SANS_MNT", "Choisissez un MNT dans la fenêtre principale pour voir ici son relief."}));
    m_preview->setAccessibleName(labelText({"MESS_TCE_APERCU", "Aperçu"}));
    m_shaded = new QCheckBox(labelText({"MESS_TCE_OMBRE", "Ombrer le relief"}), this);
    m_shaded->setToolTip(
        labelText({"MESS_TCE_OMBRE_AIDE", "Pour l'œil seulement : le résultat n'est pas ombré."}));
    m_vision = new QComboBox(this);
    m_vision->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_vision->setMinimumContentsLength(10); // on a small screen the list is wider than the box
    for (const Label &label :
         {Label{"MESS_TCE_VUE_NORMALE", "Vision normale"}, Label{"MESS_TCE_PROTAN", "Protanopie (sans rouge)"},
          Label{"MESS_TCE_DEUTAN", "Deutéranopie (sans vert)"},
          Label{"MESS_TCE_TRITAN", "Tritanopie (sans bleu)"}})
        m_vision->addItem(labelText(label));
    m_vision->setAccessibleName(labelText({"MESS_TCE_VISION", "Vision des couleurs"}));
    m_vision->setToolTip(labelText(
        {"MESS_TCE_VISION_AIDE", "Montre le dégradé et l'aperçu comme les voit une personne daltonienne."}));
    m_note = new QLabel(this);
    m_note->setWordWrap(true);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_shaded);
    layout->addWidget(m_vision);
    layout->addWidget(m_note);
    return side;
}

QWidget *ColorTableEditor::buildButtons()
{
    auto *buttons = new QWidget(this);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const Label &label) {
        auto *button = new QPushButton(labelText(label), this);
        button->setAutoDefault(false);
        row->addWidget(button);
        return button;
    };
    auto *open = add({"MESS_TCE_OUVRIR", "Ouvrir…"});
    m_save = add({"MESS_TCE_ENREGISTRER", "Enregistrer"});
    auto *saveAsButton = add({"MESS_TCE_ENREG_SOUS", "Enregistrer sous…"});
    row->addStretch();
    auto *useButton = add({"MESS_TCE_UTILISER", "Utiliser"});
    useButton->setToolTip(
        labelText({"MESS_TCE_UTILISER_AIDE",
                   "Emploie la table pour le relief en couleur, sans l'enregistrer dans un fichier"}));
    auto *close = add({"MESS_FERMER", "Fermer"});
    connect(open, &QPushButton::clicked, this, &ColorTableEditor::openFile);
    connect(m_save, &QPushButton::clicked, this, &ColorTableEditor::save);
    connect(saveAsButton, &QPushButton::clicked, this, &ColorTableEditor::saveAs);
    connect(useButton, &QPushButton::clicked, this, &ColorTableEditor::use);
    connect(close, &QPushButton::clicked, this, &ColorTableEditor::reject);
    return buttons;
}

void ColorTableEditor::connectParts()
{
    connect(&m_history, &TableHistory::changed, this, &ColorTableEditor::showTable);
    connect(&m_history.stack(), &QUndoStack::cleanChanged, this, &ColorTableEditor::showTitle);
    connect(&m_readTimer, &QTimer::timeout, this, &ColorTableEditor::readGrid);
    connect(m_gradient, &GradientView::selected, &m_history, &TableHistory::select);
    connect(m_gradient, &GradientView::moved, this, [this](int at, double value, int series) {
        m_history.change(moved(table(), at, value), labelText({"MESS_TCE_PAS_DEPLACER", "déplacer la couleur"}),
                         gradientSeries + series);
    });
    connect(m_gradient, &GradientView::added, this, [this](double value) {
        m_history.change(withCursor(table(), value),
                         labelText({"MESS_TCE_PAS_AJOUTER", "ajouter une couleur"}));
    });
    connect(m_gradient, &GradientView::removed, this, [this](int at) {
        m_history.change(withoutCursor(table(), at),
                         labelText({"MESS_TCE_PAS_SUPPRIMER", "supprimer la couleur"}));
    });
    connect(m_fields, &CursorFields::valueTyped, this, [this](double value) {
        m_history.change(withValue(table(), m_history.selected(), value),
                         labelText({"MESS_TCE_PAS_DEPLACER", "déplacer la couleur"}));
    });
    connect(m_fields, &CursorFields::colorTyped, this, [this](const QColor &color) { pickColor(color, 0); });
    connect(m_fields, &CursorFields::evenToggled, this, [this](bool even) {
        operate(labelText({"MESS_TCE_PAS_REGULIER", "segment régulier à l'œil"}),
                withEvenSegment(table(), m_history.selected(), even));
    });
    connect(m_triangle, &ColorTriangle::picked, this,
            [this](const QColor &color, int series) { pickColor(color, triangleSeries + series); });
    connect(m_colors, &ColorGrid::picked, this, [this](const QColor &color) { pickColor(color, 0); });
    connect(m_library, &LibraryList::chosen, this, &ColorTableEditor::openTable);
    connect(m_library, &LibraryList::renamed, this, [this](const QString &from, const QString &to) {
        for (QString *file : {&m_file, &m_start.file}) {
            if (*file == from)
                *file = to;
        }
        showTitle();
        emit colorFileRenamed(from, to);
    });
    connect(m_shaded, &QCheckBox::toggled, this, &ColorTableEditor::showTable);
    connect(m_vision, qOverload<int>(&QComboBox::currentIndexChanged), this, &ColorTableEditor::showTable);
    connect(m_noData, &QPushButton::clicked, this, &ColorTableEditor::chooseNoData);
    connect(m_hasNoData, &QCheckBox::clicked, this, [this](bool has) {
        const std::optional<QColor> transparent = QColor(0, 0, 0, 0);
        operate(labelText({"MESS_TCE_PAS_SANS", "couleur des cellules sans donnée"}),
                withNoData(table(), has ? transparent : std::nullopt));
    });
}

void ColorTableEditor::operate(const QString &name, const EditedTable &table)
{
    m_history.change(table, m_history.selected(), name);
}

void ColorTableEditor::showTable()
{
    const EditedTable &edited = table();
    const int selected = m_history.selected();
    const auto vision = static_cast<ColorVision>(m_vision->currentIndex());
    if (edited.percent != m_sampleIsPercent)
        useSample();
    m_gradient->setVision(vision);
    m_gradient->setTable(edited, selected);
    m_fields->show(edited, selected);
    QVector<QColor> colors;
    for (const ColorCursor &cursor : edited.cursors)
        colors += cursor.color;
    m_colors->setColors(colors, m_recent);
    if (selected >= 0)
        m_triangle->setColor(edited.cursors.at(selected).color);
    m_hasNoData->setChecked(edited.noData.has_value());
    m_noData->setEnabled(edited.noData.has_value());
    showSwatch(*m_noData, edited.noData);
    m_preview->show({plainEntries(edited), m_start.minimum, m_start.maximum, vision, m_shaded->isChecked()});
    m_note->setText((m_fileNotes + tableNotes(edited)).join(QLatin1Char('\n')));
    m_note->setVisible(!m_note->text().isEmpty());
    for (QAction *action : qAsConst(m_demActions))
        action->setEnabled(m_start.hasExtremes);
    showTitle();
}

void ColorTableEditor::showTitle()
{
    const QString name = m_file.isEmpty() ? labelText({"MESS_TCE_SANS_NOM", "sans nom"}) : tableName(m_file);
    setWindowTitle(labelText({"MESS_TCE_TITRE", "Table couleur"}) + QStringLiteral(" – ") + name
                   + QStringLiteral("[*]"));
    setWindowModified(!m_history.stack().isClean());
    m_save->setEnabled(!m_history.stack().isClean());
}

/// Gives the gradient the elevations in the table's unit.
void ColorTableEditor::useSample()
{
    QVector<double> sample = m_sample;
    m_sampleIsPercent = table().percent;
    const double range = m_start.maximum - m_start.minimum;
    if (table().percent) {
        if (!(range > 0.0))
            sample.clear();
        for (double &value : sample)
            value = (value - m_start.minimum) / range * 100.0;
    }
    m_gradient->setSample(sample);
}

void ColorTableEditor::readGrid()
{
    constexpr int slice = 30; // milliseconds
    const bool isUnderWay = m_reader->advance(slice);
    if (isUnderWay)
        return;
    m_readTimer.stop();
    m_grid = m_reader->grid();
    m_reader.reset();
    m_sample = m_grid.sorted();
    if (!m_start.hasExtremes && !m_sample.isEmpty()) {
        m_start.minimum = m_sample.first();
        m_start.maximum = m_sample.last();
        m_start.hasExtremes = true;
    }
    m_preview->setGrid(m_grid);
    useSample();
    zoomOnDem();
    showTable();
}

/// Shows the DEM's elevations alone where they are a small part of the table, and selects a colour among them.
void ColorTableEditor::zoomOnDem()
{
    constexpr double smallPart = 0.35;
    const QVector<ColorCursor> &cursors = table().cursors;
    if (m_sample.isEmpty() || cursors.isEmpty() || table().percent)
        return;
    const double range = cursors.last().value - cursors.first().value;
    if (m_sample.last() - m_sample.first() > smallPart * range)
        return;
    m_zoom->setChecked(true);
    const auto inside = std::find_if(cursors.begin(), cursors.end(), [this](const ColorCursor &cursor) {
        return cursor.value >= m_sample.first() && cursor.value <= m_sample.last();
    });
    if (inside != cursors.end())
        m_history.select(static_cast<int>(inside - cursors.begin()));
}

void ColorTableEditor::pickColor(const QColor &color, int series)
{
    const int at = m_history.selected();
    if (at < 0)
        return;
    QColor picked = color;
    if (sender() == m_colors) // the grid's colours are opaque
        picked.setAlpha(table().cursors.at(at).color.alpha());
    remember(picked, series);
    m_history.change(withColor(table(), at, picked), at,
                     labelText({"MESS_TCE_PAS_COULEUR", "changer la couleur"}), series);
}

/// A colour replaces the one before where both belong to the same movement of the mouse or the same keys in a
/// row, so that the list does not fill with the colours in between.
void ColorTableEditor::remember(const QColor &color, int series)
{
    constexpr int most = 12;
    if (std::exchange(m_pickSeries, series) == series && series > 0 && !m_recent.isEmpty())
        m_recent.removeFirst();
    m_recent.removeAll(color);
    m_recent.prepend(color);
    if (m_recent.size() > most)
        m_recent.resize(most);
}

void ColorTableEditor::chooseNoData()
{
    const QColor color = QColorDialog::getColor(
        table().noData.value_or(QColor(0, 0, 0, 0)), this,
        labelText({"MESS_TCE_COUL_SANS", "Couleur des cellules sans donnée"}), QColorDialog::ShowAlphaChannel);
    if (color.isValid())
        operate(labelText({"MESS_TCE_PAS_SANS", "couleur des cellules sans donnée"}),
                withNoData(table(), color));
}

bool ColorTableEditor::mayLeaveTable()
{
    if (m_history.stack().isClean())
        return true;
    const QString name = m_file.isEmpty() ? labelText({"MESS_TCE_SANS_NOM", "sans nom"}) : m_file;
    const auto answer =
        Prompt::saveQuestion(this, dico_label("MESS_ATT_SAV_MODIF", name.toLocal8Bit().constData()));
    if (answer == Prompt::Save)
        return save();
    return answer == Prompt::Discard;
}

void ColorTableEditor::openFile()
{
    const QString file = chooseTableToOpen(this, m_start.ownFolder);
    if (!file.isEmpty())
        openTable(file);
}

void ColorTableEditor::openTable(const QString &file)
{
    if (file == m_file && m_history.stack().isClean())
        return;
    const auto loaded = mayLeaveTable() ? acceptedTable(this, file) : std::nullopt;
    if (loaded) {
        m_file = file;
        m_fileNotes = loaded->notes;
        m_history.open(editedTable(loaded->entries));
    }
    m_library->refresh(m_file);
    showTitle();
}

bool ColorTableEditor::write(const QString &file)
{
    if (!writeTable(this, file, plainEntries(table())))
        return false;
    m_history.stack().setClean();
    return true;
}

bool ColorTableEditor::save()
{
    const bool isTemporary = m_start.isTemporary && m_file == m_start.file;
    const bool isOfLibrary =
        QFileInfo(m_file).absolutePath() == QFileInfo(m_start.libraryFolder).absoluteFilePath();
    // The file of another program stays as it is, even where this program can read it.
    const bool isForeign = !m_file.endsWith(QLatin1String(".txt"), Qt::CaseInsensitive)
        || !readColorTable(m_file).format.isEmpty();
    const bool isOwn = !isTemporary && !isOfLibrary && !isForeign && QFileInfo(m_file).isWritable();
    if (!isOwn)
        return saveAs();
    if (!write(m_file))
        return false;
    m_library->refresh(m_file);
    if (m_file == m_start.file)
        emit currentColorFileDataChanged();
    else
        emit newColorFileCreated(m_file);
    return true;
}

bool ColorTableEditor::saveAs()
{
    const QString file = chooseTableToSave(this, m_start.ownFolder, m_file);
    if (file.isEmpty() || !write(file))
        return false;
    m_file = file;
    m_library->refresh(m_file);
    showTitle();
    emit newColorFileCreated(m_file);
    return true;
}

void ColorTableEditor::use()
{
    if (!m_history.stack().isClean())
        emit currentColorFileDataChanged(plainEntries(table()));
    else if (m_file != m_start.file)
        emit newColorFileCreated(m_file);
    accept();
}

void ColorTableEditor::reject()
{
    if (mayLeaveTable())
        QDialog::reject();
}
