// The catalogues in src/resources/translations against the texts of the module's sources: every
// text has a finished translation in every language, and the translations keep what the code
// relies on (placeholders, file-filter syntax, accelerators, surrounding line breaks).
#include "SourceTextScanner.h"
#include "TranslationCatalogue.h"
#include "TranslationForm.h"
#include "TranslationPaths.h"

#include "settings/SettingsModes.h"

#include <QCollator>
#include <QtTest>

#include <algorithm>

using namespace TranslationForm;

namespace {

const QStringList kContexts = {QStringLiteral("KVInsertAuto"), QStringLiteral("KVOfficeSystem")};

// Call sites that pass texts held elsewhere: the texts are checked through the functions that
// hold them (see modeTextsAreTranslated).
const QStringList kKnownDynamicCallFiles = {QStringLiteral("settingsui/CIConfigAuto.cpp")};

} // namespace

class TestI18nCatalogs final : public QObject
{
    Q_OBJECT

private:
    SourceScan m_scan;
    QHash<QString, TranslationCatalogue> m_catalogues; // by "context/language"

    const TranslationCatalogue& catalogue(const QString& context, const QString& language) const
    {
        return *m_catalogues.find(context + u'/' + language);
    }

    void addTextRows(const QList<SourceText>& texts)
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("source");
        for (const QString& language : TranslationPaths::languages()) {
            for (const SourceText& text : texts) {
                const QString row =
                    QStringLiteral("%1 %2:%3").arg(language, text.file).arg(text.line);
                QTest::newRow(qPrintable(row)) << language << text.context << text.source;
            }
        }
    }

