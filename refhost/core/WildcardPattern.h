#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>

namespace RefHost {

// A CAD wild-card pattern as used in selection filters, matched ignoring case:
//   *  any text, also empty        ?  any one character
//   #  one digit                   @  one letter
//   .  one character that is neither letter nor digit
//   [abc] [a-z]  one of the listed  [~abc]  one not listed
//   `x  the character x itself     ,  separates alternative patterns
//   ~  at the start of an alternative: matches what the rest does not
class WildcardPattern
{
public:
    explicit WildcardPattern(const QString& pattern);

    bool matches(const QString& text) const;
    const QString& pattern() const { return m_pattern; }

private:
    struct Alternative
    {
        QRegularExpression expression;
        bool negated = false;
    };

    QString m_pattern;
    QList<Alternative> m_alternatives;
};

} // namespace RefHost
