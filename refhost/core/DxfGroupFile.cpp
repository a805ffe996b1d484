#include "DxfGroupFile.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <cstring>

namespace RefHost {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// A short, printable excerpt of a faulty line for error messages.
QString excerpt(const QByteArray& line)
{
    QByteArray shown = line.left(40);
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7e)
            c = '?';
    }
    return QString::fromLatin1(shown) + (line.size() > 40 ? QStringLiteral("...") : QString());
}

std::optional<int> parseGroupCode(const QByteArray& line)
{
    const QByteArray text = line.trimmed();
    if (text.isEmpty() || text.size() > 6)
        return std::nullopt;
    for (char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
    }
    const int code = text.toInt();
    if (code > 1071 && code != 999)
        return std::nullopt;
    return code;
}

std::optional<double> parseReal(const QByteArray& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<qint64> parseInteger(const QByteArray& text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (ok)
        return value;
    // Some writers put integral values in real notation ("1.0").
    const std::optional<double> real = parseReal(text);
    if (real && std::abs(*real) < 9.0e15 && *real == std::floor(*real))
        return qint64(*real);
    return std::nullopt;
}

} // namespace

DxfGroupFile::ValueType DxfGroupFile::valueType(int code)
{
    if ((code >= 10 && code <= 59) || (code >= 110 && code <= 149) ||
        (code >= 210 && code <= 239) || (code >= 460 && code <= 469) ||
        (code >= 1010 && code <= 1059))
        return ValueType::Real;
    if ((code >= 60 && code <= 99) || (code >= 160 && code <= 179) ||
        (code >= 270 && code <= 299) || (code >= 370 && code <= 389) ||
        (code >= 400 && code <= 409) || (code >= 420 && code <= 429) ||
        (code >= 440 && code <= 459) || (code >= 1060 && code <= 1071))
        return ValueType::Integer;
    return ValueType::Text;
}

std::optional<DxfGroupFile> DxfGroupFile::load(const QString& path, QString* error)
{
    DxfGroupFile file;
    file.m_path = path;
    const auto fail = [&](const QString& what) -> std::optional<DxfGroupFile> {
        if (error)
            *error = what;
        return std::nullopt;
    };

    const QFileInfo info(path);
    if (!info.exists())
        return fail(file.error(QStringLiteral("the file does not exist")));
    if (!info.isFile())
        return fail(file.error(QStringLiteral("not a regular file")));
    if (info.size() > MaxFileBytes) {
        return fail(file.error(QStringLiteral("the file is %1 bytes long, more than the %2 MiB a "
                                              "drawing may have")
                                   .arg(info.size())
                                   .arg(MaxFileBytes / (1024 * 1024))));
    }
    QFile input(path);
    if (!input.open(QIODevice::ReadOnly))
        return fail(
            file.error(QStringLiteral("cannot open the file: %1").arg(input.errorString())));
    file.m_bytes = input.read(MaxFileBytes + 1);
    if (input.error() != QFileDevice::NoError)
        return fail(
            file.error(QStringLiteral("cannot read the file: %1").arg(input.errorString())));
    if (file.m_bytes.size() > MaxFileBytes)
        return fail(file.error(
            QStringLiteral("the file is larger than %1 MiB").arg(MaxFileBytes / (1024 * 1024))));
    if (file.m_bytes.isEmpty())
        return fail(file.error(QStringLiteral("the file is empty")));
    if (file.m_bytes.startsWith("AutoCAD Binary DXF")) {
        return fail(file.error(QStringLiteral("binary DXF is not supported; save the drawing as "
                                              "ASCII DXF")));
    }

    const char* data = file.m_bytes.constData();
    const qsizetype size = file.m_bytes.size();
    qsizetype pos = file.m_bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    int line = 0;
    bool expectCode = true;
    bool sawEof = false;
    Group group;
    while (pos < size && !sawEof) {
        qsizetype end = pos;
        while (end < size && data[end] != '\n' && data[end] != '\r')
            ++end;
        ++line;
        const qsizetype length = end - pos;
        if (length > MaxLineBytes) {
            return fail(file.error(QStringLiteral("line %1 is longer than %2 characters; this is "
                                                  "not an ASCII DXF file")
                                       .arg(line)
                                       .arg(MaxLineBytes)));
        }
        if (std::memchr(data + pos, 0, size_t(length))) {
            return fail(file.error(
                QStringLiteral("line %1 holds binary data; this is not an ASCII DXF file")
                    .arg(line)));
        }
        if (expectCode) {
            const QByteArray text = QByteArray::fromRawData(data + pos, length);
            const std::optional<int> code = parseGroupCode(text);
            if (!code) {
                return fail(file.error(QStringLiteral("line %1: a group code was expected, found "
                                                      "\"%2\"")
                                           .arg(line)
                                           .arg(excerpt(text))));
            }
            group.code = qint16(*code);
        } else {
            qsizetype first = pos;
            qsizetype last = end;
            while (first < last && isBlank(data[first]))
                ++first;
            while (last > first && isBlank(data[last - 1]))
                --last;
            group.offset = qint32(first);
            group.length = qint32(last - first);
            const QByteArray value = QByteArray::fromRawData(data + first, last - first);
            const ValueType type = group.code == 999 ? ValueType::Text : valueType(group.code);
            if ((type == ValueType::Real && !parseReal(value)) ||
                (type == ValueType::Integer && !parseInteger(value))) {
                return fail(file.error(QStringLiteral("line %1: \"%2\" is not a valid %3 for "
                                                      "group code %4")
                                           .arg(line)
                                           .arg(excerpt(value))
                                           .arg(type == ValueType::Real ? QStringLiteral("number")
                                                                        : QStringLiteral("integer"))
                                           .arg(group.code)));
            }
            file.m_groups.append(group);
            sawEof = group.code == 0 && value == "EOF";
        }
        expectCode = !expectCode;
        // One line ending: "\r\n", "\n" or a lone "\r".
        pos = end;
        if (pos < size && data[pos] == '\r')
            ++pos;
        if (pos < size && data[pos] == '\n')
            ++pos;
    }
    if (!expectCode) {
        return fail(file.error(QStringLiteral("the file ends in the middle of a group (line %1); "
                                              "it is truncated")
                                   .arg(line)));
    }
    if (!sawEof) {
        return fail(file.error(QStringLiteral("the file ends without the EOF marker; it is "
                                              "truncated or not a DXF file")));
    }
    const QString structureError = file.checkStructure();
    if (!structureError.isEmpty())
        return fail(structureError);
    return file;
}

