// The real bar, started as a user starts it, with 1,000 shortcuts in its data folder, on the X
// display given (bench/run starts a virtual one): the time from starting the program to its
// window being mapped, with the browser already running and with Tolvane starting it; then the
// bar's resident memory after start-up and after it has filled 100 pages of the 100-field form.
#include "BenchSupport.h"
#include "ChromiumProcess.h"
#include "FakeShell.h"
#include "HttpServer.h"
#include "IniFileStore.h"
#include "ModelBrowser.h"
#include "PageDriver.h"
#include "RemoteConnection.h"
#include "frmMain.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <xcb/xcb.h>

namespace {
constexpr int Shortcuts = 1000;
constexpr int Fills = 100;

// Waits for a window of the given process to be mapped, on the X display.
class MapWatch
{
public:
    MapWatch() : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection))
            qFatal("cannot open the X display");
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, screen->root, XCB_CW_EVENT_MASK, &mask);
        const char* name = "_NET_WM_PID";
        auto* reply = xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, std::strlen(name), name), nullptr);
        m_pidAtom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        xcb_flush(m_connection);
    }
    ~MapWatch() { xcb_disconnect(m_connection); }

    bool waitForWindowOf(qint64 pid, int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < timeoutMs) {
            while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
                const bool mapped = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
                const xcb_window_t window =
                    reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
                std::free(event);
                if (mapped && pidOf(window) == pid)
                    return true;
            }
            pollfd wait{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            ::poll(&wait, 1, 10);
        }
        return false;
    }

private:
    qint64 pidOf(xcb_window_t window)
    {
        auto* reply = xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, window, m_pidAtom, XCB_ATOM_CARDINAL, 0, 1), nullptr);
        qint64 pid = -1;
        if (reply && xcb_get_property_value_length(reply) == 4)
            pid = *static_cast<const uint32_t*>(xcb_get_property_value(reply));
        std::free(reply);
        return pid;
    }

    xcb_connection_t* m_connection;
    xcb_atom_t m_pidAtom;
};

double residentMb(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return -1;
}

// A data folder as a user's would be after years of use: 1,000 shortcuts, half visited, and
// the values of the 100-field form.
void prepareData(const QString& home, const QString& formUrl)
{
    FakeShell desktop;
    desktop.appDataFolder = home + QStringLiteral("/data");
    desktop.tempFolder = home + QStringLiteral("/tmp");
    desktop.programFolder = home;
    FakeSettings settings;
    FakeMessageBoxes boxes;
    SystemClock clock;
    IniFileStore ini;
    ModelShell windows;
    ImmediatePump pump;
    FakeTextMetrics metrics;
    FakeEditorDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    frmMain form({desktop, settings, boxes, clock, ini, windows, pump, metrics, editor,
                  profilesEditor, docking});
    form.Form_Load();
    bench::writeShortcuts(ini, form.ShortcutsFile(), Shortcuts,
                          [&](const QString& url) { form.siteFiles().SetLastVisit(url); });
    bench::rememberHundredFields(form.valueStore(), formUrl);
}

// A browser of the bench's own, on a debugging port the bar attaches to.
class DebuggedBrowser
{
public:
    DebuggedBrowser(const QString& chromium, const QString& profile)
    {
        QStringList arguments = ChromiumProcess::baseArguments(profile) + chromiumTestArguments();
        arguments << QStringLiteral("--remote-debugging-port=0") << QStringLiteral("about:blank");
        m_process.setProgram(chromium);
        m_process.setArguments(arguments);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start();
        QFile port(profile + QStringLiteral("/DevToolsActivePort"));
        pumpUntil([&] { return port.open(QIODevice::ReadOnly); }, 20000);
        m_endpoint =
            QStringLiteral("http://127.0.0.1:") + QString::fromLatin1(port.readLine().trimmed());
    }
    ~DebuggedBrowser()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    const QString& endpoint() const { return m_endpoint; }

private:
    QProcess m_process;
    QString m_endpoint;
};

class Bar
{
public:
    Bar(const QString& home, const QString& devtools)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home);
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/data"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
        environment.insert(QStringLiteral("TMPDIR"), home + QStringLiteral("/tmp"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home + QStringLiteral("/tmp"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        if (devtools.isEmpty())
            environment.remove(QStringLiteral("TOLVANE_DEVTOOLS"));
        else
            environment.insert(QStringLiteral("TOLVANE_DEVTOOLS"), devtools);
        m_process.setProcessEnvironment(environment);
        m_process.setProgram(QStringLiteral(TOLVANE_EXECUTABLE));
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~Bar()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(10000))
            m_process.kill();
        m_process.waitForFinished();
    }
    // Milliseconds from starting the program to its window on the screen, or -1.
    double start(MapWatch& watch)
    {
        QElapsedTimer timer;
        timer.start();
        m_process.start();
        if (!m_process.waitForStarted() || !watch.waitForWindowOf(m_process.processId(), 30000))
            return -1;
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    qint64 pid() const { return m_process.processId(); }

private:
    QProcess m_process;
};

double medianStart(const QString& home, const QString& devtools, int runs)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        MapWatch watch;
        Bar bar(home, devtools);
        times.push_back(bar.start(watch));
        QThread::msleep(300);
    }
    return *std::min_element(times.begin(), times.end()) < 0 ? -1 : bench::median(times);
}

