// The test's hands in a browser that Tolvane follows through its extension: the browser is the
// user's own, started by the test with the extension (loaded from the build tree in Chromium,
// installed as a temporary add-on in Firefox) and the host's manifest where that browser looks
// for it; the bar only listens. The test types and reads over the browser's own protocol,
// finding a tab there by the address it shows.
#include "ChromiumDriver.h"
#include "ExtensionInstall.h"
#include "ExtensionWindowList.h"
#include "FirefoxDriver.h"
#include "PumpUntil.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {
void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

// Whether a running process has the text on its command line.
bool anyProcessNames(const QString& text)
{
    for (const QString& pid : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile commandLine(u"/proc/"_s + pid + u"/cmdline"_s);
        if (pid.front().isDigit() && commandLine.open(QIODevice::ReadOnly) &&
            commandLine.readAll().contains(text.toLocal8Bit()))
            return true;
    }
    return false;
}

template <class Hands> class ThroughExtension : public Hands
{
public:
    template <class... Arguments>
    explicit ThroughExtension(const QString& hostManifest, const QString& profile,
                              Arguments&&... arguments)
        : Hands(std::forward<Arguments>(arguments)...), m_profile(profile),
          m_extension([this](const QString& address) { this->m_shell.OpenAddress(address); })
    {
        // The bar's socket and the host's runtime folder, and the home Firefox looks for the
        // host's manifest in, the test's own.
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit());
        qputenv("HOME", m_runtime.path().toLocal8Bit());
        writeFile(QString(hostManifest).replace(u"~"_s, m_runtime.path()),
                  ExtensionInstall::hostManifest(std::is_same_v<Hands, FirefoxDriver>,
                                                 QStringLiteral(TOLVANE_HOST_EXE)));
        this->m_shell.items(); // the browser starts now, as the user's would before the bar
    }
    ~ThroughExtension() override { qputenv("HOME", m_home); }
    void killBrowser() override
    {
        // Chromium writes down the events that wake the extension a while after it starts; one
        // killed before that has nothing to wake it at its next start. A user's browser has long
        // written them down.
        if constexpr (std::is_same_v<Hands, ChromiumDriver>) {
            pumpUntil(
                [&] {
                    QFile preferences(m_profile + u"/Default/Preferences"_s);
                    return preferences.open(QIODevice::ReadOnly) &&
                           preferences.readAll().contains("runtime.onStartup");
                },
                15000);
        }
        Hands::killBrowser();
        // Its other processes end soon after; a browser started meanwhile would meet them.
        pumpUntil([&] { return !anyProcessNames(m_profile); }, 15000);
    }
    ShellWindowList& shell() override { return m_extension; }
    void openAddress(const QString& url) override { m_extension.OpenAddress(url); }
    bool isConnected() const override { return m_extension.isConnected(); }
    QJsonValue evaluate(const ScriptWindow& page, const QString& expression) override
    {
        return this->evaluateIn(target(page), expression);
    }

private:
    // The tab showing the page's address in the browser's own protocol: the n-th of them when n
    // tabs before it show it.
    QString target(const ScriptWindow& page) override
    {
        const QString url = page.LocationURL();
        int before = 0;
        for (const BrowserPtr& tab : m_extension.items()) {
            if (tab.get() == &page)
                break;
            before += tab->LocationURL() == url ? 1 : 0;
        }
        QStringList showing;
        for (const BrowserPtr& tab : this->m_shell.items()) {
            if (tab->LocationURL() == url)
                showing.append(std::static_pointer_cast<ScriptWindow>(tab)->windowId());
        }
        if (showing.isEmpty())
            throw AppError(ErrorNumber::BrowserCall, u"No tab shows "_s + url);
        return showing.value(before, showing.last());
    }

    QString m_profile;
    QByteArray m_home = qgetenv("HOME");
    QTemporaryDir m_runtime;
    ExtensionWindowList m_extension;
};
} // namespace

std::unique_ptr<PageDriver> makeExtensionDriver(bool firefox, const QString& profile)
{
    const QString executable =
        QStandardPaths::findExecutable(firefox ? u"firefox-esr"_s : u"chromium"_s);
    if (executable.isEmpty())
        return nullptr;
    if (firefox)
        return std::make_unique<ThroughExtension<FirefoxDriver>>(
            u"~/.mozilla/native-messaging-hosts/org.tolvane.bar.json"_s, profile, executable,
            profile, [](FirefoxProcess& browser) {
                // A temporary add-on, as Firefox runs unsigned extensions; again at each start.
                browser.connection().call(
                    u"webExtension.install"_s,
                    {{"extensionData",
                      QJsonObject{{"type", "path"}, {"path", TOLVANE_EXTENSION_DIR "/firefox"}}}});
            });
    return std::make_unique<ThroughExtension<ChromiumDriver>>(
        profile + u"/NativeMessagingHosts/org.tolvane.bar.json"_s, profile, executable, profile,
        QStringList{u"--load-extension=" TOLVANE_EXTENSION_DIR "/chromium"_s,
                    u"--disable-extensions-except=" TOLVANE_EXTENSION_DIR "/chromium"_s});
}
