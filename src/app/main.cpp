// Main: wires the real adapters to the logic, runs the start-up and shows the bar.
#include "AppError.h"
#include "BidiWindowList.h"
#include "BrowserLocator.h"
#include "CdpWindowList.h"
#include "ChromiumProcess.h"
#include "Clock.h"
#include "DefaultApplication.h"
#include "DesktopShell.h"
#include "DisplayPlatform.h"
#include "ExtensionInstall.h"
#include "ExtensionWindowList.h"
#include "FirefoxProcess.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "ProfilesDialog.h"
#include "QtMessageBoxes.h"
#include "QtMessagePump.h"
#include "QtSettingsStore.h"
#include "QtTextMetrics.h"
#include "ShortcutDialog.h"
#include "TerminationSignals.h"
#include "WidgetDocking.h"
#include "frmMain.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QIcon>
#include <QUrl>

int main(int argc, char* argv[])
{
    DisplayPlatform::chooseBeforeApplication();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setQuitOnLastWindowClosed(false);
    // The installed menu entry and icon name the program's windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tolvane.Tolvane"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.tolvane.Tolvane")));
    // Tahoma is rare outside Windows; a narrow sans keeps the bar's texts inside their boxes.
    QFont::insertSubstitutions(QStringLiteral("Tahoma"), {QStringLiteral("DejaVu Sans Condensed"),
                                                          QStringLiteral("Liberation Sans Narrow"),
                                                          QStringLiteral("Nimbus Sans Narrow"),
                                                          QStringLiteral("Liberation Sans")});

    SystemClock clock;
    DesktopShell shell;
    QtSettingsStore settings;
    QtMessageBoxes boxes;
    IniFileStore ini;
    QtMessagePump pump;
    // The followed browser: one already running (TOLVANE_DEVTOOLS for Chromium, TOLVANE_BIDI for
    // Firefox), else one Tolvane starts with a profile of its own in the data folder, once the
    // start-up knows that folder.
    frmMain* started = nullptr;
    const QString browser = BrowserLocator::executable();
    const auto profileFolder = [&started](const char* name) {
        return started->DataFolder() + QLatin1Char('/') + QLatin1String(name);
    };
    std::unique_ptr<ShellWindowList> followed;
    std::function<void(const QString&)> openInBrowser;
    // The browsers the user has find Tolvane's host; one with the extension is followed through
    // it, unless the environment names a browser to follow otherwise.
    const QString installedHost = QStringLiteral(TOLVANE_HOST_INSTALLED);
    ExtensionInstall::writeUserHostManifests(
        QDir::homePath(),
        QFileInfo::exists(installedHost) ? installedHost : QStringLiteral(TOLVANE_HOST_BUILT));
    const bool namedBrowser = qEnvironmentVariableIsSet("TOLVANE_BIDI") ||
                              qEnvironmentVariableIsSet("TOLVANE_DEVTOOLS") ||
                              qEnvironmentVariableIsSet("TOLVANE_BROWSER");
    const bool throughExtension =
        qEnvironmentVariableIsSet("TOLVANE_EXTENSION") ||
        (!namedBrowser &&
         ExtensionInstall::isInstalledFor(
             DefaultApplication::forMimeType(QStringLiteral("x-scheme-handler/http")),
             QDir::homePath()));
    if (throughExtension) {
        auto extension = std::make_unique<ExtensionWindowList>(
            [](const QString& address) { QDesktopServices::openUrl(QUrl(address)); });
        openInBrowser = [shell = extension.get()](const QString& address) {
            shell->OpenAddress(address);
        };
        followed = std::move(extension);
    } else if (qEnvironmentVariableIsSet("TOLVANE_BIDI") ||
               (!qEnvironmentVariableIsSet("TOLVANE_DEVTOOLS") &&
                BrowserLocator::isFirefox(browser))) {
        auto firefox = std::make_unique<BidiWindowList>([&]() -> std::unique_ptr<FirefoxProcess> {
            const QString endpoint = qEnvironmentVariable("TOLVANE_BIDI");
            if (!endpoint.isEmpty())
                return FirefoxProcess::attach(endpoint);
            return FirefoxProcess::start(browser, profileFolder("Firefox Profile"));
        });
        openInBrowser = [shell = firefox.get()](const QString& address) {
            shell->OpenAddress(address);
        };
        followed = std::move(firefox);
    } else {
        auto chromium = std::make_unique<CdpWindowList>([&]() -> std::unique_ptr<ChromiumProcess> {
            const QString endpoint = qEnvironmentVariable("TOLVANE_DEVTOOLS");
            if (!endpoint.isEmpty())
                return ChromiumProcess::attach(endpoint);
            if (browser.isEmpty())
                throw AppError(ErrorNumber::FileNotFound,
                               QStringLiteral("No web browser Tolvane can follow is installed."));
            return ChromiumProcess::start(browser, profileFolder("Browser Profile"));
        });
        openInBrowser = [shell = chromium.get()](const QString& address) {
            shell->OpenAddress(address);
        };
        followed = std::move(chromium);
    }
    ShellWindowList& shellWindows = *followed;
    // Addresses open in the followed browser, which is started again when it has gone; the
    // desktop's handler opens them only when there is no browser to follow.
    if (throughExtension || qEnvironmentVariableIsSet("TOLVANE_DEVTOOLS") ||
        qEnvironmentVariableIsSet("TOLVANE_BIDI") || !browser.isEmpty())
        shell.setAddressOpener(openInBrowser, boxes);
    QtTextMetrics metrics;
    ShortcutDialogDisplay shortcutEditor;
    ProfilesDialogDisplay profilesEditor;
    WidgetDocking docking;

    frmMain form({shell, settings, boxes, clock, ini, shellWindows, pump, metrics, shortcutEditor,
                  profilesEditor, docking});
    started = &form;
    MainWindow window(form);
    docking.setWindow(&window);
    shell.setKeyTarget(&window);
    boxes.setParentWindow(&window);
    shortcutEditor.setParentWindow(&window);
    profilesEditor.setParentWindow(&window);

    if (form.Form_Load() == frmMain::LoadResult::End)
        return 0;
    TerminationSignals::install([&window] { window.close(); });
    shortcutEditor.setHelpFile(form.HelpFile());
    profilesEditor.setHelpFile(form.HelpFile());
    window.show();
    return app.exec();
}
