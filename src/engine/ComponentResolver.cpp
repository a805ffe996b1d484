#include "ComponentResolver.h"

#include "CQueryInsAutoCustomProperties.h"
#include "CQueryInsAutoSelect.h"
#include "InsAutoNames.h"

#include "host/CFxSystemServices.h"
#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/Translate.h"

#include <QMetaType>

namespace {

CVRQueryResponse runQuery(const std::shared_ptr<CVRQuery>& query)
{
    CVRServices* services = GetElectricalServices();
    if (!services)
        return CVRQueryResponse::failure(QStringLiteral("no query service"));
    return services->RunQuery(query);
}

void showCritical(const QString& text)
{
    CFxMessageBox::critical(CFxUtils::GetMainWindowId(), text);
}

} // namespace

QString ComponentResolver::selectSql(const KVString& table, const KVString& columns,
                                     const KVNamedValues& conditions)
{
    if (conditions.isEmpty())
        return QStringLiteral("SELECT %1 FROM %2").arg(columns, table);
    QString where;
    for (const auto& [column, value] : conditions) {
        if (!where.isEmpty())
            where += QLatin1String(" AND ");
        QString quoted = value;
        quoted.replace(u'\'', QLatin1String("''"));
        where += column + QLatin1String("='") + quoted + u'\'';
    }
    return QStringLiteral("SELECT %1 FROM %2 WHERE %3").arg(columns, table, where);
}

QList<KVStringList> ComponentResolver::selectRows(const KVString& table, const KVString& columns,
                                                  const KVNamedValues& conditions)
{
    const CVRQueryResponse response =
        runQuery(std::make_shared<CQueryInsAutoSelect>(selectSql(table, columns, conditions)));
    if (response.failed())
        return {};
    QList<KVStringList> rows;
    KVStringList header;
    for (const CVRColumn& column : response.getColumns())
        header.append(column.name);
    rows.append(header);
    for (const QVariantList& record : response.getResult()) {
        KVStringList row;
        for (const QVariant& value : record)
            row.append(value.toString());
        rows.append(row);
    }
    return rows;
}

CustomProperties ComponentResolver::readCustomProperties(const KVString& key)
{
    CustomProperties result;
    const CVRQueryResponse response =
        runQuery(std::make_shared<CQueryInsAutoCustomProperties>(key));
    if (response.failed())
        return result;

    // The description of the VALUE column ("CHAR(n)" for a text column) goes with every tag.
    QString typeName;
    int length = 0;
    for (const CVRColumn& column : response.getColumns()) {
        if (column.name == QLatin1String("VALUE")) {
            if (column.typeCode == QMetaType::QString)
                typeName = QStringLiteral("CHAR");
            length = column.length;
            break;
        }
    }
    const KVString description = QString::asprintf("%s(%d)", qUtf8Printable(typeName), length);

    for (const QVariantList& record : response.getResult()) {
        if (record.size() < 2)
            continue;
        result.properties.append({record.at(0).toString(), description});
        result.values.append(record.at(1).toString());
    }
    return result;
}

std::optional<KVNamedValues> ComponentResolver::lookupComponent(const KVString& key)
{
    const KVString standard = CICad::GetVarStr(InsAutoNames::kStandardVar);
    CICad::SetVarStr(QStringLiteral("KV_KEY_NOR"), standard);
    CICad::SetVarStr(QStringLiteral("MENU_KEY"), key);
    CICad::SetVarStr(QStringLiteral("KV_KEY"), key);

    const CustomProperties custom = readCustomProperties(key);

    const QList<KVStringList> rows =
        selectRows(QStringLiteral("BDKV"), QStringLiteral("*"),
                   {{QStringLiteral("KV_KEY"), key}, {QStringLiteral("KV_KEY_NOR"), standard}});
    if (rows.size() < 2) {
        showCritical(kvTr("The component was not found on this standard"));
        return std::nullopt;
    }

    KVNamedValues record;
    const KVStringList& header = rows.at(0);
    const KVStringList& first = rows.at(1);
    for (qsizetype i = 0; i < header.size() && i < first.size(); ++i)
        record.append({header.at(i), first.at(i)});
    for (qsizetype i = 0; i < custom.properties.size(); ++i)
        record.append({custom.properties.at(i).first, custom.values.value(i)});

    const KVString description = valueOf(record, QStringLiteral("MENU_DESCR"));
    CICad::SetVarStr(QStringLiteral("MENU_DESCR"), description);
    record.append({QStringLiteral("DESCRICAO"), description});
    record.append({QStringLiteral("TP_DESCRI"), description});
    for (const auto& [name, value] : record)
        CICad::SetVarStr(name, value);
    return record;
}

KVString ComponentResolver::valueOf(const KVNamedValues& record, const KVString& name)
{
    for (const auto& [recordName, value] : record) {
        if (recordName == name)
            return value;
    }
    return {};
}

bool ComponentResolver::checkBlockFile(const KVString& blockName)
{
    if (blockName.isEmpty() || blockName.at(0).isSpace()) {
        showCritical(kvTr("Component has empty block name"));
        return false;
    }
    const KVString standard = CICad::GetVarStr(InsAutoNames::kStandardVar);
    const KVString networkDir = CICad::GetVarStr(InsAutoNames::kNetworkDirVar);
    const KVString path = blockFilePath(networkDir, standard, blockName.trimmed());
    if (CICad::FileExists(path))
        return true;
    // The path already ends in ".dwg" and the message adds it again; users know it this way.
    showCritical(kvTr("The file %1.dwg was not found.").arg(path));
    return false;
}

KVString ComponentResolver::blockFilePath(const KVString& networkDir, const KVString& standard,
                                          const KVString& blockName)
{
    return networkDir + QLatin1String("DADOS\\") + standard + QLatin1String("\\BLOCOS\\") +
           blockName + QLatin1String(".dwg");
}
