#pragma once

#include "host/CEComponente.h"
#include "host/KVString.h"
#include "maindialog/TVNode.h"
#include "maindialog/TVNodeKind.h"

#include <QMap>

#include <functional>
#include <optional>

class CCImportarDados;
class CTVNodesUtil;
class ItemListController;

// The settings file's seven header texts, and between spaceWidth and separatorMode the field
// list for the drawing language, as the reader takes them from the settings file.
struct ImportHeaderTexts
{
    KVString gapBeforeVar;
    KVString gapAfterVar;
    KVString startPoint;
    KVString spaceWidth;
    KVString lispFieldList;
    KVString separatorMode;
    KVString pageSize;
    KVString pageMode;

    friend bool operator==(const ImportHeaderTexts&, const ImportHeaderTexts&) = default;
};

// What the main dialog keeps for the import: its copies of the header texts (the import
// replaces them with what it read), the count shown beside "Items not imported:" and the
// number from which items added by hand go on counting.
struct ImportDialogState
{
    ImportHeaderTexts headers;
    int itemCount = 0;
    int lastItemNumber = 0;
};

// What the reader gave: the field lists of the settings file and the rows' values, one per
// column and row with no separation between rows.
struct ImportedSheet
{
    ImportHeaderTexts headers;
    KVStringList columns;
    KVStringList searchProps;
    KVStringList showFlags;
    KVStringList values;

    static ImportedSheet from(const CCImportarDados& importer);
};

enum class ItemImportOutcome {
    // The reader gave nothing (cancelled, no "Sheet1", no row below the titles, or a warning
    // was shown); the tree was not touched.
    NotRead,
    // Every row became an item.
    Imported,
    // The settings search on properties that the field dictionary does not know: the warning
    // was shown and the tree left empty.
    MissingProperties,
    // An error stopped the import and was written to the electrical log; the items made
    // before it stay.
    Failed,
};

struct ItemImportResult
{
    ItemImportOutcome outcome = ItemImportOutcome::NotRead;
    // The insertion button's new state; empty when the import left the button as it was.
    std::optional<bool> insertionEnabled;
    // True when the count field is to show itemCount again.
    bool countShown = false;
    // MissingProperties: the unknown names in settings order, duplicates kept.
    KVStringList missingProperties;
    // Failed: the error's description as logged.
    QString error;
    // The workbook the user chose; empty when the file dialog was cancelled.
    KVString workbookPath;
    int itemsImported = 0;
    int symbolsPlaced = 0;
};

// The main dialog's "Import": replaces the item tree by the rows of a workbook. Each row
// becomes an item whose symbols are the components matching the row's search fields, and
// page and space nodes are put among the symbols by the settings' separator mode, simulating
// how a row of symbols fills a page. The search properties of the settings are checked
// against the database's field dictionary first.
//
// One object serves one import; it runs on the caller's thread and reaches the host only
// through src/host/ (file dialog, query runner, property values, warning box, electrical log).
class ItemImport final
{
public:
    ItemImport(CTVNodesUtil& tree, ImportDialogState& state);
    ~ItemImport();
    ItemImport(const ItemImport&) = delete;
    ItemImport& operator=(const ItemImport&) = delete;

    // Told true once the old tree is gone and the rows are being worked on, false when that
    // is over (the dialog's wait cursor).
    void setBusyIndicator(std::function<void(bool busy)> indicator);

    // Reads the workbook the host's file dialog asks for, with the field lines of the
    // settings file at `settingsPath`, and builds the tree.
    ItemImportResult run(const KVString& settingsPath);
    // Builds the tree from rows already read: everything that follows the reading.
    ItemImportResult build(const ImportedSheet& sheet);

    // The same on the main dialog's list: its tree, and afterwards its separator mode, last
    // item number and (when the count field is shown again) its count, from `state`.
    // `busyIndicator` is told as setBusyIndicator says.
    static ItemImportResult run(const KVString& settingsPath, ItemListController& list,
                                ImportDialogState& state,
                                std::function<void(bool busy)> busyIndicator = {});

    // A header text as a whole number: the first piece between commas (runs of commas count
    // as one), its leading number with the decimal part dropped, 0 when it is none.
    static int wholeNumber(const KVString& text);
    // The warning shown for search properties missing from the field dictionary.
    static QString missingPropertiesMessage(const KVStringList& names);

private:
    template <typename Work> ItemImportResult guarded(Work&& work);
    void buildTree(const ImportedSheet& sheet, ItemImportResult& result);
    KVStringList knownProperties() const;
    void importRow(const ImportedSheet& sheet, qsizetype row, ItemImportResult& result);
    QMap<QString, CEComponente> matchingComponents(const KVStringList& conditions) const;
    void placeSymbols(TVNode item, const QMap<QString, CEComponente>& components,
                      ItemImportResult& result);
    void placeWithPageFill(TVNode item, const CEComponente& component);
    TVNode addSymbol(TVNode item, const CEComponente& component);
    void addMarkerAfterLastSymbol(TVNode item, TVNodeKind kind);
    void addMarkerAfter(TVNode item, TVNode reference, TVNodeKind kind);
    void raiseLastItemNumber(const KVString& value);
    void setBusy(bool busy);

    CTVNodesUtil& m_tree;
    ImportDialogState& m_state;
    std::function<void(bool)> m_busyIndicator;
    bool m_busy = false;

    // The page-fill simulation: the horizontal position carried from item to item, and the
    // numbers it works with, read from the header texts once per import.
    double m_pos = 0.0;
    int m_startX = 0;
    int m_pageSize = 0;
    int m_spaceWidth = 0;
    // The node most recently inserted as a symbol, in whichever item.
    TVNode m_lastSymbol;
};
