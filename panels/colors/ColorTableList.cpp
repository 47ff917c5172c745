#include "panels/colors/ColorTableList.h"

#include "colortable/editor/tablelibrary.h"
#include "dataset/workfolder.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"

#include <QFileInfo>

namespace
{

const ColorReliefOptions defaults;

/// Whether the entries are the colours that the options hold by value, if they hold any.
bool matches(const ColorReliefOptions &options, const QList<QuvoColorDef> &entries)
{
    return options.colors.isEmpty() || options.colors == entries;
}

} // namespace

QString tableProblem(const QString &file, const ColorTableReading &reading)
{
    if (reading.problem.isEmpty() && !elevationEntries(reading.entries).isEmpty())
        return {};
    return reading.problem.isEmpty() ? file : reading.problem;
}

bool writeOwnTable(QWidget *parent, const QString &path, const QByteArray &text)
{
    const QString problem = writeTableFile(path, text);
    if (problem.isEmpty())
        return true;
    Prompt::critical(parent,
                     dico_label("MESS_ERR_ECR_FICH", path.toLocal8Bit().constData()) + QStringLiteral("\n\n")
                         + problem);
    return false;
}

ColorTableList::ColorTableList(ColorRampComboBox &combo, WorkFolder &workFolder)
    : m_combo(combo)
    , m_workFolder(workFolder)
{ }

void ColorTableList::load(const QString &folder, const QString &ownFolder)
{
    m_combo.clear();
    m_libraryFolder = QFileInfo(folder).absoluteFilePath();
    int chosen = 0;
    for (const LibraryTable &table : libraryTables(folder, ownFolder)) {
        const int row = add(table.file, readColorTable(table.file));
        if (row >= 0 && !table.own && QFileInfo(table.file).fileName() == defaults.table)
            chosen = row;
    }
    m_combo.setCurrentIndex(m_combo.count() > 0 ? chosen : -1);
}

QString ColorTableList::settingsName(const QString &file) const
{
    const bool named = m_ownTables.contains(file) || QFileInfo(file).absolutePath() == m_libraryFolder;
    return named ? QFileInfo(file).completeBaseName() : file;
}

int ColorTableList::rowOf(const ColorReliefOptions &options) const
{
    for (int row = 0; row < m_combo.count(); ++row) {
        const ColorRampComboBox::Table table = m_combo.table(row);
        const QString name = settingsName(table.file);
        const bool named = options.table == table.file || options.table == name
            || (name != table.file && options.table == name + QLatin1String(".txt"));
        const bool own = m_ownTables.contains(table.file) && !options.colors.isEmpty();
        if ((named || own) && matches(options, table.entries))
            return row;
    }
    return -1;
}

int ColorTableList::add(const ColorReliefOptions &options)
{
    // The default table is the library's, even where the working directory holds a file of that name.
    if (options.table != defaults.table && QFileInfo(options.table).isFile()) {
        const ColorTableReading reading = readColorTable(options.table);
        if (matches(options, reading.entries))
            return add(options.table, reading);
    }
    if (options.colors.isEmpty())
        return -1;
    const QString base = QFileInfo(options.table).completeBaseName();
    const QString file = freeTableName(m_workFolder.path(), base.isEmpty() ? QStringLiteral("custom") : base);
    if (!writeOwnTable(&m_combo, file, exactTableText(options.colors)))
        return -1;
    m_ownTables += file;
    return add(file, readColorTable(file));
}

int ColorTableList::add(const QString &file, const ColorTableReading &reading)
{
    ColorRampComboBox::Table table{file, file, reading.entries};
    if (reading.mixedUnits)
        table.entries = entriesOfKind(reading.entries, reading.relative);
    if (elevationEntries(table.entries).isEmpty())
        return -1;
    if (!reading.plain || reading.mixedUnits) {
        table.toolFile = m_combo.copyOf(file);
        if (table.toolFile.isEmpty())
            table.toolFile = freeTableName(m_workFolder.path(), QFileInfo(file).completeBaseName());
        if (!writeOwnTable(&m_combo, table.toolFile, toolTableText(table.entries)))
            return -1;
    }
    return m_combo.putTable(tableName(file), table);
}

QString ColorTableList::refreshCurrent(bool spread)
{
    const QString file = m_combo.currentTable().file;
    if (!QFileInfo(file).isFile())
        return {};
    const ColorTableReading reading = readColorTable(file);
    QString problem = tableProblem(file, reading);
    if (problem.isEmpty() && spread && reading.categories)
        problem = spreadProblem(file, reading);
    if (problem.isEmpty())
        add(file, reading);
    return problem;
}

void ColorTableList::refreshOwn(const QString &ownFolder)
{
    const QString folder = QFileInfo(ownFolder).absoluteFilePath();
    for (int row = m_combo.count() - 1; row >= 0; --row) {
        const QFileInfo file(m_combo.table(row).file);
        if (file.absolutePath() == folder && !file.exists())
            m_combo.removeItem(row);
    }
    for (const LibraryTable &table : libraryTables(QString(), ownFolder)) {
        if (!m_combo.holds(table.file))
            add(table.file, readColorTable(table.file));
    }
}
