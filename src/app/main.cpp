// Main: wires the real adapters to the logic, runs the start-up and shows the bar.
#include "AppError.h"
#include "Clock.h"
#include "DesktopShell.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "BrowserLocator.h"
#include "CdpShell.h"
#include "ChromiumProcess.h"
#include "QtMessageBoxes.h"
#include "QtMessagePump.h"
#include "QtTextMetrics.h"
#include "ProfilesDialog.h"
#include "ShortcutDialog.h"
#include "TerminationSignals.h"
#include "WidgetDocking.h"
#include "QtSettingsStore.h"
#include "frmMain.h"

#include <QApplication>
#include <QFont>
#include <QIcon>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setQuitOnLastWindowClosed(false);
    // The installed menu entry and icon name the program's windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tolvane.Tolvane"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.tolvane.Tolvane")));
    // Tahoma is rare outside Windows; a narrow sans keeps the bar's texts inside their boxes.
    QFont::insertSubstitutions(QStringLiteral("Tahoma"),
                               {QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Liberation Sans Narrow"),
                                QStringLiteral("Nimbus Sans Narrow"), QStringLiteral("Liberation Sans")});

    SystemClock clock;
    DesktopShell shell;
    QtSettingsStore settings;
    QtMessageBoxes boxes;
    IniFileStore ini;
    QtMessagePump pump;
    // The followed browser: one already running (TOLVANE_DEVTOOLS), else one Tolvane starts with
    // a profile of its own in the data folder, once the start-up knows that folder.
    frmMain* started = nullptr;
    CdpShell shellWindows([&started]() -> std::unique_ptr<ChromiumProcess> {
        const QString endpoint = qEnvironmentVariable("TOLVANE_DEVTOOLS");
        if (!endpoint.isEmpty())
            return ChromiumProcess::attach(endpoint);
        const QString browser = BrowserLocator::executable();
        if (browser.isEmpty())
            throw AppError(ErrorNumber::FileNotFound, QStringLiteral("No Chromium-family browser is installed."));
        return ChromiumProcess::start(browser, started->DataFolder() + QStringLiteral("/Browser Profile"));
    });
    // Addresses open in the followed browser, which is started again when it has gone; the
    // desktop's handler opens them only when there is no browser to follow.
    if (qEnvironmentVariableIsSet("TOLVANE_DEVTOOLS") || !BrowserLocator::executable().isEmpty())
        shell.setAddressOpener([&shellWindows](const QString& address) { shellWindows.OpenAddress(address); }, boxes);
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
