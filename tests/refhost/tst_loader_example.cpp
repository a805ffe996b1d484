// Tests of the example under examples/: the standard loads, and the settings files, the block
// drawings and the item tree agree with it (every key, block, property and attribute they name
// exists), so that the example runs end to end.

#include "LoaderTestSupport.h"
#include "StandardLoader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <algorithm>
#include <functional>

using LoaderTest::ScratchDatabase;
using RefHost::StandardLoader;

namespace {

const QString kStandard = QStringLiteral("IEC");

QString blocksDir()
{
    return LoaderTest::exampleFile(QStringLiteral("network/DADOS/IEC/BLOCOS"));
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The lines of a settings file, which separates lines with CR LF.
QStringList settingsLines(const QString& name)
{
    const QByteArray bytes = readBytes(LoaderTest::exampleFile(QStringLiteral("settings/") + name));
    return QString::fromLatin1(bytes).split(QStringLiteral("\r\n"));
}

// One field row of the .cfa: its four cells as written.
struct FieldRow
{
    QString field;
    QString attribute;
    QString search;
    QString show;
};

QList<FieldRow> fieldRows()
{
    QList<FieldRow> rows;
    const QStringList lines = settingsLines(QStringLiteral("example.cfa"));
    for (const QString& line : lines.mid(7)) {
        const QStringList cells = line.split(u';');
        if (cells.size() >= 4)
            rows.append({cells.at(0), cells.at(1), cells.at(2), cells.at(3)});
    }
    return rows;
}

// What a DXF block file provides: its base point and its attribute definitions' tags.
struct BlockFile
{
    bool read = false;
    double baseX = 1e9;
    double baseY = 1e9;
    QStringList tags;
};

BlockFile readBlockFile(const QString& path)
{
    BlockFile block;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return block;
    QStringList lines;
    while (!file.atEnd())
        lines.append(QString::fromUtf8(file.readLine()).trimmed());
    QString variable;
    QString entity;
    for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
        const int code = lines.at(i).toInt();
        const QString& value = lines.at(i + 1);
        if (code == 9)
            variable = value;
        if (code == 0) {
            entity = value;
            variable.clear();
        }
        if (variable == u"$INSBASE" && code == 10)
            block.baseX = value.toDouble();
        if (variable == u"$INSBASE" && code == 20)
            block.baseY = value.toDouble();
        if (entity == u"ATTDEF" && code == 2)
            block.tags.append(value);
    }
    block.read = true;
    return block;
}

QStringList column(QSqlDatabase& db, const QString& sql)
{
    QStringList values;
    QSqlQuery query(db);
    if (!query.exec(sql))
        return {QStringLiteral("<failed: %1>").arg(query.lastError().text())};
    while (query.next())
        values.append(query.value(0).toString());
    return values;
}

// The import's component statement for one spreadsheet row: a contains condition for a search
// property without "=", an equals condition for one with "=" and a value.
QString searchStatement(const QList<FieldRow>& fields, const QStringList& values)
{
    QStringList conditions;
    for (qsizetype i = 0; i < fields.size() && i < values.size(); ++i) {
        const QString property = fields.at(i).search.trimmed();
        if (property.isEmpty())
            continue;
        if (!property.contains(u'=')) {
            conditions.append(QStringLiteral("( LTRIM(RTRIM(TAG))='%1' and LTRIM(RTRIM(VALUE)) "
                                             "like '%%2%' )")
                                  .arg(property.toUpper(), values.at(i)));
        } else if (!values.at(i).isEmpty()) {
            conditions.append(QStringLiteral("( LTRIM(RTRIM(TAG))='%1' and LTRIM(RTRIM(VALUE)) "
                                             "= '%2' )")
                                  .arg(property.toUpper().remove(u'='), values.at(i)));
        }
    }
    return QStringLiteral("SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang "
                          "and MENU_KEY in ( select LTRIM(RTRIM(ITEM_KEY)) from "
                          "CUSTOM_PROPERTIES where ") +
           conditions.join(QLatin1String(" or ")) +
           QStringLiteral(" GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = %1 )")
               .arg(conditions.size()) +
           QStringLiteral(" ORDER BY MENU_KEY");
}

} // namespace

