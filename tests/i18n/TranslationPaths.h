#pragma once

#include <QString>
#include <QStringList>

// Where the tests find the module's and the desktop host's sources and catalogues.
namespace TranslationPaths {

inline QString sourceFolder()
{
    return QStringLiteral(KV_SOURCE_DIR "/src");
}

inline QString catalogueFolder()
{
    return QStringLiteral(KV_SOURCE_DIR "/src/resources/translations");
}

// The wrappers' own definitions, which hold no text.
inline QString wrapperFile()
{
    return QStringLiteral("host/Translate.h");
}

inline QStringList languages()
{
    return {QStringLiteral("pt_BR"), QStringLiteral("es")};
}

// The catalogue file of a context: each context has its own.
inline QString catalogueBaseName(const QString& context)
{
    return context == QLatin1String("KVOfficeSystem") ? QStringLiteral("kvofficesystem")
                                                      : QStringLiteral("kvinsertauto");
}

inline QString cataloguePath(const QString& folder, const QString& context, const QString& language)
{
    return folder + u'/' + catalogueBaseName(context) + u'_' + language + QStringLiteral(".ts");
}

// kvhost's own catalogues, one per language, holding all of its contexts.
inline QString hostCatalogueFolder()
{
    return QStringLiteral(KV_SOURCE_DIR "/refhost/app/translations");
}

inline QString hostCataloguePath(const QString& folder, const QString& language)
{
    return folder + QStringLiteral("/kvhost_") + language + QStringLiteral(".ts");
}

} // namespace TranslationPaths
