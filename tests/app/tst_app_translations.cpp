// kvhost in the languages it ships: started with the interface language pt_BR or es (the host
// settings, as the program reads them at start), its menus, toolbar, status bar, command line,
// settings dialog and messages show the catalogue's texts, and the menu entries still find
// the module's commands.
#include "AppTestSupport.h"

#include "AppStartup.h"
#include "DesktopHost.h"
#include "HostSettingsDialog.h"
#include "MainWindow.h"
#include "ModuleLoader.h"

#include "i18n/TranslationCatalogue.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QTranslator>

using namespace AppTest;

namespace {

QString hostCatalogue(const QString& language)
{
    return QStringLiteral(KV_SOURCE_DIR "/refhost/app/translations/kvhost_%1.ts").arg(language);
}

QStringList texts(const QList<QAction*>& actions)
{
    QStringList found;
    for (const QAction* action : actions) {
        if (!action->isSeparator())
            found.append(action->text());
    }
    return found;
}

// The accelerator letters of the entries, lower-cased; an entry without one gives nothing.
QStringList accelerators(const QList<QAction*>& actions)
{
    QStringList found;
    for (const QString& text : texts(actions)) {
        const qsizetype at = text.indexOf(u'&');
        if (at >= 0 && at + 1 < text.size())
            found.append(text.at(at + 1).toLower());
    }
    return found;
}

} // namespace

class TestAppTranslations : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ExampleSetup> m_example;

    // The example's settings with another interface language, in a file of its own.
    QString settingsFile(const QString& language, QTemporaryDir& dir)
    {
        KvHost::HostSettings settings = KvHost::HostSettings::load(m_example->settingsFile);
        settings.interfaceLanguage = language;
        const QString file = dir.filePath(QStringLiteral("host.ini"));
        QString error;
        if (!settings.save(file, &error))
            qWarning("%s", qPrintable(error));
        return file;
    }

