#pragma once

#include "CEInsAutoJob.h"
#include "ComponentResolver.h"

class CVRLongOperationTask;

// Where the next symbol goes on the current page.
struct InsertionPoint
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The insertion engine: places the symbols of every item of a job into the pages of the
// active drawing along a row, breaking to the next page where the item list says so, and
// hands each item's values to the drawing. One object serves one run.
class CInsAutoLogic final
{
public:
    CInsAutoLogic() = default;
    CInsAutoLogic(const CInsAutoLogic&) = delete;
    CInsAutoLogic& operator=(const CInsAutoLogic&) = delete;

    // Copies the job and runs it; returns when the run is over. Outcomes are reported to the
    // user by the run itself.
    void Executar(const CEInsAutoJob& job);

private:
    // Per item: the attribute list (targets without "@") and the page-variable list.
    struct ItemTargets
    {
        KVNamedValues attributes;
        KVNamedValues pageVariables;
    };

    void InserirSimbAuto();
    void prepareNextPages();
    void runItems(CVRLongOperationTask& task);
    ItemTargets targetsOf(const CEInsAutoItem& item) const;
    void symbolStep(const KVString& layer, const CEInsAutoEntry& entry, const ItemTargets& targets);
    InsertionPoint placeComponent(const KVString& key, InsertionPoint point,
                                  const KVNamedValues& attributes);
    void pageBreakStep();
    void placePageComponents();
    void placePageBlocks();
    void applyPageVariables(const KVNamedValues& pageVariables);

    CEInsAutoJob m_job;
    KVStringList m_pagesWithComponents;
    KVStringList m_pagesWithBlocks;
    QList<QPair<KVString, KVString>> m_nextPages; // (page name, page layer name)
    InsertionPoint m_point;
    InsertionPoint m_pageStart;
    double m_spaceWidth = 0.0;
};
