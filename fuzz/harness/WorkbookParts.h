#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// A workbook package written as text, so that a fuzzer can change the XML of its parts without
// breaking the zip around them. Each part starts with a line "== NAME" (the part's name in the
// package, such as "xl/worksheets/sheet1.xml"); the part's bytes follow up to the next such
// line or the end. Text before the first part line is ignored.
namespace WorkbookParts {

struct Part
{
    QByteArray name;
    QByteArray bytes;
};

QList<Part> parse(const QByteArray& text);

// Writes the parts as a zip archive at `path` (stored, not compressed; a repeated name keeps
// its last part). An error text when libzip refuses; a name it refuses is left out.
QString writePackage(const QList<Part>& parts, const QString& path);

} // namespace WorkbookParts