class tst_LoaderExample final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void settingsFilesHaveTheWriterFormat_data();
    void settingsFilesHaveTheWriterFormat();
    void settingsHeader();
    void searchPropertiesAreInTheDictionary();
    void everyComponentHasItsGaps();
    void blockFilesExist();
    void blocksDefineTheMappedAttributes_data();
    void blocksDefineTheMappedAttributes();
    void pageComponentsAreComponents();
    void descriptionsInBothLanguages();
    void paletteTree();
    void associations();
    void itemTree();
    void searchRows_data();
    void searchRows();

private:
    std::unique_ptr<ScratchDatabase> m_sqlite;
};

void tst_LoaderExample::initTestCase()
{
    m_sqlite = std::make_unique<ScratchDatabase>(ScratchDatabase::Kind::Sqlite);
    QVERIFY2(m_sqlite->isReady(), qPrintable(m_sqlite->error()));
    StandardLoader loader(m_sqlite->db(), QStringLiteral("example"));
    const auto result = loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()});
    QVERIFY2(result.ok, qPrintable(result.error));
}

void tst_LoaderExample::settingsFilesHaveTheWriterFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("headerLines"); // lines that are not rows of cells
    QTest::addColumn<int>("cells");       // cells per row
    QTest::newRow("cfa") << QStringLiteral("example.cfa") << 7 << 4;
    QTest::newRow("cfb") << QStringLiteral("example.cfb") << 0 << 3;
    QTest::newRow("cfc") << QStringLiteral("example.cfc") << 0 << 3;
}

void tst_LoaderExample::settingsFilesHaveTheWriterFormat()
{
    QFETCH(QString, name);
    QFETCH(int, headerLines);
    QFETCH(int, cells);
    const QByteArray bytes = readBytes(LoaderTest::exampleFile(QStringLiteral("settings/") + name));
    QVERIFY(!bytes.isEmpty());

    // Lines are separated by CR LF, and the last line has no line end.
    QVERIFY(!bytes.endsWith('\n') && !bytes.endsWith('\r'));
    QByteArray withoutSeparators = bytes;
    withoutSeparators.replace("\r\n", "");
    QVERIFY(!withoutSeparators.contains('\r') && !withoutSeparators.contains('\n'));
    for (char c : bytes)
        QVERIFY(static_cast<unsigned char>(c) < 0x80);

    const QStringList lines = settingsLines(name);
    QVERIFY(lines.size() > headerLines);
    for (const QString& line : lines.mid(0, headerLines))
        QVERIFY2(!line.isEmpty() && !line.contains(u';'), qPrintable(line));
    for (const QString& line : lines.mid(headerLines)) {
        // Every cell is followed by ";"; an empty .cfa cell is one blank, never nothing.
        QVERIFY2(line.endsWith(u';'), qPrintable(line));
        const QStringList split = line.split(u';');
        QCOMPARE(split.size(), cells + 1);
        for (const QString& cell : split.mid(0, cells)) {
            QVERIFY2(!cell.isEmpty(), qPrintable(line));
            QVERIFY2(cell == u" " || cell == cell.trimmed(), qPrintable(line));
        }
    }
}

void tst_LoaderExample::settingsHeader()
{
    const QStringList lines = settingsLines(QStringLiteral("example.cfa"));
    QVERIFY(lines.size() >= 7);
    QCOMPARE(lines.at(0), QStringLiteral("GAP_BEFORE"));
    QCOMPARE(lines.at(1), QStringLiteral("GAP_AFTER"));
    const QStringList start = lines.at(2).split(u',');
    QCOMPARE(start.size(), 2);
    bool xOk = false;
    bool yOk = false;
    const double startX = start.at(0).toDouble(&xOk);
    const double startY = start.at(1).toDouble(&yOk);
    QVERIFY(xOk && yOk);
    QVERIFY(lines.at(3).toDouble() > 0);                                   // space width
    QVERIFY(QStringList({"0", "1", "2", "3", "4"}).contains(lines.at(4))); // separator mode
    QVERIFY(lines.at(5).toDouble() > startX);                              // page size
    QVERIFY(QStringList({"0", "1"}).contains(lines.at(6)));                // pagination
    // The row of symbols lies inside the A3 frame (420 x 297), above its title block.
    QVERIFY(startX > 20 && lines.at(5).toDouble() < 410);
    QVERIFY(startY > 80 && startY < 287);

    // One exact and two contains search fields; page variables name the title block.
    const QList<FieldRow> fields = fieldRows();
    QVERIFY(fields.size() >= 6);
    QCOMPARE(fields.first().field, QStringLiteral("ITEM"));
    int exact = 0;
    int contains = 0;
    int pageVariables = 0;
    for (const FieldRow& row : fields) {
        const QString search = row.search.trimmed();
        if (!search.isEmpty())
            ++(search.contains(u'=') ? exact : contains);
        if (row.attribute.contains(u'@'))
            ++pageVariables;
        QVERIFY(row.show == u"S" || row.show == u"N");
    }
    QCOMPARE(exact, 1);
    QCOMPARE(contains, 2);
    QVERIFY(pageVariables >= 2);
}

