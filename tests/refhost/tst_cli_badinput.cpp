// Runs the command-line program on every case of the hostile-input corpus (tests/data/bad/,
// manifest.json, docs/bad-input.md) and checks its promises for bad input: the exit status, a
// message naming the file and the problem, and no output left behind. Every case runs twice:
// into an empty output folder, which must stay empty (no output, no temporary file), and with
// good files already in place at the output paths, which must keep their bytes.

#include "../common/ProgramRun.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString dataDir()
{
    return QStringLiteral(KV_TEST_DATA_DIR);
}

QString sourceFile(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/") + relative;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Copies the folder `from` into `to`, which must not exist yet.
bool copyFolder(const QString& from, const QString& to)
{
    if (!QDir().mkpath(to))
        return false;
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString target = to + u'/' + QDir(from).relativeFilePath(path);
        if (it.fileInfo().isDir() ? !QDir().mkpath(target) : !QFile::copy(path, target))
            return false;
    }
    return true;
}

// Everything in a folder: each file's relative path with its bytes, each folder's with
// "(folder)" in place of bytes.
QMap<QString, QByteArray> snapshot(const QString& folder)
{
    QMap<QString, QByteArray> entries;
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = QDir(folder).relativeFilePath(path);
        entries.insert(relative, it.fileInfo().isDir() ? QByteArray("(folder)") : readFile(path));
    }
    return entries;
}

// Sets the permissions of `folder` and of every folder below it.
void setFolderPermissions(const QString& folder, QFile::Permissions permissions)
{
    QDirIterator it(folder, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    QStringList folders{folder};
    while (it.hasNext())
        folders.append(it.next());
    for (const QString& path : std::as_const(folders))
        QFile::setPermissions(path, permissions);
}

// `env`: variables set for the program; `stdinPath`: the file read as standard input (none:
// an empty standard input).
ProgramRun::Result runProgram(const QStringList& args, const QMap<QString, QString>& env,
                              const QString& stdinPath)
{
    ProgramRun::Options options;
    options.environment = env;
    options.inputFile = stdinPath;
    return ProgramRun::run(QStringLiteral(KV_CLI_PROGRAM), args, options);
}

} // namespace

class tst_CliBadInput final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyCorpusFileHasACase();
    void badInput_data();
    void badInput();
    void inputsUnchanged();

private:
    QString substitute(QString text, const QString& outDir) const;
    QByteArray goodBytes(const QString& path) const;

    QTemporaryDir m_work;
    QString m_bad;      // a copy of the corpus, so that no run can change the source tree
    QString m_database; // the example standard, loaded by the program
    QJsonArray m_cases;
};

void tst_CliBadInput::initTestCase()
{
    QVERIFY(m_work.isValid());
    const QJsonDocument manifest =
        QJsonDocument::fromJson(readFile(dataDir() + QStringLiteral("/bad/manifest.json")));
    QVERIFY2(manifest.isObject(), "tests/data/bad/manifest.json is not a JSON object");
    m_cases = manifest.object().value(QStringLiteral("cases")).toArray();
    QVERIFY(m_cases.size() > 50);

    m_bad = m_work.filePath(QStringLiteral("bad"));
    QVERIFY(copyFolder(dataDir() + QStringLiteral("/bad"), m_bad));
    m_database = m_work.filePath(QStringLiteral("standard.db"));
    const ProgramRun::Result loaded =
        runProgram({QStringLiteral("load-standard"), QStringLiteral("--database"), m_database,
                    sourceFile(QStringLiteral("examples/standard/schema.sql")),
                    sourceFile(QStringLiteral("examples/standard/data.sql"))},
                   {}, {});
    QVERIFY2(loaded.exitCode == 0, qPrintable(loaded.errText()));
}

QString tst_CliBadInput::substitute(QString text, const QString& outDir) const
{
    text.replace(QLatin1String("@BAD@"), m_bad);
    text.replace(QLatin1String("@EXAMPLES@"), sourceFile(QStringLiteral("examples")));
    text.replace(QLatin1String("@XLSX@"), dataDir() + QStringLiteral("/xlsx"));
    text.replace(QLatin1String("@DB@"), m_database);
    text.replace(QLatin1String("@OUT@"), outDir);
    return text;
}

// A good file of the kind the output path names, to be found unchanged after a refused run.
QByteArray tst_CliBadInput::goodBytes(const QString& path) const
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"dxf")
        return readFile(dataDir() + QStringLiteral("/dxf/golden_small.dxf"));
    if (suffix == u"cfa" || suffix == u"cfb" || suffix == u"cfc")
        return readFile(sourceFile(QStringLiteral("examples/settings/example.") + suffix));
    if (suffix == u"db")
        return readFile(m_database);
    return QByteArray("a good ") + suffix.toUtf8() + " file that must stay as it is\n";
}

