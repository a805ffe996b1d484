#include "CQuerySearchComponentList.h"

#include "host/CVRServices.h"

CQuerySearchComponentList::CQuerySearchComponentList(KVStringList conditions)
    : m_conditions(std::move(conditions))
{}

KVString CQuerySearchComponentList::containsCondition(const KVString& property,
                                                      const KVString& value)
{
    // One pass of arg() for both places, so a value holding "%1" stays as it is.
    return QStringLiteral("( LTRIM(RTRIM(TAG))='%1' and LTRIM(RTRIM(VALUE)) like '%%2%' )")
        .arg(property, value);
}

KVString CQuerySearchComponentList::equalsCondition(const KVString& property, const KVString& value)
{
    return QStringLiteral("( LTRIM(RTRIM(TAG))='%1' and LTRIM(RTRIM(VALUE)) = '%2' )")
        .arg(property, value);
}

QString CQuerySearchComponentList::sqlText(const KVStringList& conditions)
{
    return QStringLiteral("SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang "
                          "and MENU_KEY in ( select LTRIM(RTRIM(ITEM_KEY)) from "
                          "CUSTOM_PROPERTIES where ") +
           conditions.join(QStringLiteral(" or ")) +
           QStringLiteral(" GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = %1 )")
               .arg(conditions.size()) +
           QStringLiteral(" ORDER BY MENU_KEY");
}

QSqlQuery CQuerySearchComponentList::statement(const QSqlDatabase& db) const
{
    QSqlQuery query(db);
    query.prepare(sqlText(m_conditions));
    CVRServices* services = GetElectricalServices();
    query.bindValue(QStringLiteral(":lang"),
                    services ? QString(services->GetCurrentLanguage()) : QString());
    return query;
}
