#include "SettingsEncoding.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <array>

namespace {

// Windows-1252 differs from ISO-8859-1 only in 0x80-0x9F. The five bytes that the code page
// leaves undefined map to the C1 control of the same value, as Windows itself decodes them.
constexpr std::array<char16_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98-9F
};

bool isWindows1252Name(const QString& name)
{
    const QString n = name.trimmed().toLower();
    return n == u"windows-1252" || n == u"cp1252" || n == u"windows1252" || n == u"1252" ||
           n == u"x-cp1252";
}

QString decodeWindows1252(const QByteArray& bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b >= 0x80 && b <= 0x9F)
            text.append(QChar(kWindows1252High[b - 0x80]));
        else
            text.append(QChar(b));
    }
    return text;
}

char encodeWindows1252(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (std::size_t i = 0; i < kWindows1252High.size(); ++i) {
        if (kWindows1252High[i] == c)
            return static_cast<char>(0x80 + i);
    }
    return '?';
}

QByteArray encodeWindows1252(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        // A surrogate pair is one character that the code page cannot hold: one "?".
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        bytes.append(encodeWindows1252(c.unicode()));
    }
    return bytes;
}

// Encodes with a named codec. Some codecs substitute a control character for what they cannot
// hold; checking each character's round trip makes every such character a "?".
QByteArray encodeChecked(const QString& name, const QString& text)
{
    QStringEncoder encoder(name.toLatin1().constData());
    QByteArray bytes = encoder.encode(text);
    QStringDecoder decoder(name.toLatin1().constData());
    if (QString(decoder.decode(bytes)) == text)
        return bytes;
    bytes.clear();
    for (qsizetype i = 0; i < text.size(); ++i) {
        qsizetype length = 1;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            length = 2;
        const QString one = text.mid(i, length);
        QStringEncoder charEncoder(name.toLatin1().constData());
        QStringDecoder charDecoder(name.toLatin1().constData());
        const QByteArray encoded = charEncoder.encode(one);
        bytes.append(QString(charDecoder.decode(encoded)) == one ? encoded : QByteArray("?"));
        i += length - 1;
    }
    return bytes;
}

} // namespace

SettingsEncoding::SettingsEncoding() : m_name(QStringLiteral("System")) {}

std::optional<SettingsEncoding> SettingsEncoding::fromName(const QString& name)
{
    SettingsEncoding encoding;
    encoding.m_name = name.trimmed();
    if (isWindows1252Name(encoding.m_name)) {
        encoding.m_kind = Kind::Windows1252;
        return encoding;
    }
    if (const auto builtin = QStringConverter::encodingForName(encoding.m_name.toLatin1())) {
        encoding.m_builtin = *builtin;
        return encoding;
    }
    // Qt builds with ICU know many more code pages by name.
    if (!encoding.m_name.isEmpty() &&
        QStringEncoder(encoding.m_name.toLatin1().constData()).isValid() &&
        QStringDecoder(encoding.m_name.toLatin1().constData()).isValid()) {
        encoding.m_kind = Kind::Named;
        return encoding;
    }
    return std::nullopt;
}

std::optional<SettingsEncoding> SettingsEncoding::fromEnvironment(QString* error)
{
    const QString value = qEnvironmentVariable(kEnvironmentVariable);
    if (value.trimmed().isEmpty()) // unset or empty: the locale decides
        return SettingsEncoding();
    if (auto encoding = fromName(value))
        return encoding;
    if (error) {
        *error = QStringLiteral("%1=\"%2\" does not name a code page this program knows")
                     .arg(QLatin1String(kEnvironmentVariable), value);
    }
    return std::nullopt;
}

QString SettingsEncoding::decode(const QByteArray& bytes) const
{
    switch (m_kind) {
    case Kind::Windows1252:
        return decodeWindows1252(bytes);
    case Kind::Named: {
        QStringDecoder decoder(m_name.toLatin1().constData());
        return decoder.decode(bytes);
    }
    case Kind::Builtin:
        break;
    }
    // A byte-order mark is an ordinary character to the C library, so it is kept.
    QStringDecoder decoder(m_builtin, QStringConverter::Flag::Stateless |
                                          QStringConverter::Flag::ConvertInitialBom);
    return decoder.decode(bytes);
}

QByteArray SettingsEncoding::encode(const QString& text) const
{
    switch (m_kind) {
    case Kind::Windows1252:
        return encodeWindows1252(text);
    case Kind::Named:
        return encodeChecked(m_name, text);
    case Kind::Builtin:
        break;
    }
    QStringEncoder encoder(m_builtin, QStringConverter::Flag::Stateless);
    return encoder.encode(text);
}
