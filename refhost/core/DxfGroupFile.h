#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace RefHost {

// An ASCII DXF file read into memory as its list of (group code, value) pairs, checked for
// the faults that make a file unreadable: not a DXF, binary DXF, truncated, a line that is
// not a group code, a number that does not read as one, sections out of order, no EOF.
// Every later reading step works on a file that passed these checks.
class DxfGroupFile
{
public:
    // Larger files are refused rather than read; drawings of the reference host stay far below.
    static constexpr qint64 MaxFileBytes = 32 * 1024 * 1024;
    // No DXF group value is this long; a longer line means the file is something else.
    static constexpr int MaxLineBytes = 4096;

    // One code-0 record (table entry, block start or end, entity, object): its type, where it
    // is, and its groups [begin, end) with the code-0 group first.
    struct Object
    {
        QByteArray type;
        QByteArray section; // HEADER, TABLES, BLOCKS, ENTITIES, OBJECTS, ...
        QByteArray table;   // the table name inside TABLES
        QByteArray block;   // inside BLOCKS: the block this record belongs to
        int begin = 0;
        int end = 0;
    };

    // Reads and checks the file; on failure `error` names the file and the fault.
    static std::optional<DxfGroupFile> load(const QString& path, QString* error);

    const QString& path() const { return m_path; }
    int groupCount() const { return int(m_groups.size()); }
    int code(int index) const { return m_groups.at(index).code; }
    QByteArray value(int index) const;
    // Numeric values (the group's type was checked while loading).
    double real(int index) const;
    qint64 integer(int index) const;
    // Line of the group code in the file, counted from 1.
    int lineOf(int index) const { return 2 * index + 1; }

    const QList<Object>& objects() const { return m_objects; }
    // The first group with `code` of header variable `name` ($INSBASE ...), or -1.
    int headerGroup(const QByteArray& name, int code) const;

    // Error texts naming the file (and the line of a group).
    QString error(const QString& what) const;
    QString errorAt(int index, const QString& what) const;

    // The kind of value a group code carries, from the DXF reference's ranges.
    enum class ValueType { Text, Real, Integer };
    static ValueType valueType(int code);

private:
    struct Group
    {
        qint32 offset = 0;
        qint32 length = 0;
        qint16 code = 0;
    };

    QString checkStructure();

    QString m_path;
    QByteArray m_bytes;
    QList<Group> m_groups;
    QList<Object> m_objects;
    // Header variable name -> index of its code-9 group.
    QHash<QByteArray, int> m_header;
};

} // namespace RefHost
