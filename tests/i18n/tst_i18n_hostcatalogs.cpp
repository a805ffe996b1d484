// kvhost's catalogues (refhost/app/translations): every text has a finished translation in every
// language, and the translations keep what the window relies on (placeholders, file patterns,
// command names, accelerators, line ends).
#include "TranslationCatalogue.h"
#include "TranslationForm.h"
#include "TranslationPaths.h"

#include <QRegularExpression>
#include <QtTest>

using namespace TranslationForm;

namespace {

// "&Automatic insertion... (VRINSAUTO)": the command a menu entry runs, which the window reads
// back from the entry's text to enable it; empty for other texts.
QString trailingCommand(const QString& text)
{
    static const QRegularExpression command(QStringLiteral("\\(([A-Z]+)\\)$"));
    const auto match = command.match(text);
    return match.hasMatch() ? match.captured(1) : QString();
}

} // namespace

class TestI18nHostCatalogs final : public QObject
{
    Q_OBJECT

private:
    QHash<QString, TranslationCatalogue> m_catalogues; // by language

private slots:
    void initTestCase()
    {
        for (const QString& language : TranslationPaths::languages()) {
            const QString path = TranslationPaths::hostCataloguePath(
                TranslationPaths::hostCatalogueFolder(), language);
            TranslationCatalogue read = TranslationCatalogue::read(path);
            QVERIFY2(read.error.isEmpty(), qPrintable(read.error));
            // The window, its dialog and messages hold about eighty texts.
            QVERIFY2(read.messages.size() > 60, qPrintable(path));
            m_catalogues.insert(language, read);
        }
    }

    void cataloguesAreComplete_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString& language : TranslationPaths::languages())
            QTest::newRow(qPrintable(language)) << language;
    }
    void cataloguesAreComplete()
    {
        QFETCH(QString, language);
        const TranslationCatalogue& file = m_catalogues[language];
        QCOMPARE(file.language, language);
        for (const CatalogueMessage& message : file.messages) {
            const QString where = message.context + u' ' + message.source;
            QVERIFY2(message.type != QLatin1String("unfinished"), qPrintable(where));
            QVERIFY2(!message.translation.trimmed().isEmpty(), qPrintable(where));
        }
    }

    // The window's main contexts are in the files: a run of lupdate that missed a class would
    // leave them out.
    void contextsAreThere_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("source");
        for (const QString& language : TranslationPaths::languages()) {
            QTest::newRow(qPrintable(language + QStringLiteral(" menu")))
                << language << QStringLiteral("KvHost::MainWindow") << QStringLiteral("&File");
            QTest::newRow(qPrintable(language + QStringLiteral(" dialog")))
                << language << QStringLiteral("KvHost::HostSettingsDialog")
                << QStringLiteral("Host settings");
            QTest::newRow(qPrintable(language + QStringLiteral(" command line")))
                << language << QStringLiteral("KvHost::CommandLineEdit")
                << QStringLiteral(
                       "Type a command (VRINSAUTO, OPEN, SAVE, UNDO, ...) and press Enter");
            QTest::newRow(qPrintable(language + QStringLiteral(" progress")))
                << language << QStringLiteral("kvhost") << QStringLiteral("Item %1 of %2");
        }
    }
    void contextsAreThere()
    {
        QFETCH(QString, language);
        QFETCH(QString, context);
        QFETCH(QString, source);
        const CatalogueMessage* message = m_catalogues[language].find(context, source);
        QVERIFY(message);
        QVERIFY(message->translation != source);
    }

    void translationKeepsForm_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("translation");
        for (const QString& language : TranslationPaths::languages()) {
            for (const CatalogueMessage& message : m_catalogues[language].messages) {
                QTest::newRow(qPrintable(language + u' ' + message.source.simplified()))
                    << message.source << message.translation;
            }
        }
    }
    void translationKeepsForm()
    {
        QFETCH(QString, source);
        QFETCH(QString, translation);
        QCOMPARE(placeholders(translation), placeholders(source));
        QCOMPARE(filterPattern(translation), filterPattern(source));
        QCOMPARE(patternGroups(translation), patternGroups(source));
        QCOMPARE(translation.count(QStringLiteral(";;")), source.count(QStringLiteral(";;")));
        QCOMPARE(trailingCommand(translation), trailingCommand(source));
        QCOMPARE(translation.count(u'&'), source.count(u'&'));
        QCOMPARE(translation.count(u'"'), source.count(u'"'));
        QCOMPARE(leadingSpace(translation), leadingSpace(source));
        QCOMPARE(trailingSpace(translation), trailingSpace(source));
        QCOMPARE(translation.endsWith(u':'), source.endsWith(u':'));
        // Command names, their arguments and folder names are typed or looked for as they are.
        for (const QString& word : upperCaseWords(source))
            QVERIFY2(translation.contains(word), qPrintable(word));
    }

    // The checks above must be able to see a broken translation.
    void formChecksSeeDamage()
    {
        QCOMPARE(trailingCommand(QStringLiteral("&Automatic insertion... (VRINSAUTO)")),
                 QStringLiteral("VRINSAUTO"));
        QVERIFY(trailingCommand(QStringLiteral("Inserção &automática... (VRINSAUTO")).isEmpty());
        QCOMPARE(patternGroups(QStringLiteral("SQLite (*.db *.sqlite);;All files (*)")),
                 QStringList({QStringLiteral("(*.db *.sqlite)"), QStringLiteral("(*)")}));
        QCOMPARE(
            upperCaseWords(QStringLiteral("ZOOM takes IN, OUT or a factor")),
            QStringList({QStringLiteral("IN"), QStringLiteral("OUT"), QStringLiteral("ZOOM")}));
        QVERIFY(upperCaseWords(QStringLiteral("Page %1 of %2")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestI18nHostCatalogs)
#include "tst_i18n_hostcatalogs.moc"