// Opens the form page anew `count` times through a connection of the bench's own, each time
// at a new address, and waits until the bar has filled it. Returns the number filled.
int fillPages(const QString& endpoint, const QString& formUrl, int count)
{
    const auto browser = ChromiumProcess::attach(endpoint);
    RemoteConnection& cdp = browser->connection();
    const QString target = cdp.call(QStringLiteral("Target.createTarget"), {{"url", "about:blank"}})
                               .value("targetId")
                               .toString();
    const QString session =
        cdp.call(QStringLiteral("Target.attachToTarget"), {{"targetId", target}, {"flatten", true}})
            .value("sessionId")
            .toString();
    int filled = 0;
    for (int page = 0; page < count; ++page) {
        const QString search = QStringLiteral("?page=%1").arg(page);
        cdp.call(QStringLiteral("Page.navigate"), {{"url", formUrl + search}}, session);
        const QString done =
            QStringLiteral("location.search === '%1' && document.readyState === 'complete' && "
                           "document.forms[0].s9.value === 'y'")
                .arg(search);
        filled += pumpUntil(
            [&] {
                return cdp
                    .call(QStringLiteral("Runtime.evaluate"),
                          {{"expression", done}, {"returnByValue", true}}, session)
                    .value("result")
                    .toObject()
                    .value("value")
                    .toBool();
            },
            10000);
        if (filled == 0) {
            std::fprintf(
                stderr, "page %d not filled: %s\n", page,
                qPrintable(
                    cdp.call(QStringLiteral("Runtime.evaluate"),
                             {{"expression",
                               "location.href + ' ' + document.readyState + ' ' + "
                               "document.forms[0].s9.value + ' ' + document.forms[0].t0.value"},
                              {"returnByValue", true}},
                             session)
                        .value("result")
                        .toObject()
                        .value("value")
                        .toString()));
            return 0;
        }
    }
    cdp.call(QStringLiteral("Target.closeTarget"), {{"targetId", target}});
    return filled;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QString chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    if (chromium.isEmpty() || qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::printf("needs chromium and an X display (bench/run provides one)\n");
        return 1;
    }
    QTemporaryDir home;
    for (const char* folder : {"data", "config", "tmp", "browser"})
        QDir(home.path()).mkpath(QLatin1String(folder));
    QFile::setPermissions(home.path() + QStringLiteral("/tmp"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    HttpServer server({{"/form100.html", bench::page("form100.html")}});
    const QString formUrl = server.url("/form100.html");
    prepareData(home.path(), formUrl);
    // Chromium as the default browser, as for a user of the bar: else a notice waits at start-up.
    QFile associations(home.path() + QStringLiteral("/config/mimeapps.list"));
    if (associations.open(QIODevice::WriteOnly))
        associations.write(
            "[Default "
            "Applications]\ntext/html=chromium.desktop\nx-scheme-handler/http=chromium.desktop\n");
    associations.close();

    DebuggedBrowser browser(chromium, home.path() + QStringLiteral("/browser"));
    std::printf("start-up to a shown bar, %d shortcuts, browser already running: median %.0f ms "
                "over 5 starts\n",
                Shortcuts, medianStart(home.path(), browser.endpoint(), 5));
    std::printf("start-up to a shown bar, %d shortcuts, Tolvane starting the browser: median %.0f "
                "ms over 3 starts\n",
                Shortcuts, medianStart(home.path(), QString(), 3));

    MapWatch watch;
    Bar bar(home.path(), browser.endpoint());
    if (bar.start(watch) < 0) {
        std::printf("the bar did not show\n");
        return 1;
    }
    QThread::msleep(2000);
    std::printf("resident memory of the bar after start-up: %.1f MB\n", residentMb(bar.pid()));
    const int filled = fillPages(browser.endpoint(), formUrl, Fills);
    QThread::msleep(1000);
    std::printf("resident memory of the bar after %d fills of the 100-field form: %.1f MB (%d of "
                "%d pages filled)\n",
                Fills, residentMb(bar.pid()), filled, Fills);
    return filled == Fills ? 0 : 1;
}
