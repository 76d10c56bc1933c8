#pragma once

#include "BrowserLocator.h"
#include "ShellServices.h"

#include <QLockFile>
#include <QPointer>
#include <functional>
#include <memory>

class MessageBoxes;
class QWidget;

// The shell services on a desktop: an instance lock in the temporary folder, the installed
// Chromium-family browser, freedesktop file associations and the per-user data folder.
class DesktopShell : public ShellServices
{
public:
    DesktopShell();
    ~DesktopShell() override;

    // Where SendKeys delivers its keys when no widget of the program has the focus.
    void setKeyTarget(QWidget* target);
    // Opens addresses in the followed browser (throwing AppError when it cannot, which the user
    // is told in a message box). Without one, addresses go to the desktop's own handler.
    void setAddressOpener(std::function<void(const QString&)> opener, MessageBoxes& notices)
    {
        m_opener = std::move(opener);
        m_notices = &notices;
    }

    bool IsAnotherInstanceRunning() override;
    BrowserIdentity browserIdentity() override;
    DllVersion DllGetVersion() override;
    QString TempFolder() override;
    QString FindExecutable(const QString& file) override;
    std::optional<QString> AppDataFolder() override;
    QString ProgramFolder() override;
    void SendKeys(const QString& keys) override;
    void OpenAddress(const QString& address) override;
    // The folder of the program's own files (its help): beside the program, or where the
    // installation puts them.
    static QString programFilesFolder(const QString& programDir);
    void PopupMenu(MenuControl& menu, Control* defaultItem) override;

private:
    std::optional<BrowserLocator::VersionInfo> browserVersion();

    std::unique_ptr<QLockFile> m_instanceLock;
    QString m_browser;
    bool m_versionAsked = false;
    std::optional<BrowserLocator::VersionInfo> m_version;
    QPointer<QWidget> m_keyTarget;
    std::function<void(const QString&)> m_opener;
    MessageBoxes* m_notices = nullptr;
};
