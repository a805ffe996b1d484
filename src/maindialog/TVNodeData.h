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

// The label a new page or space marker shows: "Page", "Horizontal space" or "Vertical space",
// translated; any kind that is not a page or a horizontal space is labelled a vertical space.
KVString defaultMarkerText(TVNodeKind kind);

// The only two places that know how an attribute list holds its texts.
std::unique_ptr<CELstAtributos> makeAttributeList(const QStringList& texts);
QStringList attributeTexts(const CELstAtributos* attributes);