void tst_LoaderExample::searchPropertiesAreInTheDictionary()
{
    // The import compares the names, without "=", exactly with BDDIC.DIC_FIELD.
    const QStringList dictionary =
        column(m_sqlite->db(), QStringLiteral("SELECT DIC_FIELD FROM BDDIC"));
    QStringList names;
    for (const FieldRow& row : fieldRows()) {
        const QString name = QString(row.search).remove(u'=').trimmed();
        if (!name.isEmpty())
            names.append(name);
    }
    const QStringList lines = settingsLines(QStringLiteral("example.cfa"));
    names << lines.at(0) << lines.at(1);
    QCOMPARE(names.size(), 5);
    for (const QString& name : std::as_const(names))
        QVERIFY2(dictionary.contains(name), qPrintable(name));

    // Every tag of every component is in the dictionary too.
    const QStringList unknown =
        column(m_sqlite->db(),
               QStringLiteral("SELECT DISTINCT TAG FROM CUSTOM_PROPERTIES WHERE TAG NOT IN "
                              "(SELECT DIC_FIELD FROM BDDIC)"));
    QVERIFY2(unknown.isEmpty(), qPrintable(unknown.join(u',')));
}

void tst_LoaderExample::everyComponentHasItsGaps()
{
    const QStringList keys = column(m_sqlite->db(), QStringLiteral("SELECT KV_KEY FROM BDKV"));
    QVERIFY(keys.size() >= 30);
    for (const QString& key : keys) {
        for (const QString& tag : {QStringLiteral("GAP_BEFORE"), QStringLiteral("GAP_AFTER")}) {
            const QStringList values = column(
                m_sqlite->db(), QStringLiteral("SELECT VALUE FROM CUSTOM_PROPERTIES WHERE "
                                               "ITEM_KEY = '%1' AND TAG = '%2' AND ITEM_TYPE = 2")
                                    .arg(key, tag));
            QVERIFY2(values.size() == 1, qPrintable(key + u' ' + tag));
            bool ok = false;
            QVERIFY2(values.first().toDouble(&ok) > 0 && ok, qPrintable(key + u' ' + tag));
        }
    }
}

void tst_LoaderExample::blockFilesExist()
{
    QStringList names = column(m_sqlite->db(), QStringLiteral("SELECT DISTINCT KV_DWG FROM BDKV "
                                                              "ORDER BY 1"));
    for (const QString& line : settingsLines(QStringLiteral("example.cfb")))
        names.append(line.section(u';', 0, 0));
    for (const QString& name : std::as_const(names)) {
        QVERIFY2(!name.isEmpty() && !name.startsWith(u' '), qPrintable(name));
        QVERIFY2(QFile::exists(blocksDir() + u'/' + name + QLatin1String(".dxf")),
                 qPrintable(name));
    }
    // No block file is left over that nothing uses.
    QStringList files = QDir(blocksDir()).entryList({QStringLiteral("*.dxf")}, QDir::Files);
    for (QString& file : files)
        file.chop(4);
    names.removeDuplicates();
    std::sort(names.begin(), names.end());
    QCOMPARE(files, names);
}

