#pragma once

// Shared pieces of the item import's tests: a small standard database in portable SQL, settings
// files written the way the settings dialog writes them, the tree as a short text, and the
// part of the host-call trace that the import produces.

#include "common/TestHost.h"
#include "common/TraceLine.h"

#include "host/HostTypes.h"
#include "import/ItemImport.h"
#include "maindialog/CTVNodesUtil.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace ImportTestSupport {

// Components of the test standard, with their properties (tag, value):
//   100 Relay 24 V DC    TYPE RELAY, MAKER ACME, VOLTAGE 24 V DC
//   101 Relay 230 V AC   TYPE RELAY, MAKER ACME, VOLTAGE 230 V AC (description padded)
//   200 Lamp green       TYPE LAMP, MAKER ACME, COLOR GREEN
//   201 Lamp red         TYPE LAMP, MAKER BOLTON, COLOR RED
//   202 Lamp white       TYPE LAMP, COLOR WHITE (no MAKER)
//   300-302 Motor M1-M3  TYPE MOTOR, MODEL M1-M3, VOLTAGE 400 V AC, GAP_BEFORE 10, GAP_AFTER 5
//   400, 401 Pump P1/P2  TYPE PUMP, GAP_BEFORE 10, GAP_AFTER 5
// Descriptions in language 1 (English) and 2 (Portuguese, "PT ..."); folder 9000 has none.
inline QString standardSql()
{
    // One transaction: a file database would otherwise wait for the disk after every row.
    QString sql = QStringLiteral(R"(
BEGIN;
CREATE TABLE BDDIC (DIC_FIELD VARCHAR(40) NOT NULL, DIC_DESCR VARCHAR(120) NOT NULL);
CREATE TABLE BDMENUS (MENU_KEY VARCHAR(10) NOT NULL, MENU_KEY_LANG VARCHAR(4) NOT NULL,
                      MENU_DESCR VARCHAR(120) NOT NULL);
CREATE TABLE CUSTOM_PROPERTIES (ITEM_KEY VARCHAR(10) NOT NULL, ITEM_TYPE INTEGER NOT NULL,
                                TAG VARCHAR(40) NOT NULL, VALUE VARCHAR(120) NOT NULL);
INSERT INTO BDDIC VALUES ('TYPE', 'Kind of device');
INSERT INTO BDDIC VALUES (' MAKER ', 'Manufacturer, padded in the dictionary');
INSERT INTO BDDIC VALUES ('VOLTAGE', 'Voltage');
INSERT INTO BDDIC VALUES ('COLOR', 'Colour');
INSERT INTO BDDIC VALUES ('MODEL', 'Model');
INSERT INTO BDDIC VALUES ('GAP_BEFORE', 'Gap before');
INSERT INTO BDDIC VALUES ('GAP_AFTER', 'Gap after');
INSERT INTO BDMENUS VALUES ('9000', '1', 'Folder');
INSERT INTO CUSTOM_PROPERTIES VALUES ('100 ', 0, 'TYPE', 'RELAY');
INSERT INTO CUSTOM_PROPERTIES VALUES ('100 ', 1, 'MAKER', 'ACME');
INSERT INTO CUSTOM_PROPERTIES VALUES ('100 ', 0, ' VOLTAGE', ' 24 V DC ');
INSERT INTO CUSTOM_PROPERTIES VALUES ('101', 0, 'TYPE', 'RELAY');
INSERT INTO CUSTOM_PROPERTIES VALUES ('101', 1, 'MAKER', 'ACME');
INSERT INTO CUSTOM_PROPERTIES VALUES ('101', 0, 'VOLTAGE', '230 V AC');
INSERT INTO CUSTOM_PROPERTIES VALUES ('200', 0, 'TYPE', 'LAMP');
INSERT INTO CUSTOM_PROPERTIES VALUES ('200', 1, 'MAKER', 'ACME');
INSERT INTO CUSTOM_PROPERTIES VALUES ('200', 0, 'COLOR', 'GREEN');
INSERT INTO CUSTOM_PROPERTIES VALUES ('201', 0, 'TYPE', 'LAMP');
INSERT INTO CUSTOM_PROPERTIES VALUES ('201', 1, 'MAKER', 'BOLTON');
INSERT INTO CUSTOM_PROPERTIES VALUES ('201', 0, 'COLOR', 'RED');
INSERT INTO CUSTOM_PROPERTIES VALUES ('202', 0, 'TYPE', 'LAMP');
INSERT INTO CUSTOM_PROPERTIES VALUES ('202', 0, 'COLOR', 'WHITE');
)");
    const QList<QPair<QString, QString>> components = {
        {QStringLiteral("100"), QStringLiteral("Relay 24 V DC")},
        {QStringLiteral("101"), QStringLiteral("Relay 230 V AC   ")},
        {QStringLiteral("200"), QStringLiteral("Lamp green")},
        {QStringLiteral("201"), QStringLiteral("Lamp red")},
        {QStringLiteral("202"), QStringLiteral("Lamp white")},
        {QStringLiteral("300"), QStringLiteral("Motor M1")},
        {QStringLiteral("301"), QStringLiteral("Motor M2")},
        {QStringLiteral("302"), QStringLiteral("Motor M3")},
        {QStringLiteral("400"), QStringLiteral("Pump P1")},
        {QStringLiteral("401"), QStringLiteral("Pump P2")},
    };
    for (const auto& [key, description] : components) {
        sql += QStringLiteral("INSERT INTO BDMENUS VALUES ('%1', '1', '%2');\n"
                              "INSERT INTO BDMENUS VALUES ('%1', '2', 'PT %2');\n")
                   .arg(key, description);
    }
    for (int model = 1; model <= 3; ++model) {
        sql += QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('30%1', 0, 'TYPE', 'MOTOR');\n"
                              "INSERT INTO CUSTOM_PROPERTIES VALUES ('30%1', 0, 'MODEL', 'M%2');\n"
                              "INSERT INTO CUSTOM_PROPERTIES VALUES ('30%1', 0, 'VOLTAGE', "
                              "'400 V AC');\n")
                   .arg(model - 1)
                   .arg(model);
    }
    sql += QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('400', 0, 'TYPE', 'PUMP');\n"
                          "INSERT INTO CUSTOM_PROPERTIES VALUES ('401', 0, 'TYPE', 'PUMP');\n");
    for (const char* key : {"300", "301", "302", "400", "401"}) {
        sql +=
            QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('%1', 2, 'GAP_BEFORE', '10');\n"
                           "INSERT INTO CUSTOM_PROPERTIES VALUES ('%1', 2, 'GAP_AFTER', '5');\n")
                .arg(QLatin1String(key));
    }
    return sql + QStringLiteral("COMMIT;\n");
}

