#include "CELstAtributos.h"

#include <stdexcept>
#include <string>

KVString CELstAtributos::at(int index) const
{
    if (index < 0 || index >= m_texts.size()) {
        throw std::invalid_argument("CELstAtributos: index " + std::to_string(index) +
                                    " is outside 0.." + std::to_string(m_texts.size() - 1));
    }
    return m_texts.at(index);
}