private slots:
    void initTestCase()
    {
        m_scan = scanSourceTexts(TranslationPaths::sourceFolder(), TranslationPaths::wrapperFile());
        // The sources hold well over a hundred calls; far fewer means the scan went wrong.
        QVERIFY2(m_scan.texts.size() > 100, qPrintable(QString::number(m_scan.texts.size())));
        for (const QString& context : kContexts) {
            for (const QString& language : TranslationPaths::languages()) {
                const QString path = TranslationPaths::cataloguePath(
                    TranslationPaths::catalogueFolder(), context, language);
                TranslationCatalogue read = TranslationCatalogue::read(path);
                QVERIFY2(read.error.isEmpty(), qPrintable(read.error));
                QVERIFY2(!read.messages.isEmpty(), qPrintable(path));
                m_catalogues.insert(context + u'/' + language, read);
            }
        }
    }

    // The scanner itself: it must see the texts the way the compiler does.
    void scannerReadsLiteralsLikeTheCompiler()
    {
        const auto has = [this](const QString& context, const QString& source) {
            return std::any_of(
                m_scan.texts.cbegin(), m_scan.texts.cend(),
                [&](const SourceText& t) { return t.context == context && t.source == source; });
        };
        QVERIFY(
            has(QStringLiteral("KVInsertAuto"), QStringLiteral("Automatic insertion completed")));
        QVERIFY(has(QStringLiteral("KVOfficeSystem"), QStringLiteral("Worksheet Files")));
        // An escape and a text written as two adjacent literals.
        QVERIFY(has(QStringLiteral("KVInsertAuto"),
                    QStringLiteral("\nError: Associated component not found: key = %1")));
        QVERIFY(has(QStringLiteral("KVInsertAuto"),
                    QStringLiteral("part %1 holds a text longer than %2 characters, the limit for "
                                   "one cell")));
        // Marked with QT_TRANSLATE_NOOP where the list of entries is defined.
        QVERIFY(has(QStringLiteral("KVInsertAuto"), QStringLiteral("Automatic+space")));
    }

    void onlyKnownCallsPassComputedTexts()
    {
        for (const DynamicCall& call : m_scan.dynamicCalls) {
            QVERIFY2(
                kKnownDynamicCallFiles.contains(call.file),
                qPrintable(QStringLiteral("%1:%2 translates a computed text; mark its texts "
                                          "with QT_TRANSLATE_NOOP(\"KVInsertAuto\", ...) where "
                                          "they are written and check them in this test")
                               .arg(call.file)
                               .arg(call.line)));
        }
    }

    void sourceTextHasFinishedTranslation_data() { addTextRows(m_scan.texts); }
    void sourceTextHasFinishedTranslation()
    {
        QFETCH(QString, language);
        QFETCH(QString, context);
        QFETCH(QString, source);
        QVERIFY2(kContexts.contains(context), qPrintable(context));
        const CatalogueMessage* message = catalogue(context, language).find(context, source);
        QVERIFY2(message,
                 qPrintable(QStringLiteral("not in the %1 catalogue; run "
                                           "scripts/update-translations.sh and translate it")
                                .arg(language)));
        QVERIFY2(message->type.isEmpty(), qPrintable(message->type));
        QVERIFY(!message->translation.trimmed().isEmpty());
    }

    // The separator and pagination entries reach kvTr from a list, not from a literal at the call.
    void modeTextsAreTranslated()
    {
        const QStringList texts = separatorModeTexts() + paginationModeTexts();
        QCOMPARE(texts.size(), 7);
        for (const QString& language : TranslationPaths::languages()) {
            for (const QString& text : texts) {
                const CatalogueMessage* message =
                    catalogue(QStringLiteral("KVInsertAuto"), language)
                        .find(QStringLiteral("KVInsertAuto"), text);
                QVERIFY2(message && message->type.isEmpty() && !message->translation.isEmpty(),
                         qPrintable(language + u' ' + text));
            }
        }
    }

    // The pagination list is sorted and its value is the position in the sorted list, so the
    // translations must sort like the English texts or a settings file would change meaning
    // with the user's language.
    void paginationTranslationsSortLikeEnglish()
    {
        const QStringList english = paginationModeTexts();
        QVERIFY(QString::localeAwareCompare(english.at(0), english.at(1)) < 0);
        for (const QString& language : TranslationPaths::languages()) {
            const auto& file = catalogue(QStringLiteral("KVInsertAuto"), language);
            const QString first =
                file.find(QStringLiteral("KVInsertAuto"), english.at(0))->translation;
            const QString second =
                file.find(QStringLiteral("KVInsertAuto"), english.at(1))->translation;
            QVERIFY2(QString::compare(first, second, Qt::CaseInsensitive) < 0,
                     qPrintable(language));
            QVERIFY2(QCollator(QLocale(language)).compare(first, second) < 0, qPrintable(language));
        }
    }

    // The settings writer stores "S" when a choice equals the translation of "Yes" upper-cased.
    void yesAndNoStayDistinct()
    {
        for (const QString& language : TranslationPaths::languages()) {
            const auto& file = catalogue(QStringLiteral("KVInsertAuto"), language);
            const QString yes = file.find(QStringLiteral("KVInsertAuto"), QStringLiteral("Yes"))
                                    ->translation.toUpper();
            const QString no = file.find(QStringLiteral("KVInsertAuto"), QStringLiteral("No"))
                                   ->translation.toUpper();
            QVERIFY2(yes != no, qPrintable(language));
        }
    }

    void cataloguesAreComplete_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("language");
        for (const QString& context : kContexts)
            for (const QString& language : TranslationPaths::languages())
                QTest::newRow(qPrintable(context + u' ' + language)) << context << language;
    }
    void cataloguesAreComplete()
    {
        QFETCH(QString, context);
        QFETCH(QString, language);
        const TranslationCatalogue& file = catalogue(context, language);
        QCOMPARE(file.language, language);
        for (const CatalogueMessage& message : file.messages) {
            QCOMPARE(message.context, context); // one context per file
            QVERIFY2(message.type != QLatin1String("unfinished"), qPrintable(message.source));
            QVERIFY2(!message.translation.trimmed().isEmpty(), qPrintable(message.source));
        }
    }

    void translationKeepsForm_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("translation");
        for (const QString& context : kContexts) {
            for (const QString& language : TranslationPaths::languages()) {
                for (const CatalogueMessage& message : catalogue(context, language).messages) {
                    QTest::newRow(qPrintable(language + u' ' + message.source.simplified()))
                        << message.source << message.translation;
                }
            }
        }
    }
    void translationKeepsForm()
    {
        QFETCH(QString, source);
        QFETCH(QString, translation);
        QCOMPARE(placeholders(translation), placeholders(source));
        QCOMPARE(filterPattern(translation), filterPattern(source));
        QCOMPARE(translation.count(u'&'), source.count(u'&'));
        QCOMPARE(translation.count(u'"'), source.count(u'"'));
        QCOMPARE(leadingSpace(translation), leadingSpace(source));
        QCOMPARE(trailingSpace(translation), trailingSpace(source));
        // Labels keep their colon, so that they read as labels.
        QCOMPARE(translation.endsWith(u':'), source.endsWith(u':'));
    }

    // The checks above must be able to see a broken translation.
    void formChecksSeeDamage()
    {
        QVERIFY(placeholders(QStringLiteral("a %1 b %2")) != placeholders(QStringLiteral("a %1")));
        QCOMPARE(filterPattern(QStringLiteral("Settings file (*.cfa)|*.cfa||")),
                 QStringLiteral("(*.cfa)|*.cfa||"));
        QVERIFY(filterPattern(QStringLiteral("Arquivo (*.cfa)|*.cfa|")).isEmpty());
        QCOMPARE(leadingSpace(QStringLiteral("\nError")), QStringLiteral("\n"));
        QCOMPARE(trailingSpace(QStringLiteral("Settings: ")), QStringLiteral(" "));
    }
};

QTEST_GUILESS_MAIN(TestI18nCatalogs)
#include "tst_i18n_catalogs.moc"
