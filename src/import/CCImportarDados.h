#pragma once

#include "CIExcel.h"

#include "host/KVString.h"

#include <memory>

// Reads the rows of the worksheet "Sheet1" of a workbook the user picks into a flat list of
// texts, one per configured column and row, and the settings file's header texts and field
// list that say which columns to read and how the import uses them. It matches nothing and
// touches no tree: the item import walks values() in strides of columns().size().
//
// Created for one import: SetSettingsPath, then Importar once, then the members are read.
class CCImportarDados final
{
public:
    // The worksheet that is read; no other sheet ever is.
    static constexpr const char* kSheetName = "Sheet1";

    CCImportarDados();
    ~CCImportarDados();
    CCImportarDados(const CCImportarDados&) = delete;
    CCImportarDados& operator=(const CCImportarDados&) = delete;

    // Runs the whole read. True when at least one row was visited (taken or skipped) and no
    // error stopped the read; false when the user cancelled, the sheet is missing, there was
    // no row to visit, or a warning was shown (a workbook that cannot be read, a column title
    // that is not in the header row, no columns configured). Exceptions are written to the
    // active document's electrical log and thrown on.
    bool Importar();
    void SetSettingsPath(const KVString& path);
    // The host's file dialog on the working folder's "Automatic Insertion"; the chosen path,
    // or an empty text when the user cancelled.
    KVString ChooseFile();
    // Opens filePath() in a new reader, replacing the previous one. False when the workbook
    // cannot be read; excel()->error() then says why.
    bool OpenWorkbook();
    bool SheetExists(const KVString& sheet);
    // The zero-based column holding `title` in the header row; -1 when it is not there.
    int ColumnIndex(const KVString& title, const KVString& sheet);
    // The text of a cell of "Sheet1" (zero-based row and column).
    KVString CellValue(int row, int column);
    // Reads the header texts and the field lines of the settings file. A file that cannot be
    // opened reads as an empty one.
    void LoadSettings();

    const KVString& filePath() const { return m_filePath; }
    const KVString& settingsPath() const { return m_settingsPath; }
    CIExcel* excel() const { return m_excel.get(); }
    // The row of the column titles as a person sees it, and the first row read as data in the
    // reader's zero-based value rows, which is the row just below it.
    int headerRow() const { return m_headerRow; }
    const KVStringList& values() const { return m_values; }
    const KVStringList& columns() const { return m_columns; }
    const KVStringList& searchProps() const { return m_searchProps; }
    const KVStringList& showFlags() const { return m_showFlags; }
    const KVString& gapBeforeVar() const { return m_gapBeforeVar; }
    const KVString& gapAfterVar() const { return m_gapAfterVar; }
    const KVString& startPoint() const { return m_startPoint; }
    const KVString& spaceWidth() const { return m_spaceWidth; }
    const KVString& lispFieldList() const { return m_lispFieldList; }
    const KVString& separatorMode() const { return m_separatorMode; }
    const KVString& pageSize() const { return m_pageSize; }
    const KVString& pageMode() const { return m_pageMode; }

private:
    bool readRows();
    // Shows the reader's problem when it has one; true when it did.
    bool warnIfReaderFailed() const;
    void addFieldLine(const KVString& line);

    KVString m_filePath;
    KVString m_settingsPath;
    std::unique_ptr<CIExcel> m_excel;
    int m_headerRow = 11;
    KVStringList m_values;
    KVStringList m_columns;
    KVStringList m_searchProps;
    KVStringList m_showFlags;
    KVString m_gapBeforeVar;
    KVString m_gapAfterVar;
    KVString m_startPoint;
    KVString m_spaceWidth;
    KVString m_lispFieldList;
    KVString m_separatorMode;
    KVString m_pageSize;
    KVString m_pageMode;
};
