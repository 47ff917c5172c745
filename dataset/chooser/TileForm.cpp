#include "dataset/chooser/TileForm.h"

#include "messages/NumberBox.h"
#include "messages/label.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace
{

NumberBox *degrees(double lowest, double highest, int decimals, QWidget *parent)
{
    auto field = new NumberBox(parent);
    field->setRange(lowest, highest);
    field->setDecimals(decimals);
    field->setSuffix(QStringLiteral("°"));
    return field;
}

QSpinBox *count(QWidget *parent)
{
    auto field = new QSpinBox(parent);
    constexpr int most = 1000000;
    field->setRange(1, most);
    return field;
}

} // namespace

TileForm::TileForm(const QString &fileName, qint64 bytes, QWidget *parent)
    : QDialog(parent)
    , m_bytes(bytes)
    , m_pSBColumns(count(this))
    , m_pSBRows(count(this))
    , m_pDSBLatitude(degrees(-90.0, 90.0, 6, this))
    , m_pDSBLongitude(degrees(-180.0, 360.0, 6, this))
    , m_pDSBCellSize(degrees(0.0, 90.0, 12, this))
    , m_pLProblem(new QLabel(this))
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(labelText({"MESS_HGT_TITRE", "Lire un fichier d'altitudes sans en-tête"}));
    auto intro = new QLabel(
        labelText({"MESS_HGT_INTRO",
                   "« %1 » n'indique ni sa taille en cellules ni sa place. Les altitudes sont lues comme des "
                   "entiers de deux octets, le fichier n'est pas modifié."})
            .arg(fileName),
        this);
    for (QLabel *label : {intro, m_pLProblem}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    auto fields = new QFormLayout;
    fields->addRow(labelText({"MESS_HGT_COLONNES", "Colonnes :"}), m_pSBColumns);
    fields->addRow(labelText({"MESS_HGT_LIGNES", "Lignes :"}), m_pSBRows);
    fields->addRow(labelText({"MESS_HGT_LAT", "Latitude du coin inférieur gauche :"}), m_pDSBLatitude);
    fields->addRow(labelText({"MESS_HGT_LON", "Longitude du coin inférieur gauche :"}), m_pDSBLongitude);
    fields->addRow(labelText({"MESS_HGT_PAS", "Côté d'une cellule :"}), m_pDSBCellSize);
    const QString corner = labelText({"MESS_HGT_COIN",
                                      "Le centre de la cellule inférieure gauche, comme dans le nom des tuiles "
                                      "(« N45E006 » : 45 et 6). Le sud et l'ouest sont négatifs."});
    m_pDSBLatitude->setToolTip(corner);
    m_pDSBLongitude->setToolTip(corner);
    auto buttons = new QDialogButtonBox(this);
    m_pPBAccept = buttons->addButton(labelText({"MESS_HGT_LIRE", "Lire"}), QDialogButtonBox::AcceptRole);
    buttons->addButton(labelText({"MESS_ANNULER", "Annuler"}), QDialogButtonBox::RejectRole);
    auto layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(fields);
    layout->addWidget(m_pLProblem);
    layout->addStretch();
    layout->addWidget(buttons);
    showTile(likelyTile(fileName, bytes));
    for (QSpinBox *field : {m_pSBColumns, m_pSBRows})
        connect(field, qOverload<int>(&QSpinBox::valueChanged), this, &TileForm::check);
    for (NumberBox *field : {m_pDSBLatitude, m_pDSBLongitude, m_pDSBCellSize})
        connect(field, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &TileForm::check);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    check();
}

void TileForm::showTile(const HgtTile &tile)
{
    m_pSBColumns->setValue(tile.columns);
    m_pSBRows->setValue(tile.rows);
    m_pDSBLatitude->setValue(tile.latitude);
    m_pDSBLongitude->setValue(tile.longitude);
    m_pDSBCellSize->setValue(tile.cellSize);
}

HgtTile TileForm::tile() const
{
    return {m_pSBColumns->value(), m_pSBRows->value(), m_pDSBLatitude->value(), m_pDSBLongitude->value(),
            m_pDSBCellSize->value()};
}

void TileForm::check()
{
    const QString problem = tileProblem(tile(), m_bytes);
    m_pLProblem->setText(problem);
    m_pPBAccept->setEnabled(problem.isEmpty());
}
