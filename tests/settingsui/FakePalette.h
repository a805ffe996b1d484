#pragma once

#include "host/ComponentPalette.h"

#include <functional>

// A host palette that a test scripts: the selected standard, and a tree builder (or an error)
// answered for every load. It records the loads asked for.
class FakePalette final : public IComponentPalette
{
public:
    std::optional<CENorma> selected;
    std::function<CEPastaTree(const CENorma&)> build;
    KVString error;
    QList<QPair<CENorma, int>> loads;

    std::optional<CENorma> GetNormaSelecionada() override { return selected; }
    CEPastaTree carga(const CENorma& standard, int flags) override
    {
        loads.append({standard, flags});
        CEPastaTree tree;
        if (!error.isEmpty())
            tree.error = error;
        else if (build)
            tree = build(standard);
        return tree;
    }

    // One entry with its descriptions, language by language.
    static std::unique_ptr<CEPasta> entry(int kind, const KVString& key,
                                          const QList<QPair<int, KVString>>& descriptions)
    {
        auto result = std::make_unique<CEPasta>(kind, key);
        for (const auto& [language, text] : descriptions)
            result->setDescricao(language, text);
        return result;
    }

    // A small palette: "Motors" with two motors and a "Relays" folder with one relay, and a
    // loose component at the root.
    static CEPastaTree sampleTree()
    {
        CEPastaTree tree;
        auto motors = entry(CEPasta::kFolder, "M", {{0, "Motors"}, {1, "Motores"}});
        motors->addChild(entry(CEPasta::kComponent, "101", {{0, "Motor 3~"}}));
        motors->addChild(entry(CEPasta::kComponent, "102", {{1, "Motor monofasico"}}));
        CEPasta* relays = motors->addChild(entry(CEPasta::kFolder, "R", {{0, "Relays"}}));
        relays->addChild(entry(CEPasta::kComponent, "201", {{0, "Relay 24V"}}));
        tree.roots.push_back(std::move(motors));
        tree.roots.push_back(entry(CEPasta::kComponent, "301", {{0, "Fuse"}}));
        return tree;
    }
};
