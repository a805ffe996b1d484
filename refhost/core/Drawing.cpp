#include "Drawing.h"

#include <algorithm>

namespace RefHost {

namespace {

// The page number N of a layer named GROUP$N, or 0 when the text after the first "$" is not a
// positive number.
int pageNumberOf(const QString& layer)
{
    const qsizetype dollar = layer.indexOf(QLatin1Char('$'));
    if (dollar < 0)
        return 0;
    bool ok = false;
    const int n = layer.mid(dollar + 1).toInt(&ok);
    return ok && n > 0 ? n : 0;
}

} // namespace

Drawing Drawing::withSinglePage(const QString& group)
{
    Drawing drawing;
    const QString layer = drawing.appendPage(group);
    drawing.setCurrentLayer(layer);
    return drawing;
}

// Layer names compare ignoring case, as layer names do in the CAD host. Any non-empty name can be
// made current; when it names a page, that page is thawed and every other page is frozen.
bool Drawing::setCurrentLayer(const QString& layer)
{
    if (layer.isEmpty())
        return false;
    Page* target = findPage(layer);
    if (!target) {
        m_currentLayer = layer;
        return true;
    }
    for (PageGroup& group : m_groups) {
        for (Page& page : group.pages)
            page.frozen = &page != target;
    }
    m_currentLayer = target->layer;
    return true;
}

Page* Drawing::findPage(const QString& layer)
{
    for (PageGroup& group : m_groups) {
        for (Page& page : group.pages) {
            if (page.layer.compare(layer, Qt::CaseInsensitive) == 0)
                return &page;
        }
    }
    return nullptr;
}

const Page* Drawing::findPage(const QString& layer) const
{
    return const_cast<Drawing*>(this)->findPage(layer);
}

PageGroup* Drawing::findGroup(const QString& name)
{
    for (PageGroup& group : m_groups) {
        if (group.name.compare(name, Qt::CaseInsensitive) == 0)
            return &group;
    }
    return nullptr;
}

QString Drawing::appendPage(const QString& group)
{
    const bool firstPage = pageLayers().isEmpty();
    PageGroup* target = findGroup(group);
    if (!target) {
        m_groups.append(PageGroup{group, {}});
        target = &m_groups.last();
    }
    int highest = 0;
    for (const Page& page : std::as_const(target->pages))
        highest = std::max(highest, pageNumberOf(page.layer));
    const QString layer = target->name + QLatin1Char('$') + QString::number(highest + 1);
    // A new page starts frozen unless it is the drawing's first; making it current thaws it.
    target->pages.append(Page{layer, layer, !firstPage});
    return layer;
}

QStringList Drawing::pageLayers() const
{
    QStringList layers;
    for (const PageGroup& group : m_groups) {
        for (const Page& page : group.pages)
            layers.append(page.layer);
    }
    return layers;
}

bool Drawing::addPageLayer(const QString& layer, const QString& title)
{
    if (layer.isEmpty() || findPage(layer))
        return false;
    const QString groupName = groupNameOf(layer);
    PageGroup* group = findGroup(groupName);
    if (!group) {
        m_groups.append(PageGroup{groupName, {}});
        group = &m_groups.last();
    }
    group->pages.append(Page{title.isEmpty() ? layer : title, layer,
                             layer.compare(m_currentLayer, Qt::CaseInsensitive) != 0});
    return true;
}

std::pair<int, int> Drawing::pagePosition(const QString& layer) const
{
    for (const PageGroup& group : m_groups) {
        for (qsizetype i = 0; i < group.pages.size(); ++i) {
            if (group.pages.at(i).layer.compare(layer, Qt::CaseInsensitive) == 0)
                return {int(i + 1), int(group.pages.size())};
        }
    }
    return {0, 0};
}

QString Drawing::groupNameOf(const QString& layer)
{
    const qsizetype dollar = layer.indexOf(QLatin1Char('$'));
    return dollar < 0 ? layer : layer.left(dollar);
}

} // namespace RefHost
