#pragma once

// What an end-to-end test does in a real browser as its user would (mouse, keys, tabs) and reads
// of its pages in their own world, over the browser's own protocol.
#include "ScriptWindow.h"
#include "ShellWindowList.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <memory>
#include <ostream>

using namespace Qt::StringLiterals;

class PageDriver
{
public:
    enum class Mouse
    {
        Move,
        Click,
        DoubleClick
    };
    enum class Key
    {
        Tab,
        ArrowDown
    };

    virtual ~PageDriver() = default;
    // The bar's window list over the browser, started with `profile` on first use.
    virtual ShellWindowList& shell() = 0;
    // A new window, as the bar opens an address.
    virtual void openAddress(const QString& url) = 0;
    // A tab in the browser's first window, in front or behind.
    virtual void openTab(const QString& url, bool background) = 0;
    virtual bool isConnected() const = 0;
    virtual void killBrowser() = 0;
    virtual qint64 browserProcessId() const = 0;

    // In the page's own world, as the page would; the value as JSON.
    virtual QJsonValue evaluate(const ScriptWindow& page, const QString& expression) = 0;
    // The same in the document of the page's frame at that index, other sites' too.
    virtual QJsonValue evaluateInFrame(const ScriptWindow& page, int index,
                                       const QString& expression) = 0;
    virtual void mouse(const ScriptWindow& page, Mouse action, int x, int y) = 0;
    virtual void type(const ScriptWindow& page, const QString& text) = 0;
    // Into the focused field as the user pastes it, for texts too long to type.
    virtual void paste(const ScriptWindow& page, const QString& text) = 0;
    virtual void press(const ScriptWindow& page, Key key) = 0;
    virtual void closeTab(const ScriptWindow& page) = 0;
    virtual void acceptDialog(const ScriptWindow& page) = 0;

    // A real mouse click in the middle of the element a script expression finds (inside a shadow
    // root, say), scrolled into view first as the user would.
    void clickOn(const ScriptWindow& page, const QString& element)
    {
        const QJsonArray box =
            evaluate(
                page,
                u"(() => { const e = %1; e.scrollIntoView({block: 'nearest'}); "
                "const r = e.getBoundingClientRect(); "
                "return [Math.round(r.x + r.width / 2), Math.round(r.y + r.height / 2)]; })()"_s
                    .arg(element))
                .toArray();
        mouse(page, Mouse::Click, box[0].toInt(), box[1].toInt());
    }
};

// What a driver does through the bar's window list over its browser the same way in every
// browser.
template <class Shell> class ShellDriver : public PageDriver
{
public:
    explicit ShellDriver(typename Shell::Connector connector) : m_shell(std::move(connector)) {}
    ShellWindowList& shell() override { return m_shell; }
    void openAddress(const QString& url) override { m_shell.OpenAddress(url); }
    bool isConnected() const override { return m_shell.isConnected(); }
    void killBrowser() override { m_shell.process()->kill(); }
    qint64 browserProcessId() const override { return m_shell.process()->processId(); }
    QJsonValue evaluate(const ScriptWindow& page, const QString& expression) override
    {
        return evaluateIn(page.windowId(), expression);
    }

protected:
    // In the page's own world of that tab or frame (as the browser's protocol names it).
    virtual QJsonValue evaluateIn(const QString& where, const QString& expression) = 0;

    Shell m_shell;
};

// What a test's Chromium runs with besides what Tolvane gives it: headless, quiet on a machine
// without a network, passwords kept without the desktop's keyring.
inline QStringList chromiumTestArguments()
{
    return {u"--headless"_s,
            u"--disable-gpu"_s,
            u"--disable-dev-shm-usage"_s,
            u"--disable-background-networking"_s,
            u"--disable-component-update"_s,
            u"--disable-sync"_s,
            u"--password-store=basic"_s};
}

// A text as a script's string literal.
inline QString quoted(const QString& text)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact))
        .mid(1)
        .chopped(1);
}

// How Chromium says its last run with that profile ended ("Normal" when closed as its own Quit
// closes it, so no "Restore pages?" at the next start).
inline QString chromiumExitType(const QString& profile)
{
    QFile preferences(profile + QStringLiteral("/Default/Preferences"));
    if (!preferences.open(QIODevice::ReadOnly))
        return QStringLiteral("<no preferences>");
    return QJsonDocument::fromJson(preferences.readAll())["profile"]["exit_type"].toString();
}

// A text as the keys that type it: one character each, a surrogate pair together.
inline QStringList graphemes(const QString& text)
{
    QStringList characters;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool pair = text.at(i).isHighSurrogate() && i + 1 < text.size();
        characters.append(text.mid(i, pair ? 2 : 1));
        i += pair ? 1 : 0;
    }
    return characters;
}

// A driver for that browser with its own profile folder, or nullptr when it is not installed.
enum class TestBrowser
{
    Chromium,
    Firefox,
    Extension,       // Chromium followed through Tolvane's extension
    FirefoxExtension // Firefox followed through it
};
inline const char* nameOf(TestBrowser browser)
{
    switch (browser) {
    case TestBrowser::Chromium:
        return "Chromium";
    case TestBrowser::Firefox:
        return "Firefox";
    case TestBrowser::Extension:
        return "Extension";
    case TestBrowser::FirefoxExtension:
        break;
    }
    return "FirefoxExtension";
}
inline void PrintTo(TestBrowser browser, std::ostream* out)
{
    *out << nameOf(browser);
}
std::unique_ptr<PageDriver> makeDriver(TestBrowser browser, const QString& profileFolder);
