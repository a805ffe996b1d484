#pragma once

#include "common/TestHost.h"
#include "common/TraceLine.h"

#include "engine/CEInsAutoJob.h"

// The standard, drawing and expected host conversations shared by the engine's tests.
namespace EngineTest {

using Pairs = QList<QPair<QString, QString>>;

inline const QString kStandard = QStringLiteral("IEC");
inline const QString kNetworkDir = QStringLiteral("N:\\PROJ\\");
inline const QString kLayer = QStringLiteral("P1$1");
inline const QString kCustomSql = QStringLiteral(
    "SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY )) = :key AND "
    "ITEM_TYPE IN (0,1,2)");

// Tables BDKV, CUSTOM_PROPERTIES and BDVINCL with one component: key "10" of standard "IEC",
// "Relay", block "RELAY", not exploded.
QString standardSql();
// The BDKV row of component "10" in column order.
Pairs relayRow();

// The database above, the standard and network folder set, the current layer "P1$1", and
// the block file of "RELAY" present.
bool prepareHost(TestHost& host);

// network folder + "DADOS\" + standard + "\BLOCOS\" + name + ".dwg"
QString blockPath(const QString& blockName, const QString& standard = kStandard);

// The lines of a component lookup that finds `row`; custom properties are (tag, value).
QStringList lookupLines(const QString& key, const Pairs& row, const Pairs& custom = {},
                        const QString& standard = kStandard);
// The lines of a block-file check that reaches the file test.
QStringList blockCheckLines(const QString& blockName, bool exists,
                            const QString& standard = kStandard);
// "inserirAuto" with the key as integer and the point, and the rotation text when given.
QString insertLine(qint64 key, double x, double y, double z = 0,
                   const std::optional<QString>& rotation = std::nullopt);

// What a successful component placement of `key` sends, from the lookup to the gap-after test.
struct Placement
{
    QString key = QStringLiteral("10");
    Pairs row = relayRow();
    Pairs custom;
    QString blockName = QStringLiteral("RELAY");
    QStringList associatedLines; // the collection of associated components, when exploded
    QStringList associated;      // "PBLLSTVINCAUTO"
    QStringList attributes;      // the item's attributes merged into "PBLLSTREGCAUTO"
    QString gapBeforeVar;
    QString gapBefore;
    QString gapAfterVar;
    QString gapAfter;
    QString gapAfterLater; // the gap-after variable as the insertion left it
    double x = 0;
    double y = 0;
    double z = 0;
};
QStringList placementLines(const Placement& placement);
// The symbol step around a placement: "*INSERCAO_AUTOMATICA*" true, the placement, false.
QStringList symbolLines(const Placement& placement);

// The lines before the item loop's first item (pageMode other than "1").
QStringList runStartLines(int itemCount);
// The lines after the item loop: regeneration to the completion text.
QStringList runEndLines(const QString& layer, const QStringList& touchedPages);

// A job with the header values most tests use: start point "10,20", space width "5", page
// mode "0", no gap variables, no field map.
CEInsAutoJob basicJob();
CEInsAutoItem item(const QString& name, const QList<CEInsAutoEntry>& entries,
                   const QList<CEInsAutoPair>& values = {});
CEInsAutoEntry symbol(const QString& key);
CEInsAutoEntry pageBreak();
CEInsAutoEntry horizontalSpace();
CEInsAutoEntry verticalSpace();

} // namespace EngineTest
