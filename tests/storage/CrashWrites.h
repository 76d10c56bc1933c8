#pragma once

// The sequence of writes the crash test's storage makes: every second one a shortcut entry
// through WriteINI, the others form values through SetValue (a site file and Any.ini), over a
// few hundred keys so that most writes replace an earlier value.
#include <QString>

namespace CrashWrites {
constexpr int Count = 10000;
inline const QString ShortcutsFile = QStringLiteral("Shortcuts.ini");

struct Write
{
    QString site; // empty for a shortcut entry
    QString section;
    QString key;
    QString value;
};

inline Write write(int number)
{
    const QString value = QStringLiteral("value %1").arg(number);
    if (number % 2 == 0)
        return {
            {}, QStringLiteral("Shortcut%1").arg(number / 2 % 150), QStringLiteral("Title"), value};
    return {QStringLiteral("http://site%1.example/contest").arg(number % 5),
            {},
            QStringLiteral("field%1").arg(number % 97),
            value};
}
} // namespace CrashWrites
