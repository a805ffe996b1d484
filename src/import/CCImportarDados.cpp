#include "CCImportarDados.h"

#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CVRServices.h"
#include "host/HostTypes.h"
#include "host/Translate.h"
#include "settings/SettingsLine.h"
#include "settings/SettingsTextFile.h"

#include <exception>

namespace {

const KVString kSheet = QString::fromLatin1(CCImportarDados::kSheetName);

void warn(const QString& text)
{
    CFxMessageBox::warning(CFxUtils::GetMainWindowId(), text);
}

// In the drawing language's lists the text goes between double quotes, so double quotes in
// it become apostrophes.
QString quotedForLisp(const QString& text)
{
    QString quoted = text;
    quoted.replace(u'"', u'\'');
    return u'"' + quoted + u'"';
}

} // namespace

CCImportarDados::CCImportarDados() = default;

CCImportarDados::~CCImportarDados() = default;

void CCImportarDados::SetSettingsPath(const KVString& path)
{
    m_settingsPath = path;
}

KVString CCImportarDados::ChooseFile()
{
    const KVString folder = kvAutomaticInsertionFolder();
    const KVString filter = QStringLiteral("%1 (*.xlsx)&*.xlsx&%1 (*.xlsm)&*.xlsm&&")
                                .arg(kvTrOffice("Worksheet Files"));
    CFxSystemServices* system = GetFxSystemServices();
    if (!system)
        return {};
    KVString path;
    const int result =
        system->FileDialog(0, path, CFxUtils::GetMainWindowId(), CFxSystemServices::kOpenExisting,
                           {}, {}, filter, folder, nullptr, nullptr, nullptr, 0);
    return result == KV_RESULT_OK ? path : KVString();
}

bool CCImportarDados::OpenWorkbook()
{
    m_excel = std::make_unique<CIExcel>(m_filePath);
    return m_excel->isOpen();
}

bool CCImportarDados::SheetExists(const KVString& sheet)
{
    return m_excel && m_excel->WorkSheetExists(sheet);
}

int CCImportarDados::ColumnIndex(const KVString& title, const KVString& sheet)
{
    return m_excel ? m_excel->GetColumnIndex(sheet, title, m_headerRow) : -1;
}

KVString CCImportarDados::CellValue(int row, int column)
{
    return m_excel ? m_excel->GetValue(kSheet, row, column) : KVString();
}

bool CCImportarDados::warnIfReaderFailed() const
{
    if (!m_excel || !m_excel->error().isError())
        return false;
    warn(m_excel->error().message());
    return true;
}

bool CCImportarDados::Importar()
{
    try {
        return readRows();
    } catch (const std::exception& error) {
        electricalLog(ACTIVE_DOCUMENT(), QStringLiteral("CCImportarDados::Importar : ") +
                                             QString::fromLocal8Bit(error.what()));
        throw;
    }
}

bool CCImportarDados::readRows()
{
    m_filePath = ChooseFile();
    if (m_filePath.isEmpty())
        return false;
    if (!OpenWorkbook()) {
        warnIfReaderFailed();
        return false;
    }
    if (!SheetExists(kSheet))
        return false;
    const int rowCount = m_excel->VerifyRowCount(kSheet);
    if (warnIfReaderFailed())
        return false;
    LoadSettings();

    bool visitedRow = false;
    for (int row = m_headerRow; row < rowCount; ++row) {
        for (qsizetype i = 0; i < m_columns.size(); ++i) {
            const int column = ColumnIndex(m_columns[i], kSheet);
            if (column == -1) {
                if (!warnIfReaderFailed())
                    warn(kvTr("Error loading data from spreadsheet.") + u' ' + m_columns[i]);
                return false;
            }
            const KVString value = CellValue(row, column);
            if (warnIfReaderFailed())
                return false;
            // Rows without the first listed column are not items.
            if (i == 0 && value.isEmpty())
                break;
            m_values.append(value);
        }
        if (m_columns.isEmpty()) {
            warn(kvTr("Error loading data from spreadsheet."));
            return false;
        }
        visitedRow = true;
    }
    return visitedRow;
}

void CCImportarDados::LoadSettings()
{
    m_lispFieldList.clear();
    SettingsTextFile file;
    // A file that cannot be opened reads like an empty one.
    file.openForReading(m_settingsPath);
    KVString* const headers[] = {&m_gapBeforeVar,  &m_gapAfterVar, &m_startPoint, &m_spaceWidth,
                                 &m_separatorMode, &m_pageSize,    &m_pageMode};
    int lineNumber = 0;
    for (KVString line = file.readLine(); !line.isEmpty(); line = file.readLine(), ++lineNumber) {
        if (lineNumber < 7) {
            // The last character is the line end, except on a last line that has none.
            line.chop(1);
            *headers[lineNumber] = line;
        } else {
            addFieldLine(line);
        }
    }
}

void CCImportarDados::addFieldLine(const KVString& line)
{
    // The line end stays in the line: it ends up in the field after the last ";".
    const QStringList fields = SettingsLine::cells(line);
    const QString column = fields.isEmpty() ? QString() : SettingsLine::trimmed(fields[0]);
    if (column.isEmpty())
        return;
    m_columns.append(column);
    m_lispFieldList += QStringLiteral("(cons ") + quotedForLisp(column) + u' ';
    if (fields.size() > 1)
        m_lispFieldList += quotedForLisp(fields[1]) + QStringLiteral(") ");
    if (fields.size() > 2)
        m_searchProps.append(fields[2]);
    if (fields.size() > 3)
        m_showFlags.append(fields[3]);
}
