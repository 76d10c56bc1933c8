// The fill of a 100-field form (40 text fields, 20 radio buttons, 20 check boxes, 10 lists,
// 10 text areas) in headless Chromium, through the real browser adapter: median of 15 fills.
#include "CdpBrowser.h"
#include "CdpShell.h"
#include "ChromiumProcess.h"
#include "Fakes.h"
#include "HttpServer.h"
#include "IniFileStore.h"
#include "QtMessagePump.h"
#include "frmMain.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {
QByteArray hundredFields()
{
    QByteArray page = "<html><head><title>Big contest</title></head><body><form>";
    for (int i = 0; i < 40; ++i)
        page += "<input type=text name=t" + QByteArray::number(i) + ">";
    for (int i = 0; i < 10; ++i)
        for (const char* v : {"a", "b"})
            page += "<input type=radio name=r" + QByteArray::number(i) + " value=" + v + ">";
    for (int i = 0; i < 20; ++i)
        page += "<input type=checkbox name=c" + QByteArray::number(i) + " value=yes>";
    for (int i = 0; i < 10; ++i)
        page += "<select name=s" + QByteArray::number(i) + "><option value=x>x</option><option value=y>y</option></select>";
    for (int i = 0; i < 10; ++i)
        page += "<textarea name=a" + QByteArray::number(i) + "></textarea>";
    return page + "</form></body></html>";
}

void pumpUntil(const std::function<bool()>& done, int ms = 20000)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        try {
            if (done())
                return;
        } catch (const AppError&) {
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QString chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    if (chromium.isEmpty()) {
        std::printf("chromium is not installed\n");
        return 1;
    }
    QTemporaryDir dir;
    QTemporaryDir profile;
    HttpServer server({{"/form.html", hundredFields()}});
    FakeShell desktop;
    desktop.appDataFolder = dir.path();
    desktop.tempFolder = dir.path();
    desktop.programFolder = dir.path();
    FakeSettings settings;
    FakeMessageBoxes boxes;
    FakeClock clock;
    IniFileStore ini;
    QtMessagePump pump;
    FakeTextMetrics metrics;
    FakeEditorDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    CdpShell shell([&] {
        return ChromiumProcess::start(chromium, profile.path(),
                                      {QStringLiteral("--headless"), QStringLiteral("--disable-gpu"),
                                       QStringLiteral("--disable-dev-shm-usage")});
    });
    frmMain form({desktop, settings, boxes, clock, ini, shell, pump, metrics, editor, profilesEditor, docking});
    form.Form_Load();
    form.window.setVisible(true);

    const QString url = server.url("/form.html");
    for (int i = 0; i < 40; ++i)
        form.valueStore().SetValue(url, QStringLiteral("t%1").arg(i), QStringLiteral("value %1").arg(i));
    for (int i = 0; i < 10; ++i) {
        form.valueStore().SetValue(url, QStringLiteral("r%1_b").arg(i), "True");
        form.valueStore().SetValue(url, QStringLiteral("s%1").arg(i), "y");
        form.valueStore().SetValue(url, QStringLiteral("a%1").arg(i), "two\r\nlines");
    }
    for (int i = 0; i < 20; ++i)
        form.valueStore().SetValue(url, QStringLiteral("c%1_yes").arg(i), "True");

    shell.OpenAddress(url);
    std::shared_ptr<CdpBrowser> page;
    pumpUntil([&] {
        for (const BrowserPtr& window : shell.items()) {
            if (window->LocationURL() == url)
                page = std::static_pointer_cast<CdpBrowser>(window);
        }
        return page && page->document() && page->document()->readyState() == QLatin1String("complete");
    });
    if (!page) {
        std::printf("the page did not load\n");
        return 1;
    }
    const DocPtr document = page->document();
    std::vector<double> times;
    for (int run = 0; run < 15; ++run) {
        clock.advanceMs(5000); // past the repeat suppression
        QElapsedTimer timer;
        timer.start();
        form.IEHolder_NewDoc(1, document);
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    const bool filled = document->tags("input").first()->value() == QLatin1String("value 0");
    std::printf("fill of a 100-field form in headless Chromium: median %.1f ms over %zu fills (%s)\n",
                times[times.size() / 2], times.size(), filled ? "filled" : "NOT filled");
    return filled && boxes.shown.empty() ? 0 : 1;
}
