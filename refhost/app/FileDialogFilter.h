#pragma once

#include <QString>
#include <QStringList>

namespace KvHost {

// The host's file-dialog filter notation turned into Qt name filters. The notation is a list of
// "&"-delimited label and pattern pairs ending with "&&"; a label may carry a classic
// "Label|pattern||" tail, which is dropped ("Settings file (*.cfa)|*.cfa||&*.cfa&All Files
// (*.*)|*.*||&*.*&&" gives "Settings file (*.cfa)" and "All Files (*.*)").
class FileDialogFilter
{
public:
    static QStringList toNameFilters(const QString& hostFilter);
    // The patterns of one Qt name filter ("Label (*.a *.b)" gives *.a and *.b).
    static QStringList patternsOf(const QString& nameFilter);
};

} // namespace KvHost
