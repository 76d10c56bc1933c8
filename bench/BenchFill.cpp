// In headless Chromium and headless Firefox, each through its real browser adapter (Chromium also
// through Tolvane's extension), on
// bench/pages/form100.html (40 text fields, 20 radio buttons, 20 check boxes, 10 lists, 10 text
// areas): the median of Tolvane's fill, of the one script evaluation that sets every field (the
// limit), and of capture latency from a user's typing and from a user's focus move to the entry
// being on disk.
#include "BenchBar.h"
#include "HttpServer.h"

#include <chrono>
#include <cstdio>
#include <sys/stat.h>

namespace {
constexpr int Runs = 15;

// A file's identity on disk: a replaced file has a new inode or a new change time.
QByteArray fileStamp(const QString& path)
{
    struct stat info
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return {};
    return QByteArray::number(static_cast<qulonglong>(info.st_ino)) + ':' +
           QByteArray::number(static_cast<qlonglong>(info.st_ctim.tv_sec)) + '.' +
           QByteArray::number(static_cast<qlonglong>(info.st_ctim.tv_nsec));
}

bool fileHas(const QString& path, const QByteArray& line)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll().contains("\r\n" + line + "\r\n");
}

class Bench
{
public:
    Bench(TestBrowser browser, const QString& url) : m_bar(browser), m_url(url) {}

    bool ready() const { return m_bar.ready(); }
    frmMain& form() { return m_bar.form(); }
    bool errorShown() const { return m_bar.errorShown(); }
    std::shared_ptr<ScriptWindow> open() { return m_bar.open(m_url); }
    QJsonValue evaluate(const std::shared_ptr<ScriptWindow>& page, const QString& expression)
    {
        return m_bar.evaluate(page, expression);
    }

    double tolvaneFill(const DocPtr& document)
    {
        return bench::medianMs(Runs, [&] {
            m_bar.clock().advanceMs(5000); // past the repeat suppression
            m_bar.form().IEHolder_NewDoc(1, document);
        });
    }

    struct Latency
    {
        double fromCall;  // from sending the user's input to the browser
        double fromEvent; // from the page's own event (the focus move, the keystroke)
    };
    // Typing into a field, then Tab to the next: each until Any.ini is replaced with the entry.
    std::pair<Latency, Latency> captureLatency(const std::shared_ptr<ScriptWindow>& page)
    {
        const QString any = m_bar.form().valueStore().anyFile();
        // The page notes when its own events happened, on the wall clock.
        m_bar.evaluate(
            page,
            QStringLiteral(
                "(() => { window.benchEvents = {}; for (const kind of ['input', 'change']) "
                "addEventListener(kind, (e) => { benchEvents[kind] = performance.timeOrigin + "
                "e.timeStamp; }, true); })()"));
        std::vector<double> typed[2];
        std::vector<double> moved[2];
        const auto timed = [&](const QByteArray& entry, const char* event,
                               std::vector<double>* into, const std::function<void()>& action) {
            const QByteArray before = fileStamp(any);
            QElapsedTimer timer;
            timer.start();
            action();
            pumpUntil([&] { return fileStamp(any) != before && fileHas(any, entry); }, 5000);
            const double storedAt = std::chrono::duration<double, std::milli>(
                                        std::chrono::system_clock::now().time_since_epoch())
                                        .count();
            into[0].push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            into[1].push_back(
                storedAt -
                m_bar.evaluate(page, QStringLiteral("benchEvents.") + QLatin1String(event))
                    .toDouble());
        };
        for (int run = 0; run < Runs; ++run) {
            const QString field = QStringLiteral("t%1").arg(run);
            const QByteArray entry = field.toLatin1() + "=typed " + QByteArray::number(run);
            m_bar.click(page, QStringLiteral("[name=%1]").arg(field));
            pumpUntil([] { return false; }, 150);
            m_bar.evaluate(
                page, QStringLiteral("document.querySelector('[name=%1]').select()").arg(field));
            timed(entry, "input", typed,
                  [&] { m_bar.driver().type(*page, QStringLiteral("typed %1").arg(run)); });
            pumpUntil([] { return false; }, 100);
            timed(entry, "change", moved,
                  [&] { m_bar.driver().press(*page, PageDriver::Key::Tab); });
            pumpUntil([] { return false; }, 100);
        }
        return {{bench::median(typed[0]), bench::median(typed[1])},
                {bench::median(moved[0]), bench::median(moved[1])}};
    }

private:
    BenchBar m_bar;
    QString m_url;
};

// Prints one browser's figures; false when they could not all be taken.
bool measure(TestBrowser browser, const char* name, HttpServer& server)
{
    Bench bench(browser, server.url("/form100.html"));
    if (!bench.ready())
        return false;
    bench::rememberHundredFields(bench.form().valueStore(), server.url("/form100.html"));
    const auto page = bench.open();
    if (!page) {
        std::printf("%s: the page did not load\n", name);
        return false;
    }
    const DocPtr document = page->document();
    const double tolvane = bench.tolvaneFill(document);
    const bool filled =
        bench.evaluate(page, QStringLiteral("document.forms[0].s9.value")) == QLatin1String("y");
    std::printf("%s: fill of the 100-field form, Tolvane: median %.1f ms over %d fills (%s)\n",
                name, tolvane, Runs, filled ? "filled" : "NOT filled");

    const QString everyField = QString::fromUtf8(bench::page("fill-all.js"));
    const double limit = bench::medianMs(Runs, [&] { bench.evaluate(page, everyField); });
    std::printf("%s: fill of the 100-field form, one script evaluation (the limit): median %.2f ms "
                "over %d runs\n",
                name, limit, Runs);
    std::printf("%s: Tolvane's fill is %.1f times the limit\n", name, tolvane / limit);

    const auto [typed, moved] = bench.captureLatency(page);
    std::printf(
        "%s: capture latency, typing to entry on disk: median %.1f ms from the page's input event, "
        "%.1f ms from sending the text, over %d entries\n",
        name, typed.fromEvent, typed.fromCall, Runs);
    std::printf("%s: capture latency, focus move (Tab) to entry on disk: median %.1f ms from the "
                "page's change "
                "event, %.1f ms from sending the key, over %d entries\n",
                name, moved.fromEvent, moved.fromCall, Runs);
    return filled && !bench.errorShown();
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    HttpServer server({{"/form100.html", bench::page("form100.html")}});
    const bool chromium = measure(TestBrowser::Chromium, "Chromium", server);
    const bool firefox = measure(TestBrowser::Firefox, "Firefox", server);
    const bool extension =
        measure(TestBrowser::Extension, "Chromium through the extension", server);
    return chromium && firefox && extension ? 0 : 1;
}
