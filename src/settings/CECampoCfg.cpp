#include "CECampoCfg.h"

namespace {
const QString kBlankPlaceholder = QStringLiteral(" ");
}

CECampoCfg::CECampoCfg(const KVString& fieldName, const KVString& attribute, const KVString& search,
                       bool show)
    : m_fieldName(fieldName), m_attribute(attribute), m_search(search), m_show(show)
{}

CECampoCfg::CECampoCfg(const KVString& blockName, const KVString& position, const KVString& angle)
    : m_blockName(blockName), m_position(position), m_angle(angle)
{}

KVString CECampoCfg::position() const
{
    return m_position == kBlankPlaceholder ? KVString(QStringLiteral("0,0")) : m_position;
}

KVString CECampoCfg::angle() const
{
    return m_angle == kBlankPlaceholder ? KVString(QStringLiteral("0")) : m_angle;
}
