#pragma once

#include "host/KVString.h"

#include <QList>
#include <QPair>

#include <optional>

// (name, value) pairs in order: the conditions of a select, a component record, the
// attribute pairs handed to the drawing.
using KVNamedValues = QList<QPair<KVString, KVString>>;

// The custom properties of one component: (tag, description of the VALUE column) pairs and,
// position by position, their values.
struct CustomProperties
{
    KVNamedValues properties;
    KVStringList values;
};

// Turns the key of a symbol into a row of the standard's component table, publishes it to
// the drawing variables and checks its block file. Every database access goes through the
// host's query service; messages the user must act on are shown here, once per symbol.
class ComponentResolver
{
public:
    // The SQL text of a select: conditions compare quoted texts, apostrophes doubled.
    static QString selectSql(const KVString& table, const KVString& columns,
                             const KVNamedValues& conditions);
    // Runs a select. The first row holds the column names, every further row one record as
    // text. A failed query gives an empty list.
    static QList<KVStringList> selectRows(const KVString& table, const KVString& columns,
                                          const KVNamedValues& conditions);

    static CustomProperties readCustomProperties(const KVString& key);

    // Publishes the key and standard, finds the component's row in "BDKV" (the first one when
    // there are several) and publishes the row, its custom properties and its description.
    // Nothing (after the critical message) when the standard has no such component.
    static std::optional<KVNamedValues> lookupComponent(const KVString& key);

    // The value of `name` in a record (exact comparison), empty when absent.
    static KVString valueOf(const KVNamedValues& record, const KVString& name);

    // True when the block file of `blockName` exists; shows the critical message otherwise.
    static bool checkBlockFile(const KVString& blockName);

    // networkDir + "DADOS\" + standard + "\BLOCOS\" + blockName + ".dwg", as the standard's
    // data folders are laid out.
    static KVString blockFilePath(const KVString& networkDir, const KVString& standard,
                                  const KVString& blockName);
};
