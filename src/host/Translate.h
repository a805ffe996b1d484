#pragma once

#include <QCoreApplication>
#include <QString>

// Every user-visible text of the module is an English source text translated when it is shown.
inline QString kvTr(const char* sourceText)
{
    return QCoreApplication::translate("KVInsertAuto", sourceText);
}

// The file-filter word "Worksheet Files" belongs to the office-system context.
inline QString kvTrOffice(const char* sourceText)
{
    return QCoreApplication::translate("KVOfficeSystem", sourceText);
}
