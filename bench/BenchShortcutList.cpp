// Rebuild time of the shortcut list with 1,000 shortcuts, each with a daily reminder started
// 30 years ago and a visit record, on real INI files; logic alone and with the real list widget.
#include "Fakes.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "ModelBrowser.h"
#include "QtTextMetrics.h"
#include "frmMain.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {
constexpr int Shortcuts = 1000;
constexpr int Runs = 15;

double medianMs(const std::function<void()>& run)
{
    std::vector<double> times;
    for (int i = 0; i < Runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
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
    frmMain form({shell, settings, boxes, clock, ini, shellWindows, pump, metrics, editor, profilesEditor, docking});
    form.Form_Load();

    const QString file = form.ShortcutsFile();
    const QString start = QDate::currentDate().addYears(-30).toString(QStringLiteral("M/d/yyyy"));
    for (int n = 1; n <= Shortcuts; ++n) {
        const QString section = QStringLiteral("Shortcut%1").arg(n);
        const QString url = QStringLiteral("http://contest%1.example/enter").arg(n);
        ini.writeEntry(file, section, "Title", QStringLiteral("Contest number %1 of the year").arg(n));
        ini.writeEntry(file, section, "URL", url);
        ini.writeEntry(file, section, "Remind", "1");
        ini.writeEntry(file, section, "StartDate", start);
        if (n % 2)
            form.siteFiles().SetLastVisit(url);
    }
    ini.writeEntry(file, "Shortcuts", "Max", QString::number(Shortcuts));

    const double logic = medianMs([&] { form.shortcutList().RequeryShortcuts(); });
    std::printf("shortcut list rebuild, %d shortcuts, logic only: median %.1f ms over %d runs\n",
                form.lvShortcuts.count(), logic, Runs);

    MainWindow window(form);
    window.resize(175, 900);
    window.show();
    QCoreApplication::processEvents();
    const double widget = medianMs([&] {
        form.shortcutList().RequeryShortcuts();
        QCoreApplication::processEvents();
    });
    std::printf("shortcut list rebuild, %d shortcuts, with the list widget: median %.1f ms over %d runs\n",
                form.lvShortcuts.count(), widget, Runs);
    return boxes.shown.empty() ? 0 : 1;
}
