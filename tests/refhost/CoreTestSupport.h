#pragma once

// Helpers shared by the reference host's core tests: block files written on the fly, a small
// stand-in for the DXF block reader, and a standard's database filled with a few rows.

#include "CadServices.h"
#include "ReaderRole.h"
#include "StandardLoader.h"

#include "host/CEPasta.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPair>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <functional>

namespace CoreTest {

using TagDefaults = QList<QPair<QString, QString>>;

// Writes a small DXF drawing whose model space is one line and one attribute definition per
// (tag, default) pair, as a block file exported from a CAD program looks.
inline bool writeBlockDxf(const QString& path, const TagDefaults& attributes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QByteArray dxf = "0\nSECTION\n2\nENTITIES\n"
                     "0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n30\n0.0\n11\n10.0\n21\n0.0\n31\n0.0\n";
    double y = 5.0;
    for (const auto& [tag, defaultValue] : attributes) {
        dxf += "0\nATTDEF\n8\n0\n10\n0.0\n20\n" + QByteArray::number(y) +
               "\n30\n0.0\n40\n2.5\n1\n" + defaultValue.toUtf8() + "\n3\n" + tag.toUtf8() +
               "\n2\n" + tag.toUtf8() + "\n70\n0\n";
        y += 5.0;
    }
    dxf += "0\nENDSEC\n0\nEOF\n";
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(dxf) == dxf.size();
}

// A stand-in for the DXF block reader, enough for the files writeBlockDxf writes: the
// attribute definitions (group 2 tag, group 1 default, group 3 prompt) of the file. Counts
// its calls so that tests can see when a definition is read again.
struct StandInBlockReader
{
    int calls = 0;
    QStringList paths;

    RefHost::BlockFileReader reader()
    {
        return [this](const QString& path) { return read(path); };
    }

    RefHost::BlockFileResult read(const QString& path)
    {
        ++calls;
        paths.append(path);
        RefHost::BlockFileResult result;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            result.error = path + QStringLiteral(": cannot open");
            return result;
        }
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        RefHost::BlockDefinition block;
        block.name = QFileInfo(path).completeBaseName();
        RefHost::AttributeDefinition* current = nullptr;
        for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
            const QString code = lines.at(i).trimmed();
            const QString value = lines.at(i + 1).trimmed();
            if (code == u"0") {
                current = nullptr;
                if (value == u"ATTDEF") {
                    block.attributes.append(RefHost::AttributeDefinition{});
                    current = &block.attributes.last();
                } else if (value == u"LINE") {
                    block.geometry.append(RefHost::GeometryItem{});
                }
                continue;
            }
            if (!current)
                continue;
            if (code == u"2")
                current->tag = value;
            else if (code == u"1")
                current->defaultValue = value;
            else if (code == u"3")
                current->prompt = value;
        }
        if (block.geometry.isEmpty() && block.attributes.isEmpty()) {
            result.error = path + QStringLiteral(": no entities");
            return result;
        }
        result.block = block;
        return result;
    }
};

// Runs statements on a writable connection; the first failure's text, or empty.
inline QString execAll(const QSqlDatabase& db, const QStringList& statements)
{
    for (const QString& sql : statements) {
        QSqlQuery query(db);
        if (!query.exec(sql))
            return sql + QStringLiteral(": ") + query.lastError().text();
    }
    return {};
}

