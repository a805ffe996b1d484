#pragma once

#include "DescriptionLanguages.h"
#include "KVString.h"

#include <QMap>

#include <memory>
#include <vector>

// One entry of the host's component palette: a folder, or a component of the standard's
// database. Entries form a tree; each entry owns its children and knows its parent.
class CEPasta final
{
public:
    // GetTipo() of a component; every other value is a folder.
    static constexpr int kComponent = 1;
    static constexpr int kFolder = 0;

    CEPasta(int kind, const KVString& key);
    CEPasta(const CEPasta&) = delete;
    CEPasta& operator=(const CEPasta&) = delete;

    int GetTipo() const { return m_kind; }
    bool isComponent() const { return m_kind == kComponent; }
    // The component key (for a component) or the folder's own key.
    KVString GetKey() const { return m_key; }

    // The description in one language; empty when the entry has none in that language.
    KVString getDescricao(int language) const { return m_descriptions.value(language); }
    void setDescricao(int language, const KVString& description);
    QList<int> descriptionLanguages() const { return m_descriptions.keys(); }

    // The host marks entries whose current-language description is only a placeholder (a copy
    // made when the entry was created in another language). For them the other languages are
    // tried before the current one.
    bool prefersFallbackLanguages() const { return m_prefersFallback; }
    void setPrefersFallbackLanguages(bool prefers) { m_prefersFallback = prefers; }

    // The description to show: the current language's, else the first non-empty one of the
    // fallbacks in their order (the marked entries try the fallbacks first). Empty when the
    // entry has no description at all in these languages.
    KVString preferredDescription(const DescriptionLanguages& languages) const;

    CEPasta* parent() const { return m_parent; }
    const std::vector<std::unique_ptr<CEPasta>>& children() const { return m_children; }
    // Takes over `child` as the last child and returns it.
    CEPasta* addChild(std::unique_ptr<CEPasta> child);

private:
    int m_kind;
    KVString m_key;
    QMap<int, KVString> m_descriptions;
    bool m_prefersFallback = false;
    CEPasta* m_parent = nullptr;
    std::vector<std::unique_ptr<CEPasta>> m_children;
};
