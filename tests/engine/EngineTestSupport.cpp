#include "EngineTestSupport.h"

namespace EngineTest {

QString standardSql()
{
    return QStringLiteral(R"(
CREATE TABLE BDKV (KV_KEY VARCHAR(20), KV_KEY_NOR VARCHAR(20), MENU_DESCR VARCHAR(80),
                   KV_DWG VARCHAR(40), KV_EXPLODE CHAR(1));
CREATE TABLE CUSTOM_PROPERTIES (ITEM_KEY VARCHAR(20), ITEM_TYPE INTEGER, TAG VARCHAR(40),
                                VALUE VARCHAR(80));
CREATE TABLE BDVINCL (VL_KEY_A VARCHAR(20), VL_KEY_B VARCHAR(20), VL_QTDE VARCHAR(20));
INSERT INTO BDKV VALUES ('10', 'IEC', 'Relay', 'RELAY', 'N');
)");
}

Pairs relayRow()
{
    return {{"KV_KEY", "10"},
            {"KV_KEY_NOR", "IEC"},
            {"MENU_DESCR", "Relay"},
            {"KV_DWG", "RELAY"},
            {"KV_EXPLODE", "N"}};
}

bool prepareHost(TestHost& host)
{
    if (!host.createDatabase(standardSql()))
        return false;
    host.cad().setVar(QStringLiteral("*NORMA_UTILIZADA*"), kStandard);
    host.cad().setVar(QStringLiteral("*DIRETORIO_REDE*"), kNetworkDir);
    host.cad().setCurrentLayer(kLayer);
    host.cad().addFile(blockPath(QStringLiteral("RELAY")));
    return true;
}

QString blockPath(const QString& blockName, const QString& standard)
{
    return kNetworkDir + QStringLiteral("DADOS\\") + standard + QStringLiteral("\\BLOCOS\\") +
           blockName + QStringLiteral(".dwg");
}

QStringList lookupLines(const QString& key, const Pairs& row, const Pairs& custom,
                        const QString& standard)
{
    using namespace TraceLine;
    QString quotedKey = key;
    quotedKey.replace(u'\'', QStringLiteral("''"));
    QString quotedStandard = standard;
    quotedStandard.replace(u'\'', QStringLiteral("''"));
    QStringList lines{
        getvar("*NORMA_UTILIZADA*", standard),
        setvar("KV_KEY_NOR", standard),
        setvar("MENU_KEY", key),
        setvar("KV_KEY", key),
        query(kCustomSql, {{"key", key}}),
        query(QStringLiteral("SELECT * FROM BDKV WHERE KV_KEY='%1' AND KV_KEY_NOR='%2'")
                  .arg(quotedKey, quotedStandard)),
    };
    QString description;
    for (const auto& [name, value] : row) {
        if (name == QLatin1String("MENU_DESCR"))
            description = value;
    }
    lines << setvar("MENU_DESCR", description);
    for (const auto& [name, value] : row + custom)
        lines << setvar(name, value);
    lines << setvar("DESCRICAO", description) << setvar("TP_DESCRI", description);
    return lines;
}

QStringList blockCheckLines(const QString& blockName, bool exists, const QString& standard)
{
    using namespace TraceLine;
    QStringList lines{getvar("*NORMA_UTILIZADA*", standard),
                      getvar("*DIRETORIO_REDE*", kNetworkDir),
                      fileExists(blockPath(blockName, standard), exists)};
    if (!exists)
        lines << critical(
            QStringLiteral("The file %1.dwg was not found.").arg(blockPath(blockName, standard)));
    return lines;
}

QString insertLine(qint64 key, double x, double y, double z, const std::optional<QString>& rotation)
{
    QJsonArray args{static_cast<double>(key), QJsonArray{x, y, z}};
    if (rotation)
        args.append(*rotation);
    return TraceLine::invokeTyped(QStringLiteral("inserirAuto"), args);
}

QStringList placementLines(const Placement& p)
{
    using namespace TraceLine;
    QStringList lines = lookupLines(p.key, p.row, p.custom);
    lines << blockCheckLines(p.blockName, true);
    lines << p.associatedLines;
    lines << getvar(p.gapBeforeVar, p.gapBefore) << getvar(p.gapAfterVar, p.gapAfter);
    QStringList record;
    QString description;
    for (const auto& [name, value] : p.row + p.custom) {
        record << name << value;
        if (name == QLatin1String("MENU_DESCR"))
            description = value;
    }
    record << "DESCRICAO" << description << "TP_DESCRI" << description;
    lines << setvarList("PBLLSTVINCAUTO", p.associated)
          << setvarList("PBLLSTREGCAUTO", record + p.attributes);
    lines << insertLine(p.key.toLongLong(), p.x, p.y, p.z);
    lines << getvar(p.gapAfterVar, p.gapAfterLater);
    return lines;
}

QStringList symbolLines(const Placement& placement)
{
    return QStringList{TraceLine::setvar("*INSERCAO_AUTOMATICA*", true)} +
           placementLines(placement) +
           QStringList{TraceLine::setvar("*INSERCAO_AUTOMATICA*", false)};
}

QStringList runStartLines(int itemCount)
{
    return {TraceLine::invoke("inicioInsAuto"), TraceLine::longOperation(QString()),
            TraceLine::progress(itemCount)};
}

QStringList runEndLines(const QString& layer, const QStringList& touchedPages)
{
    using namespace TraceLine;
    return {regen(),
            invoke("fimInsAuto"),
            getLayer(layer),
            invoke("monta_listas_de_paginas_globais"),
            invoke("atualizarMacros", touchedPages),
            print("\n\n"),
            print("Automatic insertion completed")};
}

CEInsAutoJob basicJob()
{
    CEInsAutoJob job;
    job.startPoint = QStringLiteral("10,20");
    job.spaceWidth = QStringLiteral("5");
    job.pageMode = QStringLiteral("0");
    return job;
}

CEInsAutoItem item(const QString& name, const QList<CEInsAutoEntry>& entries,
                   const QList<CEInsAutoPair>& values)
{
    return {name, values, entries};
}

CEInsAutoEntry symbol(const QString& key)
{
    return {QStringLiteral("0"), key};
}

CEInsAutoEntry pageBreak()
{
    return {QStringLiteral("1"), {}};
}

CEInsAutoEntry horizontalSpace()
{
    return {QStringLiteral("2"), {}};
}

CEInsAutoEntry verticalSpace()
{
    return {QStringLiteral("4"), {}};
}

} // namespace EngineTest
