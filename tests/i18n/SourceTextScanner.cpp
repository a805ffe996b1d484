#include "SourceTextScanner.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <cctype>
#include <optional>

namespace {

class Lexer
{
public:
    explicit Lexer(const QByteArray& text) : m_text(text) {}

    bool atEnd() const { return m_pos >= m_text.size(); }
    int line() const { return m_line; }

    // Skips blanks and comments.
    void skipSpace()
    {
        while (!atEnd()) {
            const char c = m_text.at(m_pos);
            if (c == '\n') {
                ++m_line;
                ++m_pos;
            } else if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v') {
                ++m_pos;
            } else if (c == '/' && peek(1) == '/') {
                while (!atEnd() && m_text.at(m_pos) != '\n')
                    ++m_pos;
            } else if (c == '/' && peek(1) == '*') {
                m_pos += 2;
                while (!atEnd() && !(m_text.at(m_pos) == '*' && peek(1) == '/'))
                    advance();
                m_pos += 2;
            } else {
                return;
            }
        }
    }

    char current() const { return atEnd() ? '\0' : m_text.at(m_pos); }
    char peek(qsizetype offset) const
    {
        return m_pos + offset < m_text.size() ? m_text.at(m_pos + offset) : '\0';
    }
    void advance()
    {
        if (m_text.at(m_pos) == '\n')
            ++m_line;
        ++m_pos;
    }

    static bool isIdentifierChar(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    }

    QByteArray identifier()
    {
        const qsizetype start = m_pos;
        while (!atEnd() && isIdentifierChar(m_text.at(m_pos)))
            ++m_pos;
        return m_text.mid(start, m_pos - start);
    }

    // Reads one string literal starting at '"', decoding escapes.
    QByteArray stringLiteral()
    {
        QByteArray value;
        ++m_pos; // opening quote
        while (!atEnd() && m_text.at(m_pos) != '"') {
            char c = m_text.at(m_pos);
            if (c != '\\') {
                value.append(c);
                advance();
                continue;
            }
            ++m_pos;
            c = current();
            ++m_pos;
            switch (c) {
            case 'n':
                value.append('\n');
                break;
            case 't':
                value.append('\t');
                break;
            case 'r':
                value.append('\r');
                break;
            case '0':
            case '1':
            case '2':
            case '3':
            case '4':
            case '5':
            case '6':
            case '7': {
                int code = c - '0';
                for (int i = 0; i < 2 && current() >= '0' && current() <= '7'; ++i, ++m_pos)
                    code = code * 8 + (current() - '0');
                value.append(char(code));
                break;
            }
            case 'x': {
                int code = 0;
                while (std::isxdigit(static_cast<unsigned char>(current()))) {
                    code = code * 16 + QByteArray(1, current()).toInt(nullptr, 16);
                    ++m_pos;
                }
                value.append(char(code));
                break;
            }
            default:
                value.append(c);
                break; // \" \\ \' \?
            }
        }
        ++m_pos; // closing quote
        return value;
    }

    // Adjacent string literals joined into one, or nothing when the next token is not one.
    std::optional<QByteArray> stringLiterals()
    {
        skipSpace();
        if (current() != '"')
            return std::nullopt;
        QByteArray value;
        while (current() == '"') {
            value += stringLiteral();
            skipSpace();
        }
        return value;
    }

    // Skips a literal that is not of interest, so that its contents are not read as code.
    void skipQuoted()
    {
        const char quote = current();
        ++m_pos;
        while (!atEnd() && m_text.at(m_pos) != quote) {
            if (m_text.at(m_pos) == '\\')
                ++m_pos;
            advance();
        }
        ++m_pos;
    }

    bool consume(char c)
    {
        skipSpace();
        if (current() != c)
            return false;
        ++m_pos;
        return true;
    }

private:
    QByteArray m_text;
    qsizetype m_pos = 0;
    int m_line = 1;
};

void scanFile(const QByteArray& text, const QString& file, SourceScan& scan)
{
    Lexer lexer(text);
    while (true) {
        lexer.skipSpace();
        if (lexer.atEnd())
            return;
        const char c = lexer.current();
        if (c == '"' || c == '\'') {
            lexer.skipQuoted();
            continue;
        }
        if (!Lexer::isIdentifierChar(c)) {
            lexer.advance();
            continue;
        }
        const QByteArray word = lexer.identifier();
        QString context;
        if (word == "kvTr")
            context = QStringLiteral("KVInsertAuto");
        else if (word == "kvTrOffice")
            context = QStringLiteral("KVOfficeSystem");
        else if (word != "QT_TRANSLATE_NOOP")
            continue;
        const int line = lexer.line();
        if (!lexer.consume('('))
            continue;
        if (context.isEmpty()) {
            const auto named = lexer.stringLiterals();
            if (!named || !lexer.consume(','))
                continue;
            context = QString::fromUtf8(*named);
        }
        if (const auto source = lexer.stringLiterals())
            scan.texts.append({context, QString::fromUtf8(*source), file, line});
        else
            scan.dynamicCalls.append({file, line});
    }
}

} // namespace

SourceScan scanSourceTexts(const QString& folder, const QString& skipFile)
{
    SourceScan scan;
    const QDir root(folder);
    QDirIterator it(folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    QStringList files;
    while (it.hasNext())
        files.append(root.relativeFilePath(it.next()));
    files.sort();
    for (const QString& file : files) {
        if (file == skipFile)
            continue;
        QFile input(root.filePath(file));
        if (input.open(QIODevice::ReadOnly))
            scanFile(input.readAll(), file, scan);
    }
    return scan;
}
