// Rebuild time of the shortcut list with 1,000 shortcuts, each with a daily reminder started
// 30 years ago and a visit record, on real INI files; logic alone and with the real list widget.
// Then the time "Remembered values" takes to open with 500 sites more, of four values each.
#include "BenchSupport.h"
#include "FakeShell.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "ModelBrowser.h"
#include "QtTextMetrics.h"
#include "RememberedValuesWindow.h"
#include "frmMain.h"

#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>

namespace {
constexpr int Shortcuts = 1000;
constexpr int Runs = 15;
constexpr int Sites = 500;
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    QTemporaryDir dir;
    FakeShell shell;
    shell.appDataFolder = dir.path();
    shell.tempFolder = dir.path();
    shell.programFolder = dir.path();
    FakeSettings settings;
    FakeMessageBoxes boxes;
    SystemClock clock;
    IniFileStore ini;
    ModelShell shellWindows;
    ImmediatePump pump;
    QtTextMetrics metrics;
    FakeEditorDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    frmMain form({shell, settings, boxes, clock, ini, shellWindows, pump, metrics, editor,
                  profilesEditor, docking});
    form.Form_Load();

    bench::writeShortcuts(ini, form.ShortcutsFile(), Shortcuts,
                          [&](const QString& url) { form.siteFiles().SetLastVisit(url); });

    const double logic = bench::medianMs(Runs, [&] { form.shortcutList().RequeryShortcuts(); });
    std::printf("shortcut list rebuild, %d shortcuts, logic only: median %.1f ms over %d runs\n",
                form.lvShortcuts.count(), logic, Runs);

    MainWindow window(form);
    window.resize(175, 900);
    window.show();
    QCoreApplication::processEvents();
    const double widget = bench::medianMs(Runs, [&] {
        form.shortcutList().RequeryShortcuts();
        QCoreApplication::processEvents();
    });
    std::printf(
        "shortcut list rebuild, %d shortcuts, with the list widget: median %.1f ms over %d runs\n",
        form.lvShortcuts.count(), widget, Runs);

    for (int n = 1; n <= Sites; ++n) {
        const QString site = QStringLiteral("http://site%1.example/entry").arg(n);
        for (const char* key : {"fname", "lname", "email", "phone"})
            form.valueStore().SetValue(site, QLatin1String(key),
                                       QStringLiteral("%1 of %2").arg(QLatin1String(key)).arg(n));
    }
    const auto openAndShow = [&] {
        window.openRememberedValues();
        QCoreApplication::processEvents();
    };
    QElapsedTimer first;
    first.start();
    openAndShow();
    const double firstMs = double(first.nsecsElapsed()) / 1e6;
    const double again = bench::medianMs(Runs, [&] {
        window.rememberedValues()->close();
        openAndShow();
    });
    std::printf("remembered values window, %d site files: first opening %.1f ms, median %.1f ms "
                "over %d openings\n",
                int(form.siteFiles().SiteFileNames().size()), firstMs, again, Runs);
    return boxes.shown.empty() ? 0 : 1;
}
