// The browser's life beside the bar: gone and started again for the next shortcut, closed
// cleanly on Exit, its tabs back at the next start; and a browser that cannot run is said once.
#include "BarFixture.h"
#include "BidiWindowList.h"
#include "BrowserTracking.h"
#include "CdpWindowList.h"
#include "ChromiumProcess.h"
#include "DesktopShell.h"
#include "FirefoxProcess.h"
#include "ScriptExecutable.h"
#include "ShortcutCommands.h"

#include <QDir>
#include <QJsonDocument>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {
const QByteArray FormPage = "<html><head><title>Prize draw</title></head><body>"
                            "<form><input name=fname><input type=email name=mail></form>"
                            "<p style='height:600px'>Good luck</p></body></html>";

class TestBrowserLife : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/draw.html", FormPage},
                {"/a.html", "<title>Tab A</title><p>a</p>"},
                {"/b.html", "<title>Tab B</title><p>b</p>"}};
    }
    void SetUp() override
    {
        BarFixture::SetUp();
        // Addresses the logic opens go to the desktop's opener, which goes to the followed browser.
        desktop.setAddressOpener([this](const QString& address) { driver->openAddress(address); },
                                 f.boxes);
        f.shell.onOpen = [this](const QString& address) { desktop.OpenAddress(address); };
    }
    QStringList pageUrls()
    {
        QStringList urls;
        for (const BrowserPtr& window : windows())
            urls << window->LocationURL();
        return urls;
    }
    std::shared_ptr<ScriptWindow> windowShowing(const QString& url)
    {
        for (const BrowserPtr& window : windows()) {
            if (window->LocationURL() == url)
                return std::static_pointer_cast<ScriptWindow>(window);
        }
        return nullptr;
    }
    int heldWindows()
    {
        int held = 0;
        for (int i = 1; i <= form->tracking().upperBound(); ++i)
            held += BrowserTracking::GetHWND(form->tracking().holder(i)->InternetExplorer()) != 0;
        return held;
    }

    DesktopShell desktop;
};
// A browser the bar starts or attaches to itself: the two adapters that do.
class TestBrowserStart : public TestBrowserLife
{
};

TEST_P(TestBrowserLife, AShortcutOpenedAfterTheBrowserDiedStartsItAgainAndItIsFollowed)
{
    const QString draw = server->url("/draw.html");
    form->valueStore().SetValue(draw, "fname", "Ann");
    const QString file = form->ShortcutsFile();
    f.ini.writeEntry(file, "Shortcuts", "Max", "1");
    f.ini.writeEntry(file, "Shortcut1", "Title", "Prize draw");
    f.ini.writeEntry(file, "Shortcut1", "URL", draw);
    form->shortcutList().RequeryShortcuts();
    open(server->url("/a.html"));
    ASSERT_GE(heldWindows(), 1);

    const qint64 first = driver->browserProcessId();
    driver->killBrowser();
    ASSERT_TRUE(waitFor([&] { return !driver->isConnected(); }));
    // Its windows are no longer followed.
    EXPECT_TRUE(waitFor([&] { return heldWindows() == 0; }));

    // The user presses Enter on the shortcut.
    form->lvShortcuts.setSelectedIndex(0);
    form->shortcutCommands().lvShortcuts_KeyDown(13);
    ASSERT_TRUE(waitFor([&] { return driver->isConnected(); }));
    EXPECT_NE(driver->browserProcessId(), first);
    std::shared_ptr<ScriptWindow> page;
    ASSERT_TRUE(waitFor([&] { return (page = windowShowing(draw)) != nullptr; }))
        << pageUrls().join(' ').toStdString();
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Ann"); }));
    // Followed as at start-up: typing is remembered, a click is a visit.
    click(page, "[name=mail]");
    type(page, u"ann@example.org"_s);
    tab(page);
    EXPECT_TRUE(waitFor([&] {
        return form->valueStore().GetValue(draw, "mail", "") == QLatin1String("ann@example.org");
    }));
    EXPECT_TRUE(waitFor([&] { return form->siteFiles().LastVisitDate(draw).has_value(); }));
    expectNoErrorBox();
}

