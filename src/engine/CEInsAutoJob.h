#pragma once

#include "host/KVString.h"

#include <QList>

// The one record that crosses from the main dialog to the insertion engine. Numbers travel as
// text and are converted by the engine.

// One field line of the settings: which item field feeds which attribute tag or drawing
// variable (a target holding "@" names a drawing variable; a blank target is ignored).
struct CEInsAutoFieldMap
{
    KVString fieldName;
    KVString target;
    friend bool operator==(const CEInsAutoFieldMap&, const CEInsAutoFieldMap&) = default;
};

struct CEInsAutoPair
{
    KVString name;
    KVString value;
    friend bool operator==(const CEInsAutoPair&, const CEInsAutoPair&) = default;
};

// One child of an item: kind "0" symbol (with the component key), "1" page break,
// "2" horizontal space, "4" vertical space; an unknown child has an empty kind.
struct CEInsAutoEntry
{
    KVString kind;
    KVString key;
    friend bool operator==(const CEInsAutoEntry&, const CEInsAutoEntry&) = default;
};

struct CEInsAutoItem
{
    KVString name;
    QList<CEInsAutoPair> values;
    QList<CEInsAutoEntry> entries;
    friend bool operator==(const CEInsAutoItem&, const CEInsAutoItem&) = default;
};

// A component (by key) or block (by name) placed once on every page that receives a symbol.
struct CEInsAutoFixedItem
{
    KVString name;
    KVString position;
    KVString angle;
    friend bool operator==(const CEInsAutoFixedItem&, const CEInsAutoFixedItem&) = default;
};

struct CEInsAutoJob
{
    KVString gapBeforeVar;
    KVString gapAfterVar;
    KVString startPoint;
    KVString spaceWidth;
    KVString pageMode;
    QList<CEInsAutoFieldMap> fieldMap;
    QList<CEInsAutoItem> items;
    QList<CEInsAutoFixedItem> pageComponents;
    QList<CEInsAutoFixedItem> pageBlocks;
    friend bool operator==(const CEInsAutoJob&, const CEInsAutoJob&) = default;
};
