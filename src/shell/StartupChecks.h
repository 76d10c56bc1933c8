#pragma once

#include <QString>

class Clock;
class Ini;
class MessageBoxes;
class ShellServices;

// The start-up steps that prepare the environment: browser warnings, the data folder and the
// one-time moves of files written by older releases.
class StartupChecks
{
public:
    StartupChecks(ShellServices& shell, MessageBoxes& boxes, const Clock& clock)
        : m_shell(shell), m_boxes(boxes), m_clock(clock)
    {
    }

    // Warns about an old browser and about another default browser; never fails.
    void CheckBrowser();
    // major.minor read as a decimal number; 0 when the version cannot be read.
    double GetIEVersion();
    // The data folder path; the folder is created when it can be. Throws when the path cannot
    // be found.
    QString GetUserFolder();
    // Gives Any.ini and Shortcuts.ini the first profile's names and moves profile names to
    // Profiles.ini; every failure is ignored.
    static void MoveOldReleaseFiles(const QString& dataFolder, const Ini& ini);

private:
    void checkDefaultBrowser();

    ShellServices& m_shell;
    MessageBoxes& m_boxes;
    const Clock& m_clock;
};
