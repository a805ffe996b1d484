#include "CEArquivoCfg.h"

#include "SettingsLine.h"

#include <array>

namespace {

// Puts the leading cells of a line into the holders, in order; holders without a cell keep
// the value they had.
template <std::size_t N> void takeCells(const QString& line, std::array<KVString, N>& holders)
{
    const QStringList cells = SettingsLine::cells(line);
    for (std::size_t i = 0; i < N && i < static_cast<std::size_t>(cells.size()); ++i)
        holders[i] = cells.at(static_cast<qsizetype>(i));
}

} // namespace

CEArquivoCfg::CEArquivoCfg() = default;

CEArquivoCfg::~CEArquivoCfg() = default;

SettingsFileStatus CEArquivoCfg::OpenMainFile(const KVString& path)
{
    return m_mainFile.openForReading(path);
}

SettingsFileStatus CEArquivoCfg::OpenListFile(const KVString& path)
{
    const SettingsFileStatus created = SettingsTextFile::ensureExists(path);
    const SettingsFileStatus opened = m_listFile.openForReading(path);
    return created ? opened : created;
}

void CEArquivoCfg::ReadMainFile()
{
    // Field name, attribute, search property and show letter, carried from row to row.
    std::array<KVString, 4> holders;
    KVString* const header[] = {&m_gapBeforeVar,  &m_gapAfterVar, &m_startPoint, &m_spaceWidth,
                                &m_separatorMode, &m_pageSize,    &m_pageMode};
    constexpr int headerLines = 7;
    if (m_mainFile.atEnd())
        return;
    int lineNumber = 0;
    do {
        const QString line = SettingsLine::trimmed(m_mainFile.readLine());
        if (lineNumber < headerLines) {
            *header[lineNumber] = line;
        } else {
            if (!line.isEmpty())
                takeCells(line, holders);
            appendRow(m_fields, m_fieldOwners,
                      std::make_shared<CECampoCfg>(holders[0], holders[1], holders[2],
                                                   holders[3] == u"S"));
        }
        ++lineNumber;
    } while (!m_mainFile.atEnd());
}

void CEArquivoCfg::ReadListFile()
{
    // Block name (or symbol key), point and angle, carried from row to row.
    std::array<KVString, 3> holders;
    bool sawText = false;
    if (m_listFile.atEnd())
        return;
    do {
        const QString line = SettingsLine::trimmed(m_listFile.readLine());
        if (!line.isEmpty()) {
            sawText = true;
            takeCells(line, holders);
        } else if (!sawText) {
            holders = {QStringLiteral("..."), QStringLiteral("0,0"), QStringLiteral("0")};
        }
        appendRow(m_rows, m_rowOwners,
                  std::make_shared<CECampoCfg>(holders[0], holders[1], holders[2]));
    } while (!m_listFile.atEnd());
}

int CEArquivoCfg::CloseMainFile()
{
    return m_mainFile.close() ? 1 : 0;
}

int CEArquivoCfg::CloseListFile()
{
    return m_listFile.close() ? 1 : 0;
}

std::shared_ptr<const CECampoCfg> CEArquivoCfg::sharedField(int index) const
{
    m_fields.at(index); // the range check
    return m_fieldOwners.at(static_cast<std::size_t>(index));
}

std::shared_ptr<const CECampoCfg> CEArquivoCfg::sharedRow(int index) const
{
    m_rows.at(index); // the range check
    return m_rowOwners.at(static_cast<std::size_t>(index));
}

void CEArquivoCfg::appendRow(CELstCampoCfg& list, RowOwners& owners,
                             std::shared_ptr<CECampoCfg> row)
{
    list.append(row.get());
    owners.push_back(std::move(row));
}
