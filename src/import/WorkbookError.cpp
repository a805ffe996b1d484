#include "WorkbookError.h"

#include "host/Translate.h"

#include <QDir>

QString WorkbookError::message() const
{
    return kvTr("The spreadsheet \"%1\" cannot be read: %2")
        .arg(QDir::toNativeSeparators(filePath), problem);
}
