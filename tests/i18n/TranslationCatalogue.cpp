#include "TranslationCatalogue.h"

#include <QFile>
#include <QXmlStreamReader>

TranslationCatalogue TranslationCatalogue::read(const QString& path)
{
    TranslationCatalogue catalogue;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        catalogue.error = path + QStringLiteral(": ") + file.errorString();
        return catalogue;
    }
    QXmlStreamReader xml(&file);
    QString context;
    CatalogueMessage message;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("TS")) {
            catalogue.language = xml.attributes().value(QLatin1String("language")).toString();
        } else if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("message")) {
            message = CatalogueMessage{context, {}, {}, {}};
        } else if (name == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (name == QLatin1String("translation")) {
            message.type = xml.attributes().value(QLatin1String("type")).toString();
            message.translation = xml.readElementText();
            catalogue.messages.append(message);
        }
    }
    if (xml.hasError())
        catalogue.error =
            QStringLiteral("%1:%2: %3").arg(path).arg(xml.lineNumber()).arg(xml.errorString());
    return catalogue;
}

const CatalogueMessage* TranslationCatalogue::find(const QString& context,
                                                   const QString& source) const
{
    for (const CatalogueMessage& message : messages) {
        if (message.context == context && message.source == source)
            return &message;
    }
    return nullptr;
}