void tst_LoaderExample::blocksDefineTheMappedAttributes_data()
{
    QTest::addColumn<QString>("block");
    QTest::addColumn<QStringList>("tags");

    // Symbols receive the attributes that the .cfa maps fields to (targets without "@") and
    // the component's description; page blocks receive the page variables and page numbers.
    QStringList symbolTags{QStringLiteral("DESCRICAO")};
    QMap<QString, QStringList> pageTags; // block name prefix -> tags
    for (const FieldRow& row : fieldRows()) {
        const QString target = row.attribute.trimmed();
        if (target.isEmpty())
            continue;
        if (target.contains(u'@'))
            pageTags[target.section(u'@', 1)].append(target.section(u'@', 0, 0));
        else
            symbolTags.append(target);
    }
    QVERIFY(!pageTags.isEmpty());
    for (const QString& line : settingsLines(QStringLiteral("example.cfb"))) {
        const QString block = line.section(u';', 0, 0);
        QStringList tags{QStringLiteral("PAGE_NUMBER"), QStringLiteral("PAGE_COUNT")};
        for (auto it = pageTags.cbegin(); it != pageTags.cend(); ++it) {
            if (block.startsWith(it.key()))
                tags += it.value();
        }
        QTest::newRow(qPrintable(block)) << block << tags;
    }
    const QStringList blocks = column(m_sqlite->db(), QStringLiteral("SELECT DISTINCT KV_DWG FROM "
                                                                     "BDKV ORDER BY 1"));
    for (const QString& block : blocks)
        QTest::newRow(qPrintable(block)) << block << symbolTags;
}

void tst_LoaderExample::blocksDefineTheMappedAttributes()
{
    QFETCH(QString, block);
    QFETCH(QStringList, tags);

    const BlockFile file = readBlockFile(blocksDir() + u'/' + block + QLatin1String(".dxf"));
    QVERIFY(file.read);
    QCOMPARE(file.baseX, 0.0);
    QCOMPARE(file.baseY, 0.0);
    for (const QString& tag : tags)
        QVERIFY2(file.tags.contains(tag),
                 qPrintable(tag + QLatin1String(" in ") + file.tags.join(u',')));
    QCOMPARE(QSet<QString>(file.tags.cbegin(), file.tags.cend()).size(), file.tags.size());
}

void tst_LoaderExample::pageComponentsAreComponents()
{
    for (const QString& line : settingsLines(QStringLiteral("example.cfc"))) {
        const QString key = line.section(u';', 0, 0);
        QCOMPARE(
            column(m_sqlite->db(), QStringLiteral("SELECT KV_KEY FROM BDKV WHERE KV_KEY = '%1' AND "
                                                  "KV_KEY_NOR = '%2'")
                                       .arg(key, kStandard)),
            QStringList{key});
        QCOMPARE(line.section(u';', 1, 1).split(u',').size(), 2);
    }
}

void tst_LoaderExample::descriptionsInBothLanguages()
{
    for (const QString& language : {QStringLiteral("1"), QStringLiteral("2")}) {
        const QStringList missing = column(
            m_sqlite->db(),
            QStringLiteral("SELECT KV_KEY FROM BDKV WHERE KV_KEY NOT IN (SELECT MENU_KEY FROM "
                           "BDMENUS WHERE MENU_KEY_LANG = '%1' AND MENU_DESCR <> '')")
                .arg(language));
        QVERIFY2(missing.isEmpty(), qPrintable(language + u':' + missing.join(u',')));
    }
    // The two languages really differ, and the Portuguese texts keep their accents.
    QCOMPARE(column(m_sqlite->db(), QStringLiteral("SELECT MENU_DESCR FROM BDMENUS WHERE "
                                                   "MENU_KEY = '1703' ORDER BY MENU_KEY_LANG")),
             QStringList({QStringLiteral("Emergency stop push button 1 NC"),
                          QStringLiteral("Botão de emergência 1 NF")}));
    // Keys are four digits, one entry per key and language, and one component per key.
    const QStringList keys = column(m_sqlite->db(), QStringLiteral("SELECT MENU_KEY FROM BDMENUS"));
    static const QRegularExpression fourDigits(QStringLiteral("^[0-9]{4}$"));
    for (const QString& key : keys)
        QVERIFY2(fourDigits.match(key).hasMatch(), qPrintable(key));
    QVERIFY(column(m_sqlite->db(), QStringLiteral("SELECT MENU_KEY FROM BDMENUS GROUP BY "
                                                  "MENU_KEY, MENU_KEY_LANG HAVING COUNT(*) > 1"))
                .isEmpty());
    QVERIFY(column(m_sqlite->db(), QStringLiteral("SELECT KV_KEY FROM BDKV GROUP BY KV_KEY, "
                                                  "KV_KEY_NOR HAVING COUNT(*) > 1"))
                .isEmpty());
}

