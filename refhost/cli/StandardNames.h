#pragma once

#include "DatabaseConnection.h"

#include <QString>
#include <QStringList>

// The standards a database holds: the values of KV_KEY_NOR in BDKV, which the host's queries
// compare with the standard in use.
namespace StandardNames {

// The standards named in BDKV, trimmed, without duplicates, sorted; empty when BDKV has no rows
// or cannot be read.
QStringList list(const RefHost::DatabaseConnection& connection);

// Empty when BDKV has rows of `standard` (compared as the host's queries compare it); otherwise
// the problem, naming the database and the standards it holds.
QString checkKnown(const RefHost::DatabaseConnection& connection, const QString& standard);

} // namespace StandardNames
