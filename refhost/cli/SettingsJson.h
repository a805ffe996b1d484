#pragma once

#include "settings/SettingsWriter.h"

#include <QByteArray>
#include <QString>

#include <optional>

// The JSON document that "settings write" reads from standard input, turned into what the
// settings dialog holds when the user saves. The format is described in docs/settings-json.md.
struct SettingsJsonResult
{
    // Present when the document was read; otherwise `problem` names the first member that is
    // wrong (as a path such as "$.main.fields[2].show") or says where the JSON is malformed.
    std::optional<SettingsDialogContents> contents;
    QString problem;
};

SettingsJsonResult settingsContentsFromJson(const QByteArray& json);