TEST_P(TestBrowserLife, ExitClosesTheBrowserCleanlyAndTheNextStartHasTheTabsBack)
{
    open(server->url("/a.html"));
    open(server->url("/b.html"));
    stopBar();
    // Closed as its own Quit closes it: no "Restore pages?" at the next start.
    if (!onFirefox()) {
        EXPECT_EQ(chromiumExitType(profile.path()), u"Normal"_s);
    }
    // A port name a crashed Firefox left behind is not taken for the new one's.
    QFile stale(profile.path() + u"/WebDriverBiDiServer.json"_s);
    if (onFirefox() && stale.open(QIODevice::WriteOnly))
        stale.write(R"({"ws_host": "127.0.0.1", "ws_port": 1})");
    stale.close();

    startBar();
    EXPECT_TRUE(waitFor([&] {
        const QStringList urls = pageUrls();
        return urls.contains(server->url("/a.html")) && urls.contains(server->url("/b.html"));
    })) << pageUrls().join(' ').toStdString();
    // The restored tabs are followed like any other.
    EXPECT_TRUE(waitFor([&] { return heldWindows() >= 2; }));
    expectNoErrorBox();
}

TEST_P(TestBrowserStart, ABrowserThatCannotRunIsSaidOncePerAttemptAndTheBarGoesOn)
{
    QTemporaryDir bin;
    const QString endsAtOnce = scriptThatExits(bin.path(), u"ends-at-once"_s, 3);
    // The bar's window list over a browser that cannot be run, of the test's kind.
    using Shell = std::pair<std::unique_ptr<ShellWindowList>, std::function<void(const QString&)>>;
    const auto over = [](auto shell) {
        auto* opener = shell.get();
        return Shell{std::move(shell),
                     [opener](const QString& address) { opener->OpenAddress(address); }};
    };
    const auto starting = [&](const QString& executable) {
        return [&, executable] {
            if (onFirefox())
                return over(std::make_unique<BidiWindowList>([this, executable] {
                    return FirefoxProcess::start(executable, profile.path());
                }));
            return over(std::make_unique<CdpWindowList>([this, executable] {
                return ChromiumProcess::start(executable, profile.path(), chromiumTestArguments());
            }));
        };
    };
    struct Case
    {
        const char* name;
        std::function<Shell()> shell;
        const char* says;
    } cases[] = {
        {"missing", starting(bin.path() + u"/no-such-browser"_s), "could not be started"},
        {"ends at once", starting(endsAtOnce), "ended as soon as it started (exit code 3)"},
        // The user's own browser, attached to, has gone: nothing is started in its place.
        {"attached, gone",
         [&] {
             if (onFirefox())
                 return over(std::make_unique<BidiWindowList>(
                     [] { return FirefoxProcess::attach(u"ws://127.0.0.1:1"_s); }));
             return over(std::make_unique<CdpWindowList>(
                 [] { return ChromiumProcess::attach(u"http://127.0.0.1:1"_s); }));
         },
         "127.0.0.1:1"},
    };
    for (const Case& c : cases) {
        stopBar();
        auto [shell, opener] = c.shell();
        desktop.setAddressOpener(opener, f.boxes);
        form = std::make_unique<frmMain>(frmMain::Services{f.shell, f.settings, f.boxes, clock,
                                                           f.ini, *shell, pump, f.metrics, f.editor,
                                                           f.profilesEditor, f.docking});
        f.boxes.shown.clear();
        form->Form_Load();
        for (int attempt = 1; attempt <= 2; ++attempt) {
            desktop.OpenAddress(server->url("/draw.html"));
            waitFor([] { return false; }, 200);
            ASSERT_EQ(f.boxes.shown.size(), static_cast<size_t>(attempt)) << c.name;
            const QString text = f.boxes.shown.back().text;
            EXPECT_TRUE(text.contains(server->url("/draw.html")) &&
                        text.contains(QLatin1String(c.says)))
                << c.name << ": " << text.toStdString();
        }
        // The bar's own work goes on.
        form->cmdPause.click();
        EXPECT_TRUE(form->isPaused()) << c.name;
        form->cmdPause.click();
        // The bar goes before the window list it follows.
        stopBar();
    }
}
ON_EVERY_BROWSER(TestBrowserLife);
ON_BROWSERS(TestBrowserStart, TestBrowser::Chromium, TestBrowser::Firefox);
} // namespace