void tst_LoaderExample::paletteTree()
{
    // Every entry's parent is a folder (or the top), every component entry is a component.
    QVERIFY(column(m_sqlite->db(),
                   QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_PARENT <> '0' AND "
                                  "MENU_PARENT NOT IN (SELECT MENU_KEY FROM BDMENUS WHERE "
                                  "MENU_KIND = 0)"))
                .isEmpty());
    QVERIFY(column(m_sqlite->db(),
                   QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_KIND = 1 AND MENU_KEY "
                                  "NOT IN (SELECT KV_KEY FROM BDKV)"))
                .isEmpty());
    QVERIFY(column(m_sqlite->db(),
                   QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_KIND = 0 AND MENU_KEY "
                                  "IN (SELECT KV_KEY FROM BDKV)"))
                .isEmpty());
    // Two levels of folders exist.
    QVERIFY(!column(m_sqlite->db(),
                    QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_KIND = 0 AND "
                                   "MENU_PARENT <> '0'"))
                 .isEmpty());
}

void tst_LoaderExample::associations()
{
    QSqlQuery query(m_sqlite->db());
    QVERIFY(query.exec(QStringLiteral("SELECT VL_KEY_A, VL_KEY_B, VL_QTDE FROM BDVINCL")));
    const QStringList components =
        column(m_sqlite->db(), QStringLiteral("SELECT KV_KEY FROM BDKV"));
    QList<QPair<QString, QString>> edges;
    QHash<QString, QStringList> next;
    bool blockForm = false;
    bool quantityAboveOne = false;
    while (query.next()) {
        const QString a = query.value(0).toString();
        const QString b = query.value(1).toString();
        QVERIFY2(components.contains(a) && components.contains(b), qPrintable(a + u'>' + b));
        for (const QString& part : query.value(2).toString().split(u',')) {
            bool ok = false;
            const int quantity = part.toInt(&ok);
            QVERIFY2(ok && quantity >= 0, qPrintable(query.value(2).toString()));
            blockForm = blockForm || quantity == 0;
            quantityAboveOne = quantityAboveOne || quantity > 1;
        }
        edges.append({a, b});
        next[a].append(b);
        // An owner brings its associated components only when it is marked to.
        QCOMPARE(column(m_sqlite->db(),
                        QStringLiteral("SELECT KV_EXPLODE FROM BDKV WHERE KV_KEY = '%1'").arg(a)),
                 QStringList{QStringLiteral("S")});
    }
    QVERIFY(blockForm);
    QVERIFY(quantityAboveOne);
    QVERIFY(StandardLoader::findCycle(edges).isEmpty());

    // The longest chain of associations is at least three deep.
    std::function<int(const QString&)> depth = [&](const QString& key) {
        int deepest = 0;
        for (const QString& b : next.value(key))
            deepest = std::max(deepest, 1 + depth(b));
        return deepest;
    };
    int longest = 0;
    for (auto it = next.cbegin(); it != next.cend(); ++it)
        longest = std::max(longest, depth(it.key()));
    QVERIFY(longest >= 3);
}

void tst_LoaderExample::itemTree()
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(
        readBytes(LoaderTest::exampleFile(QStringLiteral("tree/example-tree.json"))), &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QVERIFY(document.isArray());
    const QJsonArray items = document.array();
    QVERIFY(items.size() >= 8 && items.size() <= 12);

    QStringList fields;
    for (const FieldRow& row : fieldRows())
        fields.append(row.field);
    QSet<QString> kinds;
    for (const QJsonValue& value : items) {
        const QJsonObject item = value.toObject();
        QVERIFY(!item.value(QStringLiteral("name")).toString().isEmpty());
        QVERIFY(item.value(QStringLiteral("expanded")).isBool());
        for (const QJsonValue& attribute : item.value(QStringLiteral("attributes")).toArray()) {
            const QString text = attribute.toString();
            QVERIFY2(fields.contains(text.section(u'=', 0, 0)), qPrintable(text));
        }
        for (const QJsonValue& childValue : item.value(QStringLiteral("children")).toArray()) {
            const QJsonObject child = childValue.toObject();
            const QString kind = child.value(QStringLiteral("kind")).toString();
            QVERIFY2(QStringList({"symbol", "page", "hspace", "vspace"}).contains(kind),
                     qPrintable(kind));
            kinds.insert(kind);
            if (kind != u"symbol")
                continue;
            // The key exists in the standard and the description is its English one.
            const QString key = child.value(QStringLiteral("key")).toString();
            QCOMPARE(column(m_sqlite->db(),
                            QStringLiteral("SELECT KV_KEY FROM BDKV WHERE KV_KEY = '%1' AND "
                                           "KV_KEY_NOR = '%2'")
                                .arg(key, kStandard)),
                     QStringList{key});
            QCOMPARE(column(m_sqlite->db(),
                            QStringLiteral("SELECT MENU_DESCR FROM BDMENUS WHERE MENU_KEY = '%1' "
                                           "AND MENU_KEY_LANG = '1'")
                                .arg(key)),
                     QStringList{child.value(QStringLiteral("description")).toString()});
        }
    }
    QCOMPARE(kinds, QSet<QString>({"symbol", "page", "hspace", "vspace"}));
}

