#pragma once

#include <QString>

// The page script runs in a context of Tolvane's own world in each frame; a realm is named
// session + "\n" + context id.
namespace CdpRealmNames {
inline QString key(const QString& session, const QString& part)
{
    return session + QLatin1Char('\n') + part;
}

inline QString realmOf(const QString& session, int context)
{
    return key(session, QString::number(context));
}

inline QString sessionOf(const QString& realm)
{
    return realm.section(QLatin1Char('\n'), 0, 0);
}
} // namespace CdpRealmNames
