#include "DxfTextCodec.h"

#include <QStringDecoder>

namespace RefHost {

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

// Windows-1252 bytes 0x80-0x9F and the characters they stand for (the rest of 0xA0-0xFF is
// Latin-1).
constexpr char16_t windows1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The Windows-1252 byte of a character, or 0 when the code page has none for it.
char windows1252Byte(char16_t unit)
{
    if ((unit >= 0x20 && unit <= 0x7e) || (unit >= 0xa0 && unit <= 0xff))
        return char(unit);
    for (int i = 0; i < 32; ++i) {
        if (windows1252High[i] == unit && unit != 0)
            return char(0x80 + i);
    }
    return 0;
}

QByteArray escape(char16_t unit)
{
    return QByteArrayLiteral("\\U+") +
           QByteArray::number(unit, 16).toUpper().rightJustified(4, '0');
}

// Each character of `text` as its written form: itself, or an escape where it has to be.
QByteArrayList encodeTokens(const QString& text, bool escapeBlanks)
{
    QByteArrayList tokens;
    tokens.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        const bool startsEscape = unit == u'\\' && text.mid(i + 1, 2) == QLatin1String("U+");
        const char byte = windows1252Byte(unit);
        if (byte == 0 || startsEscape || (escapeBlanks && unit == u' '))
            tokens.append(escape(unit));
        else
            tokens.append(QByteArray(1, byte));
    }
    return tokens;
}

// Escapes blanks at both ends of a run of tokens, since DXF readers strip them.
QByteArray joinWithEdgesEscaped(QByteArrayList tokens)
{
    for (qsizetype i = 0;
         i < tokens.size() && tokens.at(i).size() == 1 && isBlank(QLatin1Char(tokens.at(i).at(0)));
         ++i)
        tokens[i] = escape(char16_t(tokens.at(i).at(0)));
    for (qsizetype i = tokens.size() - 1;
         i >= 0 && tokens.at(i).size() == 1 && isBlank(QLatin1Char(tokens.at(i).at(0))); --i)
        tokens[i] = escape(char16_t(tokens.at(i).at(0)));
    return tokens.join();
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

DxfTextCodec DxfTextCodec::forFile(const QByteArray& acadVersion, const QByteArray& codePage)
{
    DxfTextCodec codec;
    // AC1021 (AutoCAD 2007) and later store texts as UTF-8.
    if (acadVersion.startsWith("AC") && acadVersion.mid(2).toInt() >= 1021) {
        codec.m_codecName = QByteArrayLiteral("UTF-8");
        return codec;
    }
    const QByteArray page = codePage.trimmed().toUpper();
    if (page.startsWith("ANSI_")) {
        const QByteArray name = QByteArrayLiteral("windows-") + page.mid(5);
        if (QStringDecoder(name.constData()).isValid())
            codec.m_codecName = name;
    }
    return codec;
}

QString DxfTextCodec::decode(const QByteArray& bytes) const
{
    QString text;
    if (m_codecName == "UTF-8") {
        text = QString::fromUtf8(bytes);
    } else if (m_codecName == "windows-1252") {
        // The common case, decoded without a converter.
        text.resize(bytes.size());
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes.at(i));
            const char16_t high = byte >= 0x80 && byte < 0xa0 ? windows1252High[byte - 0x80] : 0;
            text[i] = QChar(high ? high : char16_t(byte));
        }
    } else {
        QStringDecoder decoder(m_codecName.constData());
        text = decoder.isValid() ? QString(decoder.decode(bytes)) : QString::fromLatin1(bytes);
    }
    if (!text.contains(QLatin1String("\\U+")))
        return text;

    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('\\') && i + 6 < text.size() &&
            text.at(i + 1) == QLatin1Char('U') && text.at(i + 2) == QLatin1Char('+')) {
            int unit = 0;
            bool ok = true;
            for (int k = 3; k < 7 && ok; ++k) {
                const QChar c = text.at(i + k);
                const int digit = c.unicode() < 128 ? hexValue(char(c.unicode())) : -1;
                ok = digit >= 0;
                unit = unit * 16 + digit;
            }
            if (ok) {
                out.append(QChar(char16_t(unit)));
                i += 6;
                continue;
            }
        }
        out.append(text.at(i));
    }
    return out;
}

QByteArray DxfTextCodec::encode(const QString& text)
{
    // Most texts of a drawing are printable ASCII without a backslash and without a blank at
    // either end: each character is then its own byte, so the text is converted at once
    // instead of one token per character.
    bool plain = text.isEmpty() || (text.front() != u' ' && text.back() != u' ');
    for (qsizetype i = 0; plain && i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        plain = unit >= 0x20 && unit <= 0x7e && unit != u'\\';
    }
    if (plain)
        return text.toLatin1();
    return joinWithEdgesEscaped(encodeTokens(text, false));
}

QByteArrayList DxfTextCodec::encodeChunks(const QString& text, int maxBytes)
{
    // Blanks are always escaped here, so that no piece starts or ends with one wherever the
    // text is cut.
    const int budget = qMax(16, maxBytes);
    const QByteArrayList tokens = encodeTokens(text, true);
    QByteArrayList chunks;
    QByteArrayList current;
    int size = 0;
    for (const QByteArray& token : tokens) {
        if (size + token.size() > budget && !current.isEmpty()) {
            chunks.append(current.join());
            current.clear();
            size = 0;
        }
        current.append(token);
        size += int(token.size());
    }
    if (!current.isEmpty())
        chunks.append(current.join());
    return chunks;
}

} // namespace RefHost
