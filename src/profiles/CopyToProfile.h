#pragma once

#include <QString>
#include <functional>

class DataLocation;
class Ini;
class ListViewControl;

// Copies the selected shortcut into another profile's list, unless a shortcut of the same
// title is already there.
class CopyToProfile
{
public:
    CopyToProfile(ListViewControl& list, const Ini& ini, const DataLocation& location,
                  std::function<QString()> shortcutsFile)
        : m_list(list), m_ini(ini), m_location(location), m_shortcutsFile(std::move(shortcutsFile))
    {
    }

    void mnuProfile_Click(int Index);

private:
    ListViewControl& m_list;
    const Ini& m_ini;
    const DataLocation& m_location;
    std::function<QString()> m_shortcutsFile;
};
