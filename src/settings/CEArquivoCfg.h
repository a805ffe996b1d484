#pragma once

#include "CECampoCfg.h"
#include "CELstCampoCfg.h"
#include "SettingsTextFile.h"
#include "host/KVString.h"

#include <memory>
#include <vector>

// The settings as read from one settings file. One object serves one file: reading a .cfa fills
// the header texts and the field rows; reading a .cfb or .cfc fills the block or symbol rows.
// The object owns every row that its reads create; the lists only point at them.
class CEArquivoCfg final
{
public:
    CEArquivoCfg();
    ~CEArquivoCfg();
    CEArquivoCfg(const CEArquivoCfg&) = delete;
    CEArquivoCfg& operator=(const CEArquivoCfg&) = delete;

    // Opens the .cfa for reading; a missing file is not created. A file that cannot be opened
    // reads as an empty file; the status says why it could not be opened.
    SettingsFileStatus OpenMainFile(const KVString& path);
    // Creates the .cfb or .cfc empty if it is missing, then opens it for reading.
    SettingsFileStatus OpenListFile(const KVString& path);
    // Fills the seven header texts and the field rows from the main file.
    void ReadMainFile();
    // Fills the block or symbol rows from the list file.
    void ReadListFile();
    // Each returns 1 when it closed a file and 0 when none was open.
    int CloseMainFile();
    int CloseListFile();

    int fieldCount() const { return m_fields.count(); }
    int rowCount() const { return m_rows.count(); }
    // Rows at an index; throw std::invalid_argument outside the range.
    const CECampoCfg* field(int index) const { return m_fields.at(index); }
    const CECampoCfg* row(int index) const { return m_rows.at(index); }
    const CELstCampoCfg& fields() const { return m_fields; }
    const CELstCampoCfg& rows() const { return m_rows; }
    // A shared reference to a row, for a caller that keeps it beyond this object's life.
    std::shared_ptr<const CECampoCfg> sharedField(int index) const;
    std::shared_ptr<const CECampoCfg> sharedRow(int index) const;

    KVString gapBeforeVar() const { return m_gapBeforeVar; }
    KVString gapAfterVar() const { return m_gapAfterVar; }
    KVString spaceWidth() const { return m_spaceWidth; }
    KVString startPoint() const { return m_startPoint; }
    KVString separatorMode() const { return m_separatorMode; }
    KVString pageSize() const { return m_pageSize; }
    KVString pageMode() const { return m_pageMode; }

private:
    using RowOwners = std::vector<std::shared_ptr<CECampoCfg>>;

    static void appendRow(CELstCampoCfg& list, RowOwners& owners, std::shared_ptr<CECampoCfg> row);

    SettingsTextFile m_mainFile;
    SettingsTextFile m_listFile;
    CELstCampoCfg m_fields;
    CELstCampoCfg m_rows;
    KVString m_gapBeforeVar;
    // Three texts of the record that no reader fills; kept so the record stays complete.
    KVString m_unusedText1;
    KVString m_unusedText2;
    KVString m_unusedText3;
    KVString m_gapAfterVar;
    KVString m_spaceWidth;
    KVString m_startPoint;
    KVString m_separatorMode;
    KVString m_pageSize;
    KVString m_pageMode;
    // Owners of the rows that m_fields and m_rows point at, index for index.
    RowOwners m_fieldOwners;
    RowOwners m_rowOwners;
};
