#pragma once

#include <QString>

// The page script runs in a sandbox of each browsing context; a realm is named
// context + "\n" + the sandbox realm's id.
namespace BidiRealmNames {
inline QString realmName(const QString& context, const QString& realm)
{
    return context + QLatin1Char('\n') + realm;
}

inline QString realmIdOf(const QString& realmName)
{
    return realmName.section(QLatin1Char('\n'), 1);
}

inline QString contextOf(const QString& realmName)
{
    return realmName.section(QLatin1Char('\n'), 0, 0);
}
} // namespace BidiRealmNames
