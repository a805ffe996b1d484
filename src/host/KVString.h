#pragma once

#include <QString>
#include <QStringList>

#include <string>

// The host's wide-character string. It is a thin value type over QString with the conversions
// the module needs; numbers travel as text and a text that is not a number reads as 0.
class KVString : public QString
{
public:
    KVString() = default;
    KVString(const QString& text) : QString(text) {}
    KVString(QString&& text) : QString(std::move(text)) {}
    KVString(const char* utf8) : QString(QString::fromUtf8(utf8)) {}
    KVString(const wchar_t* wide) : QString(QString::fromWCharArray(wide)) {}
    KVString(const std::wstring& wide) : QString(QString::fromStdWString(wide)) {}

    static KVString fromUtf8Text(const QByteArray& utf8) { return QString::fromUtf8(utf8); }

    std::wstring toWide() const { return toStdWString(); }
    const QString& toQString() const { return *this; }

    // Leading-number conversions in the manner of the C library: "12abc" gives 12, "abc" gives 0.
    int toIntLenient() const;
    double toDoubleLenient() const;
};

class KVStringList : public QStringList
{
public:
    KVStringList() = default;
    KVStringList(const QStringList& list) : QStringList(list) {}
    KVStringList(std::initializer_list<QString> list) : QStringList(list) {}

    const QStringList& toQStringList() const { return *this; }
};
