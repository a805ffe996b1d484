#include "TVNodeData.h"

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
