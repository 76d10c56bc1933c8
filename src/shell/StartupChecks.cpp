#include "StartupChecks.h"

#include "AppError.h"
#include "AppInfo.h"
#include "Clock.h"
#include "Ini.h"
#include "MessageBoxes.h"
#include "PrivateFiles.h"
#include "ShellServices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
QString inFolder(const QString& folder, const QString& name)
{
    return folder + QDir::separator() + name;
}
} // namespace

void StartupChecks::CheckBrowser()
{
    const BrowserIdentity browser = m_shell.browserIdentity();
    if (GetIEVersion() < browser.minimumVersionText.toDouble()) {
        m_boxes.show(
            QStringLiteral("Tolvane has determined that you are running a version of ") +
                browser.productName + QStringLiteral(" older than ") + browser.minimumVersionText +
                QStringLiteral(".  You should upgrade to the latest version of ") +
                browser.shortName + QStringLiteral(" in order for Tolvane to work correctly."),
            MsgButtons::Ok, MsgIcon::Exclamation, AppTitle());
    }
    checkDefaultBrowser();
}

void StartupChecks::checkDefaultBrowser()
{
    const BrowserIdentity browser = m_shell.browserIdentity();
    QString testFile;
    QString program;
    // Any failure here leaves the program empty, which warns.
    try {
        testFile = inFolder(m_shell.TempFolder(),
                            QStringLiteral("Test") +
                                m_clock.now().time().toString(QStringLiteral("HHmmss")) +
                                QStringLiteral(".html"));
        QFile file(testFile);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            file.write("\r\n");
            file.close();
            program = m_shell.FindExecutable(testFile);
        }
    } catch (const AppError&) {
    }
    if (!program.contains(browser.executableToken, Qt::CaseInsensitive)) {
        m_boxes.show(browser.shortName +
                         QStringLiteral(" is not your default web browser.  Until you set ") +
                         browser.shortName +
                         QStringLiteral(" to be your default web browser, Tolvane will not work "
                                        "properly."),
                     MsgButtons::Ok, MsgIcon::Exclamation, AppTitle());
    }
    if (!testFile.isEmpty())
        QFile::remove(testFile);
}

double StartupChecks::GetIEVersion()
{
    try {
        const DllVersion version = m_shell.DllGetVersion();
        return QStringLiteral("%1.%2").arg(version.major).arg(version.minor).toDouble();
    } catch (const AppError&) {
        return 0;
    }
}

QString StartupChecks::GetUserFolder()
{
    const QString base = m_shell.AppDataFolder().value_or(m_shell.ProgramFolder());
    const QString folder = inFolder(base, QStringLiteral("Tolvane Data"));
    QDir().mkpath(folder);
    // Made or left open by an older release: the folder and what it holds become the user's alone.
    KeepPrivate(folder);
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden))
        KeepPrivate(file.filePath());
    return folder;
}

void StartupChecks::MoveOldReleaseFiles(const QString& dataFolder, const Ini& ini)
{
    // rename() refuses to replace an existing target, so a second run changes nothing.
    QFile::rename(inFolder(dataFolder, QStringLiteral("Any.ini")),
                  inFolder(dataFolder, QStringLiteral("zAny.ini")));
    QFile::rename(inFolder(dataFolder, QStringLiteral("Shortcuts.ini")),
                  inFolder(dataFolder, QStringLiteral("zShortcuts.ini")));

    const QString oldFile = inFolder(dataFolder, QStringLiteral("zShortcuts.ini"));
    const QString newFile = inFolder(dataFolder, QStringLiteral("Profiles.ini"));
    const QString section = QStringLiteral("Profiles");
    for (int i = 1; i <= 5; ++i) {
        const QString key = QStringLiteral("Profile%1").arg(i);
        const QString name = ini.ReadINI(section, key, QString(), oldFile);
        if (name.isEmpty())
            continue;
        // Blank the old entry only once the name is safe in its new file.
        if (ini.WriteINI(section, key, name, newFile))
            ini.WriteINI(section, key, QString(), oldFile);
    }
}
