#pragma once

#include <QList>

// Which description of a palette entry is shown: the host's current description language
// first, then the other languages of the host in ascending order, the first non-empty text
// winning.
struct DescriptionLanguages
{
    int current = 0;
    QList<int> fallbacks;

    // `all` may be unordered and may hold `current`; the fallbacks are the others, ascending.
    static DescriptionLanguages make(int current, const QList<int>& all);
    // Asks the electrical services for the current language (decimal text, base 10; a text
    // that is not a number reads as 0) and for the host's language table. Without services
    // the current language is 0 and there are no fallbacks.
    static DescriptionLanguages fromHost();
};
