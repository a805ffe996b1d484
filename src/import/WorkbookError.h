#pragma once

#include <QString>

// Why a workbook could not be read: the file and the problem. An error with an empty problem
// means that nothing went wrong.
struct WorkbookError
{
    QString filePath;
    QString problem;

    bool isError() const { return !problem.isEmpty(); }
    explicit operator bool() const { return isError(); }

    // One sentence for the user, naming the file and the problem.
    QString message() const;
};
