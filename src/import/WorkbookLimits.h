#pragma once

#include <QtGlobal>

// Bounds that keep a damaged or hostile workbook from using unbounded time or memory. A workbook
// that goes past any of them is refused with an error naming the limit; nothing is truncated.
// The defaults are far above what any sheet of the insertion template needs.
struct WorkbookLimits
{
    // Bytes decompressed from one part of the package (the sheet, the shared strings, ...).
    qint64 maxPartBytes = qint64(256) * 1024 * 1024;
    // Bytes decompressed from the whole package over the life of one reader, re-reads of a
    // sheet included.
    qint64 maxTotalBytes = qint64(1024) * 1024 * 1024;
    // Bytes of one part between one "<" and the next, that is one text, tag or comment: the
    // XML parser holds such a run whole, so this bounds its memory. A cell text at the length
    // limit takes at most 10 bytes a character, even with every character escaped.
    qint64 maxMarkupRunBytes = qint64(16) * 1024 * 1024;
    // Elements open inside each other in one part.
    int maxXmlDepth = 256;
    // Cells met in one pass over a sheet.
    qint64 maxCells = qint64(16) * 1024 * 1024;
    // The largest row number and column number a spreadsheet program can address.
    int maxRow = 1048576;
    int maxColumn = 16384;
    // Characters of one cell's text (shared, inline or cached formula text).
    qsizetype maxStringLength = 1024 * 1024;
    // Characters held for one row (all its cells together).
    qsizetype maxRowCharacters = qsizetype(16) * 1024 * 1024;
    // Entries and characters of the shared-string table.
    qsizetype maxSharedStrings = qsizetype(4) * 1024 * 1024;
    qsizetype maxSharedStringCharacters = qsizetype(64) * 1024 * 1024;
    // Entries of the small lists: sheets, relationships, content types, number formats, styles.
    qsizetype maxListEntries = 100000;
};
