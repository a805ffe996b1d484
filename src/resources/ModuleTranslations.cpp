#include "ModuleTranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace {

// Object names that mark the translators this module installed, so a later call can remove them.
const char* const kModuleTranslatorName = "KVInsertAutoModuleTranslator";

const char* const kCatalogues[] = {"kvinsertauto", "kvofficesystem"};

void removeModuleTranslators(QCoreApplication& app)
{
    const auto translators = app.findChildren<QTranslator*>(QString(), Qt::FindDirectChildrenOnly);
    for (QTranslator* translator : translators) {
        if (translator->objectName() == QLatin1String(kModuleTranslatorName)) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
}

// The file suffixes to try for `language`, best first: "pt_BR" gives pt_BR; "es_ES" gives es_ES,
// then es. Portuguese of any country falls back to pt_BR, the only Portuguese translation.
QStringList candidateSuffixes(const QString& language)
{
    const QString name = QString(language).replace(u'-', u'_').trimmed();
    QStringList suffixes;
    if (name.isEmpty())
        return suffixes;
    suffixes.append(name);
    const QString base = name.section(u'_', 0, 0).toLower();
    if (base != name)
        suffixes.append(base);
    if (base == QLatin1String("pt"))
        suffixes.append(QStringLiteral("pt_BR"));
    suffixes.removeDuplicates();
    return suffixes;
}

std::unique_ptr<QTranslator> loadCatalogue(const char* catalogue, const QStringList& suffixes)
{
    for (const QString& folder : moduleTranslationFolders()) {
        for (const QString& suffix : suffixes) {
            const QString path =
                folder + u'/' + QLatin1String(catalogue) + u'_' + suffix + QStringLiteral(".qm");
            if (!QFileInfo::exists(path))
                continue;
            auto translator = std::make_unique<QTranslator>();
            if (translator->load(path))
                return translator;
        }
    }
    return nullptr;
}

} // namespace

QStringList moduleTranslationFolders()
{
    QStringList folders;
    if (QCoreApplication::instance())
        folders.append(QCoreApplication::applicationDirPath() + QStringLiteral("/translations"));
    folders.append(QStringLiteral(":/kvinsertauto/translations"));
    return folders;
}

QStringList moduleTranslationLanguages()
{
    QStringList languages;
    const QDir folder(QStringLiteral(":/kvinsertauto/translations"));
    const QString prefix = QStringLiteral("kvinsertauto_");
    for (const QString& file : folder.entryList({prefix + QStringLiteral("*.qm")}, QDir::Files))
        languages.append(QFileInfo(file).completeBaseName().mid(prefix.size()));
    languages.sort();
    return languages;
}

bool installModuleTranslations(QCoreApplication& app, const QString& language)
{
    removeModuleTranslators(app);
    const QStringList suffixes = candidateSuffixes(language);
    std::unique_ptr<QTranslator> loaded[std::size(kCatalogues)];
    for (std::size_t i = 0; i < std::size(kCatalogues); ++i) {
        loaded[i] = loadCatalogue(kCatalogues[i], suffixes);
        if (!loaded[i])
            return false;
    }
    for (auto& translator : loaded) {
        translator->setObjectName(QLatin1String(kModuleTranslatorName));
        translator->setParent(&app);
        QCoreApplication::installTranslator(translator.release());
    }
    return true;
}
