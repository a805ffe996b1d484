#include "FakeCad.h"

#include <QRegularExpression>

std::optional<bool> FakeCad::boolVar(const KVString& name) const
{
    if (!m_boolVars.contains(name))
        return std::nullopt;
    return m_boolVars.value(name);
}

KVString FakeCad::getVarStr(const KVString& name, const KVString& defaultValue)
{
    return m_vars.contains(name) ? m_vars.value(name) : defaultValue;
}

void FakeCad::setVarStr(const KVString& name, const KVString& value)
{
    m_vars.insert(name, value);
}

void FakeCad::setVarBool(const KVString& name, bool value)
{
    m_boolVars.insert(name, value);
}

void FakeCad::setVarLstStr(const KVString& name, const KVStringList& values)
{
    m_listVars.insert(name, values);
}

bool FakeCad::insertBlock(const KVString& path, const KVString& name, const KVString& layer,
                          double x, double y, double z, double angleDegrees)
{
    m_inserted.append({path, name, layer, x, y, z, angleDegrees});
    return true;
}

namespace {

// "*" matches any run of characters and "?" one character; the rest is literal.
QRegularExpression wildcard(const QString& pattern)
{
    QString regex;
    for (const QChar c : pattern) {
        if (c == u'*')
            regex += QLatin1String(".*");
        else if (c == u'?')
            regex += u'.';
        else
            regex += QRegularExpression::escape(QString(c));
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(regex),
                              QRegularExpression::CaseInsensitiveOption);
}

} // namespace

bool FakeCad::writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                                  const KVString& tag, const KVString& value)
{
    const QRegularExpression pattern = wildcard(blockPattern);
    for (BlockReference& reference : m_references) {
        if (reference.layer != layer || !pattern.match(reference.blockName).hasMatch())
            continue;
        for (auto& [attributeTag, attributeValue] : reference.attributes) {
            if (attributeTag.compare(tag, Qt::CaseInsensitive) == 0)
                attributeValue = value;
        }
        return true;
    }
    return false;
}
