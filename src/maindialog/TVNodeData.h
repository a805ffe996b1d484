#pragma once

#include "TVNodeKind.h"

#include "host/CEComponente.h"
#include "host/KVString.h"
#include "settings/CELstAtributos.h"

#include <QStringList>

#include <memory>

// The record that every node of the item tree carries for its whole life. It owns the symbol
// of a Symbol node and the attribute list (texts FIELD=VALUE) of an Item node.
struct TVNodeData
{
    KVString displayText;
    KVString name;
    KVString markerText;
    std::unique_ptr<CEComponente> symbol;
    std::unique_ptr<CELstAtributos> attributes;
    TVNodeKind kind = TVNodeKind::None;
    qint32 index = -1;
};

// The only two places that know how an attribute list holds its texts.
std::unique_ptr<CELstAtributos> makeAttributeList(const QStringList& texts);
QStringList attributeTexts(const CELstAtributos* attributes);
