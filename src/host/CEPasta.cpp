#include "CEPasta.h"

CEPasta::CEPasta(int kind, const KVString& key) : m_kind(kind), m_key(key) {}

void CEPasta::setDescricao(int language, const KVString& description)
{
    m_descriptions.insert(language, description);
}

KVString CEPasta::preferredDescription(const DescriptionLanguages& languages) const
{
    QList<int> order;
    if (m_prefersFallback)
        order << languages.fallbacks << languages.current;
    else
        order << languages.current << languages.fallbacks;
    for (int language : order) {
        const KVString text = getDescricao(language);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

CEPasta* CEPasta::addChild(std::unique_ptr<CEPasta> child)
{
    child->m_parent = this;
    m_children.push_back(std::move(child));
    return m_children.back().get();
}