QString DxfGroupFile::checkStructure()
{
    QByteArray section;
    QByteArray table;
    QByteArray block;
    bool inSection = false;
    Object* current = nullptr;
    const auto nameAfter = [this](int index) {
        for (int i = index + 1; i < groupCount() && code(i) != 0; ++i) {
            if (code(i) == 2)
                return value(i);
        }
        return QByteArray();
    };
    const auto closeCurrent = [&](int index) {
        if (current)
            current->end = index;
        current = nullptr;
    };

    for (int i = 0; i < groupCount(); ++i) {
        const int groupCode = code(i);
        if (groupCode == 999)
            continue;
        if (!inSection) {
            if (groupCode == 0 && value(i) == "EOF")
                return QString();
            if (groupCode != 0 || value(i) != "SECTION")
                return errorAt(i, QStringLiteral("a SECTION was expected here"));
            if (i + 1 >= groupCount() || code(i + 1) != 2)
                return errorAt(i, QStringLiteral("the SECTION has no name"));
            section = value(++i);
            inSection = true;
            continue;
        }
        if (groupCode == 9 && section == "HEADER") {
            m_header.insert(value(i), i);
            continue;
        }
        if (groupCode != 0)
            continue;
        const QByteArray type = value(i);
        closeCurrent(i);
        if (type == "ENDSEC") {
            inSection = false;
            section.clear();
            table.clear();
            block.clear();
            continue;
        }
        if (type == "SECTION" || type == "EOF") {
            return errorAt(i, QStringLiteral("the section %1 is not closed with ENDSEC")
                                  .arg(QString::fromLatin1(section)));
        }
        if (type == "TABLE")
            table = nameAfter(i);
        if (type == "BLOCK")
            block = nameAfter(i);
        Object object;
        object.type = type;
        object.section = section;
        object.table = table;
        object.block = block;
        object.begin = i;
        m_objects.append(object);
        current = &m_objects.last();
        if (type == "ENDTAB")
            table.clear();
        if (type == "ENDBLK")
            block.clear();
    }
    return errorAt(groupCount() - 1, QStringLiteral("the section %1 is not closed with ENDSEC")
                                         .arg(QString::fromLatin1(section)));
}

QByteArray DxfGroupFile::value(int index) const
{
    const Group& group = m_groups.at(index);
    return m_bytes.mid(group.offset, group.length);
}

double DxfGroupFile::real(int index) const
{
    return parseReal(value(index)).value_or(0.0);
}

qint64 DxfGroupFile::integer(int index) const
{
    return parseInteger(value(index)).value_or(0);
}

int DxfGroupFile::headerGroup(const QByteArray& name, int wantedCode) const
{
    const int start = m_header.value(name, -1);
    if (start < 0)
        return -1;
    for (int i = start + 1; i < groupCount() && code(i) != 0 && code(i) != 9; ++i) {
        if (code(i) == wantedCode)
            return i;
    }
    return -1;
}

QString DxfGroupFile::error(const QString& what) const
{
    return QStringLiteral("%1: %2").arg(m_path, what);
}

QString DxfGroupFile::errorAt(int index, const QString& what) const
{
    return QStringLiteral("%1: line %2: %3").arg(m_path).arg(lineOf(index)).arg(what);
}

} // namespace RefHost
