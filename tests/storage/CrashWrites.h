#pragma once

// The sequence of writes the crash test's storage makes: every second one a shortcut entry
// through WriteINI, the others form values through SetValue (a site file and Any.ini), over a
// few hundred keys so that most writes replace an earlier value.
#include <QString>

using namespace Qt::StringLiterals;

namespace CrashWrites {
constexpr int Count = 10000;
inline const QString ShortcutsFile = u"Shortcuts.ini"_s;

struct Write
{
    QString site; // empty for a shortcut entry
    QString section;
    QString key;
    QString value;
};

inline Write write(int number)
{
    const QString value = u"value %1"_s.arg(number);
    if (number % 2 == 0)
        return {{}, u"Shortcut%1"_s.arg(number / 2 % 150), u"Title"_s, value};
    return {u"http://site%1.example/contest"_s.arg(number % 5),
            {},
            u"field%1"_s.arg(number % 97),
            value};
}
} // namespace CrashWrites
