// installModuleTranslations(): the compiled catalogues are found, both translators are installed,
// and a second call replaces the first.
#include "TranslationCatalogue.h"
#include "TranslationPaths.h"

#include "resources/ModuleTranslations.h"

#include <QtTest>

namespace {

QString moduleText(const char* source)
{
    return QCoreApplication::translate("KVInsertAuto", source);
}

QString officeText(const char* source)
{
    return QCoreApplication::translate("KVOfficeSystem", source);
}

} // namespace

class TestI18nLoader final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { installModuleTranslations(*QCoreApplication::instance(), QString()); }

    void portugueseIsInstalled()
    {
        QVERIFY(installModuleTranslations(*QCoreApplication::instance(), QStringLiteral("pt_BR")));
        QCOMPARE(moduleText("Automatic insertion completed"),
                 QStringLiteral("Inserção automática concluída"));
        QCOMPARE(officeText("Worksheet Files"), QStringLiteral("Arquivos de planilha"));
        QCOMPARE(moduleText("The file %1.dwg was not found.").arg(QStringLiteral("C:/B/X.dwg")),
                 QStringLiteral("O arquivo C:/B/X.dwg.dwg não foi encontrado."));
    }

    void spanishIsInstalled_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("es") << QStringLiteral("es");
        QTest::newRow("es_ES") << QStringLiteral("es_ES");
        QTest::newRow("es-MX") << QStringLiteral("es-MX");
    }
    void spanishIsInstalled()
    {
        QFETCH(QString, language);
        QVERIFY(installModuleTranslations(*QCoreApplication::instance(), language));
        QCOMPARE(moduleText("Automatic insertion completed"),
                 QStringLiteral("Inserción automática finalizada"));
        QCOMPARE(officeText("Worksheet Files"), QStringLiteral("Archivos de hoja de cálculo"));
    }

    void otherPortugueseFallsBackToBrazilian_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("pt") << QStringLiteral("pt");
        QTest::newRow("pt_PT") << QStringLiteral("pt_PT");
    }
    void otherPortugueseFallsBackToBrazilian()
    {
        QFETCH(QString, language);
        QVERIFY(installModuleTranslations(*QCoreApplication::instance(), language));
        QCOMPARE(moduleText("Page"), QStringLiteral("Página"));
        QCOMPARE(moduleText("Save"), QStringLiteral("Salvar"));
    }

    void untranslatedLanguageKeepsEnglish_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("en") << QStringLiteral("en");
        QTest::newRow("empty") << QString();
        QTest::newRow("de_DE") << QStringLiteral("de_DE");
    }
    void untranslatedLanguageKeepsEnglish()
    {
        QFETCH(QString, language);
        // Installed first, so that the call must also take the earlier translators away.
        QVERIFY(installModuleTranslations(*QCoreApplication::instance(), QStringLiteral("es")));
        QVERIFY(!installModuleTranslations(*QCoreApplication::instance(), language));
        QCOMPARE(moduleText("Automatic insertion completed"),
                 QStringLiteral("Automatic insertion completed"));
        QCOMPARE(officeText("Worksheet Files"), QStringLiteral("Worksheet Files"));
    }

    void secondCallReplacesTheFirst()
    {
        QCoreApplication& app = *QCoreApplication::instance();
        QVERIFY(installModuleTranslations(app, QStringLiteral("pt_BR")));
        QVERIFY(installModuleTranslations(app, QStringLiteral("es")));
        QCOMPARE(moduleText("Save"), QStringLiteral("Guardar"));
        QCOMPARE(app.findChildren<QTranslator*>().size(), 2);
    }

    void languagesAreListed()
    {
        QCOMPARE(moduleTranslationLanguages(), QStringList({"es", "pt_BR"}));
    }

    // The compiled files say what the catalogues say: a .qm built from an older .ts would not.
    void compiledMatchesCatalogue_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString& language : TranslationPaths::languages())
            QTest::newRow(qPrintable(language)) << language;
    }
    void compiledMatchesCatalogue()
    {
        QFETCH(QString, language);
        QVERIFY(installModuleTranslations(*QCoreApplication::instance(), language));
        int checked = 0;
        for (const QString& context :
             {QStringLiteral("KVInsertAuto"), QStringLiteral("KVOfficeSystem")}) {
            const auto file = TranslationCatalogue::read(TranslationPaths::cataloguePath(
                TranslationPaths::catalogueFolder(), context, language));
            QVERIFY2(file.error.isEmpty(), qPrintable(file.error));
            for (const CatalogueMessage& message : file.messages) {
                if (!message.type.isEmpty())
                    continue;
                QCOMPARE(QCoreApplication::translate(qPrintable(context),
                                                     message.source.toUtf8().constData()),
                         message.translation);
                ++checked;
            }
        }
        QVERIFY(checked > 90);
    }

    // The desktop host may also load the files from the build's translations folder.
    void buildFolderHoldsTheFiles()
    {
        for (const QString& language : TranslationPaths::languages()) {
            for (const char* base : {"kvinsertauto", "kvofficesystem"}) {
                const QString path = QStringLiteral(KV_BINARY_DIR "/translations/%1_%2.qm")
                                         .arg(QLatin1String(base), language);
                QVERIFY2(QFileInfo(path).size() > 0, qPrintable(path));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestI18nLoader)
#include "tst_i18n_loader.moc"
