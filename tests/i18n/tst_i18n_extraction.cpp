// scripts/update-translations.sh run into a scratch folder: lupdate must find the same texts as
// the scan of the sources, and the catalogues in the tree, the module's and kvhost's, must need no
// update (a new text in the code makes this fail until it is translated).
#include "SourceTextScanner.h"
#include "TranslationCatalogue.h"
#include "TranslationPaths.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

class TestI18nExtraction final : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_output;

private slots:
    void initTestCase()
    {
        QVERIFY(m_output.isValid());
        QProcess script;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString lupdate =
            QLibraryInfo::path(QLibraryInfo::BinariesPath) + QStringLiteral("/lupdate");
        if (QFileInfo::exists(lupdate))
            environment.insert(QStringLiteral("LUPDATE"), lupdate);
        script.setProcessEnvironment(environment);
        script.start(QStringLiteral("sh"),
                     {QStringLiteral(KV_SOURCE_DIR "/scripts/update-translations.sh"),
                      QStringLiteral("--output"), m_output.path()});
        QVERIFY(script.waitForFinished(60000));
        QVERIFY2(script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0,
                 script.readAllStandardError().constData());
    }

    void extractedTextsMatchTheScan_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("language");
        for (const QString& language : TranslationPaths::languages()) {
            QTest::newRow(qPrintable(QStringLiteral("KVInsertAuto ") + language))
                << QStringLiteral("KVInsertAuto") << language;
            QTest::newRow(qPrintable(QStringLiteral("KVOfficeSystem ") + language))
                << QStringLiteral("KVOfficeSystem") << language;
        }
    }
    void extractedTextsMatchTheScan()
    {
        QFETCH(QString, context);
        QFETCH(QString, language);
        const SourceScan scan =
            scanSourceTexts(TranslationPaths::sourceFolder(), TranslationPaths::wrapperFile());
        QSet<QString> scanned;
        for (const SourceText& text : scan.texts) {
            if (text.context == context)
                scanned.insert(text.source);
        }
        QVERIFY(!scanned.isEmpty());

        const auto extracted = TranslationCatalogue::read(
            TranslationPaths::cataloguePath(m_output.path(), context, language));
        QVERIFY2(extracted.error.isEmpty(), qPrintable(extracted.error));
        QSet<QString> live;
        for (const CatalogueMessage& message : extracted.messages) {
            QCOMPARE(message.context, context);
            if (message.type != QLatin1String("vanished") &&
                message.type != QLatin1String("obsolete"))
                live.insert(message.source);
        }
        const QSet<QString> onlyScanned = scanned - live;
        const QSet<QString> onlyExtracted = live - scanned;
        QVERIFY2(onlyScanned.isEmpty(), qPrintable(QStringList(onlyScanned.values()).join(u'|')));
        QVERIFY2(onlyExtracted.isEmpty(),
                 qPrintable(QStringList(onlyExtracted.values()).join(u'|')));
    }

    void treeCataloguesAreUpToDate_data() { extractedTextsMatchTheScan_data(); }
    void treeCataloguesAreUpToDate()
    {
        QFETCH(QString, context);
        QFETCH(QString, language);
        compareWithTree(TranslationPaths::cataloguePath(m_output.path(), context, language),
                        TranslationPaths::cataloguePath(TranslationPaths::catalogueFolder(),
                                                        context, language));
    }

    void hostCataloguesAreUpToDate_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString& language : TranslationPaths::languages())
            QTest::newRow(qPrintable(language)) << language;
    }
    void hostCataloguesAreUpToDate()
    {
        QFETCH(QString, language);
        const QString extracted = TranslationPaths::hostCataloguePath(m_output.path(), language);
        // lupdate found the window's texts, not an empty folder.
        const auto file = TranslationCatalogue::read(extracted);
        QVERIFY2(file.error.isEmpty(), qPrintable(file.error));
        QVERIFY2(file.find(QStringLiteral("KvHost::MainWindow"), QStringLiteral("&File")),
                 qPrintable(extracted));
        QVERIFY(file.messages.size() > 60);
        compareWithTree(extracted, TranslationPaths::hostCataloguePath(
                                       TranslationPaths::hostCatalogueFolder(), language));
    }

private:
    // Every message lupdate wrote is in the tree's file with the same state and translation, and
    // the tree's file holds no other.
    static void compareWithTree(const QString& extractedPath, const QString& treePath)
    {
        const auto extracted = TranslationCatalogue::read(extractedPath);
        QVERIFY2(extracted.error.isEmpty(), qPrintable(extracted.error));
        const auto tree = TranslationCatalogue::read(treePath);
        QVERIFY2(tree.error.isEmpty(), qPrintable(tree.error));
        for (const CatalogueMessage& message : extracted.messages) {
            const QString where = message.context + u' ' + message.source;
            QVERIFY2(message.type != QLatin1String("unfinished"),
                     qPrintable(QStringLiteral("untranslated: ") + where));
            const CatalogueMessage* kept = tree.find(message.context, message.source);
            QVERIFY2(kept, qPrintable(QStringLiteral("not in the tree's catalogue: ") + where));
            QCOMPARE(kept->type, message.type);
            QCOMPARE(kept->translation, message.translation);
        }
        QCOMPARE(tree.messages.size(), extracted.messages.size());
    }
};

QTEST_GUILESS_MAIN(TestI18nExtraction)
#include "tst_i18n_extraction.moc"