private slots:
    void initTestCase()
    {
        m_example = std::make_unique<ExampleSetup>();
        QVERIFY2(m_example->error.isEmpty(), qPrintable(m_example->error));
    }

    void windowShowsTheLanguage_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QStringList>("menus");
        QTest::addColumn<QString>("insertion");
        QTest::addColumn<QString>("connection");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("unknown");
        QTest::addColumn<QString>("dialogTitle");
        QTest::newRow("pt_BR") << QStringLiteral("pt_BR")
                               << QStringList{"&Arquivo", "&Editar", "E&xibir", "&Inserção"}
                               << QStringLiteral("Inserção &automática... (VRINSAUTO)")
                               << QStringLiteral("Norma IEC | example.db")
                               << QStringLiteral("Comando:")
                               << QStringLiteral("Comando desconhecido \"NOSUCH\"")
                               << QStringLiteral("Configuração do programa");
        QTest::newRow("es") << QStringLiteral("es")
                            << QStringList{"&Archivo", "&Edición", "&Ver", "&Inserción"}
                            << QStringLiteral("Inserción &automática... (VRINSAUTO)")
                            << QStringLiteral("Norma IEC | example.db")
                            << QStringLiteral("Comando:")
                            << QStringLiteral("Comando desconocido \"NOSUCH\"")
                            << QStringLiteral("Configuración del programa");
        QTest::newRow("en") << QStringLiteral("en")
                            << QStringList{"&File", "&Edit", "&View", "&Insertion"}
                            << QStringLiteral("&Automatic insertion... (VRINSAUTO)")
                            << QStringLiteral("Standard IEC | example.db")
                            << QStringLiteral("Command:")
                            << QStringLiteral("Unknown command \"NOSUCH\"")
                            << QStringLiteral("Host settings");
    }
    // The same steps as main(): settings, translators, window, module.
    void windowShowsTheLanguage()
    {
        QFETCH(QString, language);
        QFETCH(QStringList, menus);
        QFETCH(QString, insertion);
        QFETCH(QString, connection);
        QFETCH(QString, prompt);
        QFETCH(QString, unknown);
        QFETCH(QString, dialogTitle);

        QTemporaryDir dir;
        KvHost::DesktopHost host(settingsFile(language, dir));
        QCOMPARE(host.settings().interfaceLanguage, language);
        KvHost::AppOptions options;
        options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
        std::vector<std::unique_ptr<QTranslator>> translators;
        const QStringList loaded =
            KvHost::installTranslations(options, host.settings().interfaceLanguage, translators);
        const bool hasCatalogue = language != QLatin1String("en");
        QCOMPARE(loaded.filter(QStringLiteral("kvhost_%1.qm").arg(language)).size(),
                 hasCatalogue ? 1 : 0);

        {
            KvHost::MainWindow window(host);
            // Declared after the window so that the module goes first, as in main().
            KvHost::ModuleLoader loader;
            QCOMPARE(KvHost::loadModule(options, host, loader), QString());
            window.refreshCommands();

            const QList<QAction*> bar = window.menuBar()->actions();
            QCOMPARE(texts(bar), menus);
            QStringList keys = accelerators(bar);
            QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
            for (const QAction* menu : bar) {
                keys = accelerators(menu->menu()->actions());
                QVERIFY2(QSet<QString>(keys.begin(), keys.end()).size() == keys.size(),
                         qPrintable(texts(menu->menu()->actions()).join(u'|')));
            }

            // The entry reads its command back from its text, so it is enabled in any language.
            const QList<QAction*> insertionMenu = bar.last()->menu()->actions();
            QCOMPARE(insertionMenu.first()->text(), insertion);
            for (const QAction* action : insertionMenu)
                QVERIFY2(action->isEnabled(), qPrintable(action->text()));

            const auto* toolBar = window.findChild<QToolBar*>(QStringLiteral("mainToolBar"));
            QVERIFY(toolBar);
            QStringList toolTexts;
            for (const QAction* action : toolBar->actions())
                toolTexts.append(action->iconText());
            QVERIFY2(toolTexts.contains(insertionMenu.first()->iconText()),
                     qPrintable(toolTexts.join(u'|')));

            QStringList status;
            for (const QLabel* label : window.statusBar()->findChildren<QLabel*>())
                status.append(label->text());
            QVERIFY2(status.contains(connection), qPrintable(status.join(u'|')));

            QStringList labels;
            for (const QLabel* label : window.findChildren<QLabel*>())
                labels.append(label->text());
            QVERIFY2(labels.contains(prompt), qPrintable(labels.join(u'|')));

            window.execute(QStringLiteral("nosuch"));
            const auto* output = window.findChild<QPlainTextEdit*>(QStringLiteral("output"));
            QVERIFY(output);
            QVERIFY2(output->toPlainText().contains(unknown), qPrintable(output->toPlainText()));

            KvHost::HostSettingsDialog dialog(host.settings(), &window);
            QCOMPARE(dialog.windowTitle(), dialogTitle);
        }
    }

    // What the build compiled is what the catalogues say, and kvhost finds it both in the
    // build's translations folder and built into the program.
    void compiledMatchesCatalogue_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("folder");
        for (const QString& language : {QStringLiteral("pt_BR"), QStringLiteral("es")}) {
            QTest::newRow(qPrintable(language + QStringLiteral(" build folder")))
                << language << QStringLiteral(KV_BINARY_DIR "/translations");
            QTest::newRow(qPrintable(language + QStringLiteral(" resources")))
                << language << QStringLiteral(":/kvhost/translations");
        }
    }
    void compiledMatchesCatalogue()
    {
        QFETCH(QString, language);
        QFETCH(QString, folder);
        QTranslator translator;
        QVERIFY(translator.load(QLocale(language), QStringLiteral("kvhost"), QStringLiteral("_"),
                                folder));
        const TranslationCatalogue catalogue = TranslationCatalogue::read(hostCatalogue(language));
        QVERIFY2(catalogue.error.isEmpty(), qPrintable(catalogue.error));
        int checked = 0;
        for (const CatalogueMessage& message : catalogue.messages) {
            if (!message.type.isEmpty())
                continue;
            QCOMPARE(translator.translate(qPrintable(message.context),
                                          message.source.toUtf8().constData()),
                     message.translation);
            ++checked;
        }
        QVERIFY(checked > 60);
    }

    // The program itself: its messages at start come in the language of its settings.
    void programSpeaksTheLanguage_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("message");
        QTest::newRow("pt_BR") << QStringLiteral("pt_BR")
                               << QStringLiteral("a biblioteca do módulo não foi encontrada");
        QTest::newRow("es") << QStringLiteral("es")
                            << QStringLiteral("no se ha encontrado la biblioteca del módulo");
        QTest::newRow("en") << QStringLiteral("en")
                            << QStringLiteral("the module library was not found");
    }
    void programSpeaksTheLanguage()
    {
        QFETCH(QString, language);
        QFETCH(QString, message);
        QTemporaryDir dir;
        const QString settings = settingsFile(language, dir);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        // Scripted: the message box is written, not shown.
        environment.insert(QStringLiteral("KVHOST_FILE_DIALOG_ANSWERS"), QString());
        program.setProcessEnvironment(environment);
        // An empty plug-in folder: the program says that the module is missing.
        const QString picture = dir.filePath(QStringLiteral("window.png"));
        program.start(QStringLiteral(KV_KVHOST_PROGRAM),
                      {QStringLiteral("--config"), settings, QStringLiteral("--plugins"),
                       dir.path(), QStringLiteral("--screenshot"), picture});
        QVERIFY(program.waitForFinished(30000));
        QCOMPARE(program.exitCode(), 0);
        const QString errors = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(errors.contains(message), qPrintable(errors));
        QVERIFY(QFileInfo(picture).size() > 0);
    }
};

QTEST_MAIN(TestAppTranslations)
#include "tst_app_translations.moc"
