#pragma once

#include "KVString.h"

#include <QList>

// One element of a drawing-language chain (a result buffer in the host's terms): the typed
// arguments of a function call, or the value of a drawing-language variable.
struct KVPoint3d
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    friend bool operator==(const KVPoint3d&, const KVPoint3d&) = default;
};

struct LispItem
{
    enum class Kind { ListBegin, ListEnd, DottedPair, Text, Integer, Real, Point };

    Kind kind = Kind::Text;
    KVString text;
    qint64 integer = 0;
    double real = 0.0;
    KVPoint3d point;

    static LispItem listBegin() { return {Kind::ListBegin, {}, 0, 0.0, {}}; }
    static LispItem listEnd() { return {Kind::ListEnd, {}, 0, 0.0, {}}; }
    static LispItem dottedPair() { return {Kind::DottedPair, {}, 0, 0.0, {}}; }
    static LispItem fromText(const KVString& t) { return {Kind::Text, t, 0, 0.0, {}}; }
    static LispItem fromInteger(qint64 i) { return {Kind::Integer, {}, i, 0.0, {}}; }
    static LispItem fromReal(double r) { return {Kind::Real, {}, 0, r, {}}; }
    static LispItem fromPoint(const KVPoint3d& p) { return {Kind::Point, {}, 0, 0.0, p}; }

    friend bool operator==(const LispItem&, const LispItem&) = default;
};

using LispChain = QList<LispItem>;
