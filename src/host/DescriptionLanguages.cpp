#include "DescriptionLanguages.h"

#include "CVRServices.h"

#include <algorithm>

DescriptionLanguages DescriptionLanguages::make(int current, const QList<int>& all)
{
    DescriptionLanguages languages;
    languages.current = current;
    for (int language : all) {
        if (language != current && !languages.fallbacks.contains(language))
            languages.fallbacks.append(language);
    }
    std::sort(languages.fallbacks.begin(), languages.fallbacks.end());
    return languages;
}

DescriptionLanguages DescriptionLanguages::fromHost()
{
    CVRServices* services = GetElectricalServices();
    if (!services)
        return {};
    bool ok = false;
    int current = services->GetCurrentLanguage().trimmed().toInt(&ok, 10);
    if (!ok)
        current = 0;
    return make(current, services->GetDescriptionLanguages());
}