void tst_LoaderExample::searchRows_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QStringList>("values"); // one per field row of the .cfa
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("firstDescription");

    struct Case
    {
        const char* name;
        QStringList values;
        QString language;
        QStringList keys;
        QString firstDescription;
    };
    // ITEM, TAG, DESCRIPTION, TYPE, MANUFACTURER, ORDER_NO, SECTION, PROJECT
    const QList<Case> cases = {
        {"one breaker",
         {"1", "-F1", "Main", "MCB", "NORDWERK", "MCB3-C32", "Power", "P"},
         "1",
         {"1014"},
         "Miniature circuit breaker 3P C32 A"},
        {"two contactors in Portuguese",
         {"5", "-K1", "Pump", "CONTACTOR", "NORDWERK", "CT09", "Pump", "P"},
         "2",
         {"1201", "1202"},
         "Contator 9 A, bobina 24 Vcc"},
        {"empty manufacturer still requires one",
         {"7", "-Q2", "Fan", "MPCB", "", "MPS-0100", "Fan", "P"},
         "1",
         {"1103"},
         "Motor protection breaker 6-10 A"},
        {"empty exact type adds no condition",
         {"8", "-X", "Any", "", "KLEMMTEC", "PE", "C", "P"},
         "1",
         {"1503"},
         "Protective earth terminal 2.5 mm2"},
        {"the type is compared exactly",
         {"9", "-K", "Any", "CONTACT", "NORDWERK", "CT09", "C", "P"},
         "1",
         {},
         ""},
        {"part number shared by a type",
         {"10", "-H", "Lamps", "PILOT_LAMP", "SIGNALUX", "-24", "C", "P"},
         "1",
         {"1801", "1802", "1803", "1804"},
         "Pilot lamp 24 V, green"},
    };
    for (bool postgres : {false, true}) {
        for (const Case& c : cases) {
            QTest::addRow("%s: %s", postgres ? "postgresql" : "sqlite", c.name)
                << postgres << c.values << c.language << c.keys << c.firstDescription;
        }
    }
}

void tst_LoaderExample::searchRows()
{
    QFETCH(bool, postgres);
    QFETCH(QStringList, values);
    QFETCH(QString, language);
    QFETCH(QStringList, keys);
    QFETCH(QString, firstDescription);

    std::unique_ptr<ScratchDatabase> postgresDb;
    QSqlDatabase db = m_sqlite->db();
    if (postgres) {
        if (LoaderTest::postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to run this row against");
        postgresDb = std::make_unique<ScratchDatabase>(ScratchDatabase::Kind::Postgres);
        QVERIFY2(postgresDb->isReady(), qPrintable(postgresDb->error()));
        StandardLoader loader(postgresDb->db(), QStringLiteral("example"));
        const auto result = loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()});
        QVERIFY2(result.ok, qPrintable(result.error));
        db = postgresDb->db();
    }

    const QList<FieldRow> fields = fieldRows();
    QCOMPARE(values.size(), fields.size());
    QSqlQuery query(db);
    QVERIFY(query.prepare(searchStatement(fields, values)));
    query.bindValue(QStringLiteral(":lang"), language);
    QVERIFY2(query.exec(), qPrintable(query.lastError().text()));
    QStringList found;
    QStringList descriptions;
    while (query.next()) {
        found.append(query.value(0).toString().trimmed());
        descriptions.append(query.value(1).toString().trimmed());
    }
    QCOMPARE(found, keys);
    if (!keys.isEmpty())
        QCOMPARE(descriptions.first(), firstDescription);
}

QTEST_GUILESS_MAIN(tst_LoaderExample)
#include "tst_loader_example.moc"