inline void addDatabaseColumn()
{
    QTest::addColumn<TestDatabase::Kind>("database");
}

inline QByteArray databaseName(TestDatabase::Kind kind)
{
    return kind == TestDatabase::Kind::SQLite ? "sqlite" : "postgresql";
}

// A data row named "DATABASE/NAME".
inline QTestData& newDatabaseRow(TestDatabase::Kind kind, const char* name)
{
    return QTest::newRow((databaseName(kind) + '/' + name).constData());
}

inline QList<TestDatabase::Kind> databaseKinds()
{
    return {TestDatabase::Kind::SQLite, TestDatabase::Kind::PostgreSQL};
}

// One header of the settings file: the seven lines in file order.
struct Headers
{
    QString gapBeforeVar;
    QString gapAfterVar;
    QString startPoint = QStringLiteral("0,0");
    QString spaceWidth = QStringLiteral("10");
    QString separatorMode = QStringLiteral("2");
    QString pageSize = QStringLiteral("1000");
    QString pageMode = QStringLiteral("0");
};

// One field line: spreadsheet column, attribute, search property, shown ("S"/"N").
struct Field
{
    QString column;
    QString attribute;
    QString search;
    QString show = QStringLiteral("N");
};

// Writes a .cfa the way the settings dialog does: every cell followed by ";", an empty cell
// written as one blank, lines separated by CR LF.
inline QString writeSettings(const QString& path, const Headers& headers,
                             const QList<Field>& fields)
{
    QStringList lines = {headers.gapBeforeVar, headers.gapAfterVar,   headers.startPoint,
                         headers.spaceWidth,   headers.separatorMode, headers.pageSize,
                         headers.pageMode};
    for (const Field& field : fields) {
        QString line;
        for (const QString& cell : {field.column, field.attribute, field.search, field.show})
            line += (cell.trimmed().isEmpty() ? QStringLiteral(" ") : cell) + u';';
        lines.append(line);
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return {};
    file.write(lines.join(QStringLiteral("\r\n")).toLatin1());
    return path;
}

inline QString workbook(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/xlsx/") + name;
}

// The tree as text: items separated by " | ", each "TEXT[CHILDREN]" with children "S:KEY",
// "P" (page), "H" (horizontal space), "V" (vertical space).
inline QString describe(const CTVNodesUtil& tree)
{
    QStringList items;
    for (const TVNode item : tree.children()) {
        QStringList children;
        for (const TVNode child : tree.children(item)) {
            switch (tree.GetKind(child)) {
            case TVNodeKind::Symbol:
                children.append(QStringLiteral("S:") + tree.GetSymbol(child)->GetKey());
                break;
            case TVNodeKind::Page:
                children.append(QStringLiteral("P"));
                break;
            case TVNodeKind::HorizontalSpace:
                children.append(QStringLiteral("H"));
                break;
            case TVNodeKind::VerticalSpace:
                children.append(QStringLiteral("V"));
                break;
            default:
                children.append(QStringLiteral("?"));
            }
        }
        items.append(tree.GetText(item) + u'[' + children.join(u',') + u']');
    }
    return items.join(QStringLiteral(" | "));
}

// The import's part of the trace: statements, failures (the database's own text replaced by
// "*", since it differs between databases), property values, messages and log lines.
inline QStringList importTrace(const QStringList& lines)
{
    QStringList kept;
    for (const QString& line : lines) {
        const QString op = QJsonDocument::fromJson(line.toUtf8()).object().value("op").toString();
        if (op == u"queryFailed")
            kept.append(TraceLine::queryFailed(QStringLiteral("*")));
        else if (op == u"query" || op == u"propertyValue" || op == u"message" || op == u"log")
            kept.append(line);
    }
    return kept;
}

inline QString jsonText(const QJsonValue& value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}

inline QString propertyValue(const QString& key, const QString& property, const QJsonValue& value)
{
    return QStringLiteral(R"({"op":"propertyValue","key":%1,"property":%2,"value":%3})")
        .arg(jsonText(key), jsonText(property), jsonText(value));
}

inline QString logLine(const QString& text)
{
    return QStringLiteral(R"({"op":"log","text":%1})").arg(jsonText(text));
}

// The component statement as the import must write it, for the given condition texts.
inline QString searchSql(const QStringList& conditions)
{
    return QStringLiteral(
               "SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang and "
               "MENU_KEY in ( select LTRIM(RTRIM(ITEM_KEY)) from CUSTOM_PROPERTIES "
               "where ") +
           conditions.join(QStringLiteral(" or ")) +
           QStringLiteral(" GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = ") +
           QString::number(conditions.size()) + QStringLiteral(" ) ORDER BY MENU_KEY");
}

inline QString containsText(const QString& tag, const QString& value)
{
    return QStringLiteral("( LTRIM(RTRIM(TAG))='") + tag +
           QStringLiteral("' and LTRIM(RTRIM(VALUE)) like '%") + value + QStringLiteral("%' )");
}

inline QString equalsText(const QString& tag, const QString& value)
{
    return QStringLiteral("( LTRIM(RTRIM(TAG))='") + tag +
           QStringLiteral("' and LTRIM(RTRIM(VALUE)) = '") + value + QStringLiteral("' )");
}

inline QString searchLine(const QStringList& conditions, const QString& language = "1")
{
    return TraceLine::query(searchSql(conditions), {{QStringLiteral("lang"), language}});
}

inline QString dictionaryLine()
{
    return TraceLine::query(QStringLiteral("SELECT DIC_FIELD FROM BDDIC"));
}

// One import through the host's file dialog, answered with `workbookPath`.
inline ItemImportResult runImport(TestHost& host, CTVNodesUtil& tree, ImportDialogState& state,
                                  const QString& settingsPath, const QString& workbookPath)
{
    host.system().queueFileDialogAnswer(KV_RESULT_OK, workbookPath);
    const auto installed = host.install();
    ItemImport itemImport(tree, state);
    return itemImport.run(settingsPath);
}

} // namespace ImportTestSupport

// Opens the test standard on the row's database with English (1) as the current description
// language; skips the row when PostgreSQL is not there.
#define KV_OPEN_STANDARD(host, kind)                                                               \
    do {                                                                                           \
        if ((kind) == TestDatabase::Kind::PostgreSQL && TestDatabase::postgresUrl().isEmpty())     \
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server for this row "                   \
                  "(scripts/test.sh starts one)");                                                 \
        QVERIFY2((host).createDatabase(ImportTestSupport::standardSql(), (kind)),                  \
                 qPrintable((host).errorText()));                                                  \
        (host).electrical().setCurrentLanguage(QStringLiteral("1"));                               \
    } while (false)
