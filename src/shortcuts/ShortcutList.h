#pragma once

#include <QString>
#include <functional>

class Clock;
class ErrorReport;
class Ini;
class ListViewControl;
class SiteFiles;
class TextMetrics;

// The current profile's shortcuts in the bar's list: rebuilt from Shortcuts.ini, each row with
// its title, number, address and state icon.
class ShortcutList
{
public:
    struct Services
    {
        const Ini& ini;
        SiteFiles& sites;
        ErrorReport& errors;
        const Clock& clock;
        const TextMetrics& metrics;
        // The current profile's Shortcuts.ini, asked at every use.
        std::function<QString()> shortcutsFile;
        // The list's click handling, run at the end of every rebuild.
        std::function<void()> clickHandling;
    };

    ShortcutList(ListViewControl& list, const Services& services);

    // Rebuilds every row, keeping the scroll position and the selection by shortcut number.
    void RequeryShortcuts();
    // Sets the row's address and state icon from the file and the visit record.
    void DrawShortcut(int row);

private:
    void addRows(int max);

    ListViewControl& m_list;
    Services m_services;
    double m_fontSize = 8.25;
};