// The tables of a standard's database with a few rows: components 100 (motor, block "M1",
// with custom properties), 200 (lamp, block name with blanks around it), 300 (no block name),
// each in standard "IEC"; 100 also exists in standard "NEMA" with another block.
inline QStringList standardDatabaseStatements()
{
    return {
        QStringLiteral("DROP TABLE IF EXISTS BDKV"),
        QStringLiteral("DROP TABLE IF EXISTS CUSTOM_PROPERTIES"),
        QStringLiteral("DROP TABLE IF EXISTS BDMENUS"),
        QStringLiteral("DROP TABLE IF EXISTS BDDIC"),
        QStringLiteral("DROP TABLE IF EXISTS BDVINCL"),
        QStringLiteral("DROP TABLE IF EXISTS INTRUDER"),
        QStringLiteral("CREATE TABLE BDKV (KV_KEY VARCHAR(20), KV_KEY_NOR VARCHAR(20), "
                       "KV_DWG VARCHAR(60), MENU_DESCR VARCHAR(120), KV_EXPLODE VARCHAR(1), "
                       "LARGURA VARCHAR(20))"),
        QStringLiteral("CREATE TABLE CUSTOM_PROPERTIES (ITEM_KEY VARCHAR(20), ITEM_TYPE INTEGER, "
                       "TAG VARCHAR(40), VALUE VARCHAR(120))"),
        QStringLiteral("CREATE TABLE BDMENUS (MENU_KEY VARCHAR(20), MENU_KEY_LANG VARCHAR(4), "
                       "MENU_DESCR VARCHAR(120), MENU_PARENT VARCHAR(20), MENU_KIND INTEGER, "
                       "MENU_ORDER INTEGER)"),
        QStringLiteral("CREATE TABLE BDDIC (DIC_FIELD VARCHAR(40))"),
        QStringLiteral("INSERT INTO BDKV VALUES ('100', 'IEC', 'M1', 'Motor', 'N', '40')"),
        QStringLiteral("INSERT INTO BDKV VALUES ('100', 'NEMA', 'NM1', 'Motor', 'N', '45')"),
        QStringLiteral("INSERT INTO BDKV VALUES ('200', 'IEC', '  L1  ', 'Lamp', 'S', '20')"),
        QStringLiteral("INSERT INTO BDKV VALUES ('300', 'IEC', '', 'Nothing', 'N', '10')"),
        QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES (' 100 ', 1, 'POWER', '5.5')"),
        QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('100', 2, ' Voltage ', '400')"),
        QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('100', 7, 'HIDDEN', 'x')"),
        QStringLiteral("INSERT INTO CUSTOM_PROPERTIES VALUES ('100', 0, 'LARGURA', '42')"),
        // Palette: folders 9000 and 9100 at the top (9100 first by its order), 9200 and 9300
        // each other's parents, component 999 not in the standard, 300 under a missing folder.
        QStringLiteral("INSERT INTO BDMENUS VALUES ('9000', '1', 'Motors', '0', 0, 2)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('9000', '3', 'Motores', '0', 0, 2)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('9100', '1', 'Lamps', '0', 0, 1)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('100', '3', 'Motor trifasico', '9000', 1, 1)"),
        QStringLiteral(
            "INSERT INTO BDMENUS VALUES ('100', '1', 'Three-phase motor', '9000', 1, 1)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('200', '3', 'Lampada', '9100', 1, 2)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('999', '1', 'Elsewhere', '9100', 1, 1)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('9200', '1', 'Loop A', '9300', 0, 1)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('9300', '1', 'Loop B', '9200', 0, 1)"),
        QStringLiteral("INSERT INTO BDMENUS VALUES ('300', '1', 'Orphan', '7777', 1, 3)"),
        QStringLiteral("INSERT INTO BDDIC VALUES ('POWER')"),
    };
}

// Creates an SQLite standard database at `path`; the error text, or empty.
inline QString createSqliteStandard(const QString& path)
{
    const QString name = QStringLiteral("fixture-") + path;
    QString error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        // One transaction: the file is written once, which keeps the tests quick.
        if (!db.open())
            error = db.lastError().text();
        else if (!db.transaction())
            error = db.lastError().text();
        else
            error = execAll(db, standardDatabaseStatements());
        if (error.isEmpty() && !db.commit())
            error = db.lastError().text();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return error;
}

// A palette tree as text, one line per entry: indentation, kind ("F" folder, "C" component),
// key, and the descriptions as LANGUAGE=TEXT in language order.
inline void describeTree(const std::vector<std::unique_ptr<CEPasta>>& entries, int depth,
                         QStringList& lines)
{
    for (const std::unique_ptr<CEPasta>& entry : entries) {
        QStringList texts;
        for (int language : entry->descriptionLanguages())
            texts.append(QStringLiteral("%1=%2").arg(language).arg(entry->getDescricao(language)));
        lines.append(QString(depth * 2, QLatin1Char(' ')) +
                     (entry->isComponent() ? QStringLiteral("C ") : QStringLiteral("F ")) +
                     entry->GetKey() + QLatin1Char(' ') + texts.join(QLatin1Char(',')));
        describeTree(entry->children(), depth + 1, lines);
    }
}

// A login role name of the test's own (roles are shared by the whole server, and tests run at
// the same time).
inline QString uniqueRoleName(const char* prefix)
{
    return QString::fromLatin1(prefix) + QUuid::createUuid().toString(QUuid::Id128).left(12);
}

// Sets up `role` as the loader does, to read the standard's tables in the search path of
// `db`; the error text, or empty.
inline QString setUpReaderRole(QSqlDatabase db, const QString& role)
{
    if (!db.transaction())
        return db.lastError().text();
    const RefHost::ReaderRole::Result result =
        RefHost::ReaderRole::setUp(db, role, RefHost::StandardLoader::standardTables());
    if (!result.error.isEmpty()) {
        db.rollback();
        return result.error;
    }
    return db.commit() ? QString() : db.lastError().text();
}

// Takes away what `role` was given in the database of `db` and removes it when it holds
// nothing in other databases.
inline void dropRole(const QSqlDatabase& db, const QString& role)
{
    QSqlQuery query(db);
    query.exec(QStringLiteral("DROP OWNED BY %1").arg(role));
    query.exec(QStringLiteral("DROP ROLE IF EXISTS %1").arg(role));
}

} // namespace CoreTest
