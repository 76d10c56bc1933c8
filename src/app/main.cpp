// Main: wires the real adapters to the logic, runs the start-up and shows the bar.
#include "Clock.h"
#include "DesktopShell.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "ModelBrowser.h"
#include "QtMessageBoxes.h"
#include "QtMessagePump.h"
#include "QtTextMetrics.h"
#include "ProfilesDialog.h"
#include "ShortcutDialog.h"
#include "QtSettingsStore.h"
#include "frmMain.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setQuitOnLastWindowClosed(false);

    SystemClock clock;
    DesktopShell shell;
    QtSettingsStore settings;
    QtMessageBoxes boxes;
    IniFileStore ini;
    QtMessagePump pump;
    // No browser adapter yet: the bar follows an empty window list.
    ModelShell shellWindows;
    QtTextMetrics metrics;
    ShortcutDialogDisplay shortcutEditor;
    ProfilesDialogDisplay profilesEditor;

    frmMain form({shell, settings, boxes, clock, ini, shellWindows, pump, metrics, shortcutEditor,
                  profilesEditor});
    MainWindow window(form);
    shell.setKeyTarget(&window);
    boxes.setParentWindow(&window);
    shortcutEditor.setParentWindow(&window);
    profilesEditor.setParentWindow(&window);

    if (form.Form_Load() == frmMain::LoadResult::End)
        return 0;
    shortcutEditor.setHelpFile(form.HelpFile());
    profilesEditor.setHelpFile(form.HelpFile());
    window.show();
    return app.exec();
}
