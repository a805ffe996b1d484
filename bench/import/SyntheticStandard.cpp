#include "SyntheticStandard.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

namespace {

// The example standard's symbol blocks (examples/network/DADOS/IEC/BLOCOS), so that a run finds
// a drawing for every component.
const QStringList kBlocks = {"AUX_1NO1NC", "AUX_NC",        "AUX_NO",        "CONTACTOR_3P",
                             "LAMP",       "MCB_1P",        "MCB_3P",        "MOTOR_3PH",
                             "MPCB_3P",    "PB_ESTOP",      "PB_NC",         "PB_NO",
                             "PSU",        "RELAY_COIL",    "SELECTOR_2POS", "SELECTOR_3POS",
                             "TERMINAL",   "TERMINAL_FUSE", "TERMINAL_PE"};

const QStringList kTags = {"TYPE",          "MAKER", "PART_NUMBER", "RATED_CURRENT",
                           "RATED_VOLTAGE", "COLOR", "GAP_BEFORE",  "GAP_AFTER"};

QString key(int component)
{
    return QString::number(100000 + component);
}

QString typeOf(int group)
{
    return QStringLiteral("TYPE%1").arg(group % 40, 2, 10, QLatin1Char('0'));
}

QString makerOf(int group)
{
    return QStringLiteral("MAKER%1").arg(group % 25, 2, 10, QLatin1Char('0'));
}

QString partPrefix(int group)
{
    return QStringLiteral("PN-%1-").arg(group, 6, 10, QLatin1Char('0'));
}

} // namespace

SyntheticStandard::SyntheticStandard(int components) : m_components(components)
{
    int placed = 0;
    while (placed < m_components) {
        placed += groupSize(m_groups);
        ++m_groups;
    }
}

int SyntheticStandard::firstComponentOf(int group) const
{
    // Sizes cycle 1, 2, 3: each full cycle of three groups holds six components.
    return (group / 3) * 6 + (group % 3 == 0 ? 0 : group % 3 == 1 ? 1 : 3);
}

QStringList SyntheticStandard::searchCells(int row) const
{
    const int group = row % m_groups;
    return {typeOf(group), makerOf(group), partPrefix(group)};
}

int SyntheticStandard::matchesOfRow(int row) const
{
    const int group = row % m_groups;
    return std::min(groupSize(group), m_components - firstComponentOf(group));
}

QString SyntheticStandard::writeData(const QString& folder) const
{
    const QString path = QDir(folder).filePath(QStringLiteral("data.sql"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return {};
    QTextStream out(&file);
    for (const QString& tag : kTags)
        out << "INSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('" << tag << "', '" << tag
            << "');\n";
    out << "INSERT INTO BDMENUS (MENU_KEY, MENU_KEY_LANG, MENU_DESCR, MENU_PARENT, MENU_KIND, "
           "MENU_ORDER) VALUES ('9000', '1', 'Generated components', '0', 0, 1);\n";
    for (int group = 0; group < m_groups; ++group) {
        for (int k = 0; k < groupSize(group); ++k) {
            const int component = firstComponentOf(group) + k;
            if (component >= m_components)
                break;
            const QString id = key(component);
            const bool brings = component % 20 == 0 && component + 1 < m_components;
            out << "INSERT INTO BDKV (KV_KEY, KV_KEY_NOR, MENU_DESCR, KV_DWG, KV_EXPLODE, "
                   "KV_MANUFACTURER, KV_CATALOG_NO, KV_RATED_CURRENT, KV_RATED_VOLTAGE, "
                   "KV_WIDTH_MM) VALUES ('"
                << id << "', 'IEC', 'Component " << id << "', '"
                << kBlocks.at(component % kBlocks.size()) << "', '" << (brings ? "S" : "N")
                << "', '" << makerOf(group) << "', '" << partPrefix(group) << k << "', '"
                << (component % 63) + 1 << "', '400', " << 18 * (1 + component % 4) << ");\n";
            for (const char* language : {"1", "2"}) {
                out << "INSERT INTO BDMENUS (MENU_KEY, MENU_KEY_LANG, MENU_DESCR, MENU_PARENT, "
                       "MENU_KIND, MENU_ORDER) VALUES ('"
                    << id << "', '" << language << "', '"
                    << (language[0] == '1' ? "Component " : "Componente ") << id << "', '9000', 1, "
                    << component << ");\n";
            }
            const QStringList values = {typeOf(group),
                                        makerOf(group),
                                        partPrefix(group) + QString::number(k),
                                        QString::number(component % 63 + 1),
                                        QStringLiteral("400 V AC"),
                                        QStringLiteral("GREY"),
                                        QString::number(5 + component % 16),
                                        QString::number(5 + component % 11)};
            for (int t = 0; t < kTags.size(); ++t) {
                out << "INSERT INTO CUSTOM_PROPERTIES (ITEM_KEY, ITEM_TYPE, TAG, VALUE) VALUES ('"
                    << id << "', " << (t >= 6 ? 2 : 0) << ", '" << kTags.at(t) << "', '"
                    << values.at(t) << "');\n";
            }
            if (brings) {
                out << "INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) VALUES ('" << id << "', '"
                    << key(component + 1) << "', '1');\n";
            }
        }
    }
    out.flush();
    return file.error() == QFile::NoError ? path : QString();
}
