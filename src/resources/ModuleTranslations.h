#pragma once

#include <QString>
#include <QStringList>

class QCoreApplication;

// The module's translations: "KVInsertAuto" (kvinsertauto_<language>.qm) and "KVOfficeSystem"
// (kvofficesystem_<language>.qm). The .qm files are compiled into the kv_translations library
// and also written to <build>/translations, so that a deployed copy can replace them.

// Installs the two translators of `language` ("pt_BR", "pt", "es", "es_ES", ...) into `app`,
// after removing the module translators that an earlier call installed. The files are looked up
// in the application's "translations" folder first and then in the compiled-in copy. Any
// Portuguese language falls back to pt_BR. Answers false, with no module translator installed,
// when the language has no translation (English among them: the source texts are English).
bool installModuleTranslations(QCoreApplication& app, const QString& language);

// The languages that have translations, e.g. {"es", "pt_BR"}.
QStringList moduleTranslationLanguages();

// The folders searched for the .qm files, in order.
QStringList moduleTranslationFolders();
