#pragma once

#include <QString>

// The data files hold names, addresses and telephone numbers: they and their folder are the
// user's alone. Takes every permission of group and others away; what the owner has stays (a
// file the user made read-only stays read-only). Failures are let be: the file works as before.
void KeepPrivate(const QString& path);
