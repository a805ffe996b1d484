#include "TVNodeData.h"

#include "host/Translate.h"

KVString defaultMarkerText(TVNodeKind kind)
{
    switch (kind) {
    case TVNodeKind::Page:
        return kvTr("Page");
    case TVNodeKind::HorizontalSpace:
        return kvTr("Horizontal space");
    default:
        return kvTr("Vertical space");
    }
}

std::unique_ptr<CELstAtributos> makeAttributeList(const QStringList& texts)
{
    auto list = std::make_unique<CELstAtributos>();
    for (const QString& text : texts)
        list->append(text);
    return list;
}

QStringList attributeTexts(const CELstAtributos* attributes)
{
    QStringList texts;
    if (attributes) {
        for (const KVString& text : attributes->texts())
            texts.append(text);
    }
    return texts;
}
