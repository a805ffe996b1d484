#include "CELstCampoCfg.h"

#include <stdexcept>
#include <string>

CECampoCfg* CELstCampoCfg::at(int index) const
{
    if (index < 0 || index >= m_rows.size()) {
        throw std::invalid_argument("CELstCampoCfg: index " + std::to_string(index) +
                                    " is outside 0.." + std::to_string(m_rows.size() - 1));
    }
    return m_rows.at(index);
}
