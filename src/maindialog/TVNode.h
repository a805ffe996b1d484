#pragma once

#include <QHashFunctions>
#include <QtGlobal>

#include <limits>

// A handle to one node of the item tree. It stays valid while the node exists and never
// refers to another node afterwards: the tree answers "no such node" for a removed one. The
// null handle means "no node"; first() is the insertion position before all siblings.
class TVNode
{
public:
    constexpr TVNode() = default;

    static constexpr TVNode first() { return TVNode(FirstId); }
    static constexpr TVNode fromId(quint64 id) { return TVNode(id); }

    constexpr bool isNull() const { return m_id == 0; }
    constexpr bool isFirst() const { return m_id == FirstId; }
    constexpr quint64 id() const { return m_id; }

    friend constexpr bool operator==(TVNode, TVNode) = default;
    friend size_t qHash(TVNode node, size_t seed = 0) noexcept { return qHash(node.m_id, seed); }

private:
    static constexpr quint64 FirstId = std::numeric_limits<quint64>::max();

    constexpr explicit TVNode(quint64 id) : m_id(id) {}

    quint64 m_id = 0;
};
