#pragma once

#include "host/CVRQuery.h"

// The components (key and description in the current description language) whose custom
// properties satisfy every condition: each condition matches one property row of a
// component, and a component is kept only when as many distinct tags matched as there are
// conditions. Never cached.
//
// The condition texts carry the spreadsheet's cell values as they stand, without escaping:
// an apostrophe in a cell breaks the statement, the query fails and the row simply matches
// nothing. Without conditions the statement is not valid either.
class CQuerySearchComponentList final : public CVRQuery
{
public:
    explicit CQuerySearchComponentList(KVStringList conditions);

    // The property `property` (already upper case) holds `value` somewhere in its text.
    static KVString containsCondition(const KVString& property, const KVString& value);
    // The property `property` (already upper case) is exactly `value`, blanks around aside.
    static KVString equalsCondition(const KVString& property, const KVString& value);
    // The statement text for `conditions`, with its placeholder ":lang".
    static QString sqlText(const KVStringList& conditions);

    QString cacheKey() const override { return {}; }
    // Binds ":lang" to the host's current description language.
    QSqlQuery statement(const QSqlDatabase& db) const override;

    const KVStringList& conditions() const { return m_conditions; }

private:
    KVStringList m_conditions;
};
