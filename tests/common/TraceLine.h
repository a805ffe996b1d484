#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>

// Expected lines of the host-call trace (one JSON object per call, keys in the order the
// trace writes them), for comparison with TestHost::traceLines().
namespace TraceLine {

QString getvar(const QString& name, const QString& value);
QString setvar(const QString& name, const QString& value);
QString setvar(const QString& name, const char* value);
QString setvar(const QString& name, bool value);
QString setvarList(const QString& name, const QStringList& values);
QString getLayer(const QString& layer);
QString fileExists(const QString& path, bool exists);
QString insertBlock(const QString& path, const QString& name, const QString& layer, double x,
                    double y, double angle);
QString regen();
QString writeAttribute(const QString& layer, const QString& block, const QString& tag,
                       const QString& value);
// A call with text arguments.
QString invoke(const QString& function, const QStringList& args = {});
// A call with typed arguments: texts, numbers, points as [x, y, z].
QString invokeTyped(const QString& function, const QJsonArray& args);
QString lispvar(const QString& name, const std::optional<QJsonArray>& value);
QString print(const QString& text);
QString longOperation(const QString& title);
QString progress(int total);
QString meter();
// A prepared statement with its bound values in the order their placeholders appear.
QString query(const QString& sql, const QList<QPair<QString, QJsonValue>>& binds = {});
QString queryFailed(const QString& error);
QString critical(const QString& text);
QString warning(const QString& text);
QString blockName(const QString& key, const QString& standard, const QString& value);
QString service(const QString& call, const std::optional<QString>& value);

// Empty when the traces are equal; otherwise the first difference and the whole actual trace.
QString diff(const QStringList& actual, const QStringList& expected);

} // namespace TraceLine

// The expected side may hold commas (a braced list): it is taken as the rest of the arguments.
#define KV_COMPARE_TRACE(actual, ...)                                                              \
    do {                                                                                           \
        const QString kvTraceDiff = TraceLine::diff((actual), __VA_ARGS__);                        \
        QVERIFY2(kvTraceDiff.isEmpty(), qPrintable(kvTraceDiff));                                  \
    } while (false)
