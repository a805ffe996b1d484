#pragma once

#include <QList>
#include <QString>

// A translatable text found in the module's sources.
struct SourceText
{
    QString context; // "KVInsertAuto" or "KVOfficeSystem"
    QString source;
    QString file; // relative to the scanned folder
    int line = 0;
};

// A kvTr/kvTrOffice call whose argument is not a string literal: its texts cannot be found here.
struct DynamicCall
{
    QString file;
    int line = 0;
};

struct SourceScan
{
    QList<SourceText> texts;
    QList<DynamicCall> dynamicCalls;
};

// Scans the C++ sources under `folder` the way the compiler sees them (comments skipped, adjacent
// literals joined, escapes decoded) for kvTr("..."), kvTrOffice("...") and
// QT_TRANSLATE_NOOP("context", "..."). `skipFile` (relative path) is left out: the wrappers'
// own definitions.
SourceScan scanSourceTexts(const QString& folder, const QString& skipFile);