// Every file of the corpus is used by a case (a companion counts through its .cfa, a file in a
// folder through the folder), so that a file added without its case is noticed.
void tst_CliBadInput::everyCorpusFileHasACase()
{
    QStringList referenced;
    for (const QJsonValue& value : std::as_const(m_cases)) {
        const QJsonObject row = value.toObject();
        QStringList texts{row.value(QStringLiteral("stdin")).toString()};
        for (const QJsonValue& arg : row.value(QStringLiteral("args")).toArray())
            texts.append(arg.toString());
        for (const QString& text : std::as_const(texts)) {
            if (text.startsWith(QLatin1String("@BAD@/")))
                referenced.append(text.mid(6));
        }
    }
    const QString corpus = dataDir() + QStringLiteral("/bad");
    QDirIterator it(corpus, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    QStringList unused;
    while (it.hasNext()) {
        QString file = QDir(corpus).relativeFilePath(it.next());
        if (file == u"manifest.json")
            continue;
        const QString original = file;
        file.replace(QLatin1String(".cfb"), QLatin1String(".cfa"));
        file.replace(QLatin1String(".cfc"), QLatin1String(".cfa"));
        const bool used =
            std::any_of(referenced.cbegin(), referenced.cend(),
                        [&](const QString& r) { return file == r || file.startsWith(r + u'/'); });
        if (!used)
            unused.append(original);
    }
    QVERIFY2(unused.isEmpty(),
             qPrintable(QStringLiteral("files without a case: ") + unused.join(u' ')));
}

void tst_CliBadInput::badInput_data()
{
    QTest::addColumn<QJsonObject>("row");
    QTest::addColumn<bool>("goodFilesInPlace");
    for (const QJsonValue& value : std::as_const(m_cases)) {
        const QJsonObject row = value.toObject();
        const QByteArray name = row.value(QStringLiteral("name")).toString().toUtf8();
        QTest::newRow(name + " | empty output folder") << row << false;
        QTest::newRow(name + " | good files in place") << row << true;
    }
}

void tst_CliBadInput::badInput()
{
    QFETCH(QJsonObject, row);
    QFETCH(bool, goodFilesInPlace);
    QTemporaryDir outFolder;
    QVERIFY(outFolder.isValid());
    const QString out = outFolder.path();

    QStringList args;
    for (const QJsonValue& arg : row.value(QStringLiteral("args")).toArray())
        args.append(substitute(arg.toString(), out));
    QMap<QString, QString> env;
    const QJsonObject envObject = row.value(QStringLiteral("env")).toObject();
    for (auto it = envObject.begin(); it != envObject.end(); ++it)
        env.insert(it.key(), it.value().toString());
    const QString stdinPath = substitute(row.value(QStringLiteral("stdin")).toString(), out);
    QStringList outputs;
    for (const QJsonValue& output : row.value(QStringLiteral("outputs")).toArray())
        outputs.append(substitute(output.toString(), out));
    for (const QJsonValue& folder : row.value(QStringLiteral("folders")).toArray())
        QVERIFY(QDir().mkpath(substitute(folder.toString(), out)));
    if (goodFilesInPlace) {
        for (const QString& output : std::as_const(outputs)) {
            QVERIFY(QDir().mkpath(QFileInfo(output).absolutePath()));
            QVERIFY(writeFile(output, goodBytes(output)));
        }
    }
    const QMap<QString, QByteArray> before = snapshot(out);

    const bool readOnly = row.value(QStringLiteral("readOnlyOutput")).toBool();
    const QFile::Permissions readOnlyFolder = QFile::ReadOwner | QFile::ExeOwner |
                                              QFile::ReadGroup | QFile::ExeGroup |
                                              QFile::ReadOther | QFile::ExeOther;
    if (readOnly) {
        setFolderPermissions(out, readOnlyFolder);
        // Whoever may write into read-only folders (root) cannot see the write fail.
        const QString probe = out + QStringLiteral("/probe");
        if (writeFile(probe, "probe")) {
            QFile::remove(probe);
            setFolderPermissions(out, readOnlyFolder | QFile::WriteOwner);
            QSKIP("the tests run with the right to write into read-only folders (as root), so a "
                  "read-only output folder cannot make the write fail");
        }
    }
    const ProgramRun::Result run = runProgram(args, env, stdinPath);
    if (readOnly)
        setFolderPermissions(out, readOnlyFolder | QFile::WriteOwner);

    const QString message = substitute(row.value(QStringLiteral("message")).toString(), out);
    const QString err = run.errText();
    QVERIFY2(run.exitCode == row.value(QStringLiteral("exit")).toInt(),
             qPrintable(QStringLiteral("exit status %1\n%2").arg(run.exitCode).arg(err)));
    QVERIFY2(err.contains(message),
             qPrintable(QStringLiteral("expected \"%1\" in:\n%2").arg(message, err)));
    if (!goodFilesInPlace) {
        for (const QString& output : std::as_const(outputs))
            QVERIFY2(!QFileInfo::exists(output), qPrintable(output + " was written"));
    }
    const QMap<QString, QByteArray> after = snapshot(out);
    QStringList changed;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (!before.contains(it.key()))
            changed.append(it.key() + QStringLiteral(" (new)"));
        else if (before.value(it.key()) != it.value())
            changed.append(it.key() + QStringLiteral(" (changed)"));
    }
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (!after.contains(it.key()))
            changed.append(it.key() + QStringLiteral(" (removed)"));
    }
    QVERIFY2(changed.isEmpty(),
             qPrintable(QStringLiteral("the output folder changed: ") + changed.join(u", ")));
}

// No case may change what it reads: not the corpus, and no companion created next to a .cfa.
void tst_CliBadInput::inputsUnchanged()
{
    QCOMPARE(snapshot(m_bad).keys(), snapshot(dataDir() + QStringLiteral("/bad")).keys());
    QVERIFY(snapshot(m_bad) == snapshot(dataDir() + QStringLiteral("/bad")));
}

QTEST_GUILESS_MAIN(tst_CliBadInput)
#include "tst_cli_badinput.moc"
