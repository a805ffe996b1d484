#pragma once

#include <QList>
#include <QString>

// One message of a Qt Linguist .ts file.
struct CatalogueMessage
{
    QString context;
    QString source;
    QString translation;
    QString type; // "" (finished), "unfinished", "vanished" or "obsolete"
};

// A .ts file as read: its language attribute and its messages, in file order.
struct TranslationCatalogue
{
    QString language;
    QList<CatalogueMessage> messages;
    QString error; // empty when the file was read completely

    static TranslationCatalogue read(const QString& path);

    // The message of `context` with `source`, or nullptr.
    const CatalogueMessage* find(const QString& context, const QString& source) const;
};
