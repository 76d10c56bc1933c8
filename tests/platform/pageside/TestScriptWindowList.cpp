#include "AppError.h"
#include "ScriptWindowList.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
// A browser adapter whose browser is scripted by the test: what connecting does and whether
// it works.
class ScriptedWindows : public ScriptWindowList
{
public:
    std::function<void(ScriptedWindows&)> onConnect;
    QString failure; // what connecting throws, if anything
    bool connected = false;
    int connections = 0;

    using ScriptWindowList::activateTitled;
    using ScriptWindowList::addWindow;
    using ScriptWindowList::browserGone;
    using ScriptWindowList::reconnect;
    using ScriptWindowList::windowClosed;

    bool isConnected() const override { return connected; }
    void AppActivate(const QString&) override {}
    DocPtr pageDocument(const QString&) override { return nullptr; }
    QString pageUrl(const QString& windowId) const override { return windowId; }
    void reload(const QString&) override {}
    void markAllClosed() override {}
    DocPtr documentFor(const QString&, const QString&) override { return nullptr; }

protected:
    void openConnection() override
    {
        ++connections;
        if (!failure.isEmpty())
            throw AppError(ErrorNumber::BrowserCall, failure);
        connected = true;
        if (onConnect)
            onConnect(*this);
    }
    void dropConnection() override { connected = false; }
};

// Counts what the window tracking hears, and asks for the list as it does.
struct Tracking : ShellWindowEvents
{
    explicit Tracking(ScriptedWindows& windows) : windows(windows) {}
    void SW_WindowRegistered(int cookie) override
    {
        registered.append(cookie);
        listed = static_cast<int>(windows.items().size());
    }
    void SW_WindowRevoked(int) override { ++revoked; }
    ScriptedWindows& windows;
    QList<int> registered;
    int revoked = 0;
    int listed = 0;
};

QStringList locations(const QList<BrowserPtr>& windows)
{
    QStringList urls;
    for (const auto& window : windows)
        urls.append(window->LocationURL());
    return urls;
}
} // namespace

TEST(ScriptWindowList, AFailedConnectionIsSaidByEveryCallUntilAReconnectWorks)
{
    ScriptedWindows windows;
    windows.failure = u"The browser could not be started."_s;
    auto tracking = std::make_shared<Tracking>(windows);
    windows.subscribe(tracking); // quiet: the start-up goes on without a browser
    for (int call = 0; call < 2; ++call) {
        try {
            windows.items();
            FAIL() << "a failed connection listed windows";
        } catch (const AppError& error) {
            EXPECT_EQ(error.description(), windows.failure);
        }
    }
    EXPECT_EQ(windows.connections, 1) << "the browser is started once per attempt, not per call";

    windows.failure.clear();
    windows.onConnect = [](ScriptedWindows& w) { w.addWindow("tab"); };
    windows.reconnect();
    EXPECT_EQ(locations(windows.items()), QStringList{"tab"});
}

TEST(ScriptWindowList, WindowsAnnouncedWhileConnectingAreListedAndHandlesAreNeverReused)
{
    ScriptedWindows windows;
    windows.onConnect = [](ScriptedWindows& w) {
        w.addWindow("first");
        w.addWindow("second");
    };
    auto tracking = std::make_shared<Tracking>(windows);
    windows.subscribe(tracking);
    EXPECT_EQ(windows.connections, 1) << "a listing while connecting must not connect again";
    EXPECT_EQ(tracking->registered, (QList<int>{1, 2}));
    EXPECT_EQ(tracking->listed, 2);

    windows.addWindow("first"); // a window heard of twice is one window
    windows.windowClosed("first");
    windows.windowClosed("first");
    EXPECT_EQ(tracking->revoked, 1);
    EXPECT_EQ(locations(windows.items()), QStringList{"second"});

    // The browser goes: every holder is freed in one pass, and its windows say they are closed.
    const BrowserPtr old = windows.items().at(0);
    windows.connected = false;
    windows.browserGone();
    windows.browserGone();
    EXPECT_EQ(tracking->revoked, 2);
    EXPECT_THROW(old->HWND(), AppError);

    windows.onConnect = [](ScriptedWindows& w) { w.addWindow("second"); };
    windows.reconnect();
    EXPECT_EQ(tracking->registered, (QList<int>{1, 2, 3}))
        << "the same tab id in a new browser gets a new handle";
    EXPECT_THROW(old->HWND(), AppError) << "the old browser's window stays closed";
}

// The window brought forward for a title: an equal title before one that only begins with it,
// only a tab its window shows, never a closed one; none is an error.
TEST(ScriptWindowList, ATitleBringsForwardTheFirstShownTabOfThatTitle)
{
    ScriptedWindows windows;
    windows.onConnect = [](ScriptedWindows& w) {
        for (const char* id : {"closed", "hidden", "prefix", "exact", "later"})
            w.addWindow(id);
    };
    windows.items();
    windows.windowClosed("closed");
    const QHash<QString, QString> titles{{"closed", "Win a car"},
                                         {"hidden", "Win a car"},
                                         {"prefix", "Win a car - step 2"},
                                         {"exact", "Win a car"},
                                         {"later", "Win a car"}};
    struct Case
    {
        const char* title;
        const char* broughtForward; // nullptr: an error
    } cases[] = {{"Win a car", "exact"},
                 {"Win a", "prefix"},
                 {"Win a car - step 2", "prefix"},
                 {"Lose", nullptr},
                 {"", nullptr}};
    for (const Case& c : cases) {
        QString forward;
        const auto activate = [&] {
            windows.activateTitled(
                QString::fromUtf8(c.title), [&](const QString& id) { return titles.value(id); },
                [&](const QString& id) {
                    if (id == QLatin1String("hidden"))
                        return false;
                    forward = id;
                    return true;
                });
        };
        if (c.broughtForward) {
            activate();
            EXPECT_EQ(forward, QString::fromUtf8(c.broughtForward)) << c.title;
        } else {
            EXPECT_THROW(activate(), AppError) << c.title;
        }
    }
}
