#pragma once

#include "maindialog/CTVNodesUtil.h"

#include <QAbstractItemModelTester>
#include <QStringList>
#include <QTranslator>

#include <memory>

namespace ItemTreeTestSupport {

// One child as a short code: "S:<key>" for a Symbol, "P" Page, "H" horizontal space,
// "V" vertical space, "?<kind>" for anything else.
inline QString childCode(const CTVNodesUtil& tree, TVNode child)
{
    switch (tree.GetKind(child)) {
    case TVNodeKind::Symbol: {
        const CEComponente* symbol = tree.GetSymbol(child);
        return QStringLiteral("S:") + (symbol ? QString(symbol->GetKey()) : QStringLiteral("-"));
    }
    case TVNodeKind::Page:
        return QStringLiteral("P");
    case TVNodeKind::HorizontalSpace:
        return QStringLiteral("H");
    case TVNodeKind::VerticalSpace:
        return QStringLiteral("V");
    default:
        return QStringLiteral("?%1").arg(static_cast<int>(tree.GetKind(child)));
    }
}

// The children of one item, e.g. "P,S:K1,H".
inline QString describeChildren(const CTVNodesUtil& tree, TVNode item)
{
    QStringList codes;
    for (const TVNode child : tree.children(item))
        codes.append(childCode(tree, child));
    return codes.join(u',');
}

// The whole tree, e.g. "A[P,S:K1] B[]".
inline QString describe(const CTVNodesUtil& tree)
{
    QStringList items;
    for (const TVNode item : tree.children())
        items.append(tree.GetText(item) + u'[' + describeChildren(tree, item) + u']');
    return items.join(u' ');
}

// A tree that can also hold nodes no operation creates (kind 0, kind 3, unknown kinds), to
// check how the operations treat them.
class TreeWithRawNodes : public CTVNodesUtil
{
public:
    TVNode addRawChild(TVNode item, TVNodeKind kind, const QString& name)
    {
        TVNodeData data;
        data.kind = kind;
        data.name = name;
        data.displayText = name;
        return insertNode(item, TVNode(), std::move(data), TVNodeImage::Symbol);
    }
};

inline std::unique_ptr<CEComponente> component(const QString& key, const QString& description)
{
    return std::make_unique<CEComponente>(key, description);
}

// Puts every text of the module's translation context in angle brackets, so that a test can
// see which texts went through translation.
class MarkerTranslator final : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char*, int) const override
    {
        if (QByteArray(context) != "KVInsertAuto")
            return {};
        return QStringLiteral("<%1>").arg(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return false; }
};

// Every model test runs the model checker on the model it changes.
inline std::unique_ptr<QAbstractItemModelTester> checkModel(QAbstractItemModel* model)
{
    return std::make_unique<QAbstractItemModelTester>(
        model, QAbstractItemModelTester::FailureReportingMode::QtTest);
}

} // namespace ItemTreeTestSupport
