// The test's hands in a Chromium that Tolvane follows through its extension: the browser is the
// user's own, started by the test with the extension loaded from the build tree and the host's
// manifest in its profile; the bar only listens. The test types and reads over DevTools, finding
// a tab's target by the address it shows.
#include "ChromiumDriver.h"
#include "ExtensionWindowList.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {
class ExtensionDriver : public ChromiumDriver
{
public:
    ExtensionDriver(const QString& executable, const QString& profile)
        : ChromiumDriver(executable, profile,
                         {u"--load-extension=" TOLVANE_EXTENSION_DIR ""_s,
                          u"--disable-extensions-except=" TOLVANE_EXTENSION_DIR ""_s}),
          m_extension([this](const QString& address) { m_shell.OpenAddress(address); })
    {
        // The bar's socket, and the host the browser starts, in a runtime folder of the test's.
        qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit());
        writeHostManifest(profile);
        m_shell.items(); // the browser starts now, as the user's would before the bar
    }
    ShellWindowList& shell() override { return m_extension; }
    void openAddress(const QString& url) override { m_extension.OpenAddress(url); }
    bool isConnected() const override { return m_extension.isConnected(); }
    QJsonValue evaluate(const ScriptWindow& page, const QString& expression) override
    {
        return evaluateIn(target(page), expression);
    }

private:
    static void writeHostManifest(const QString& profile)
    {
        QDir(profile).mkpath(u"NativeMessagingHosts"_s);
        QFile manifest(profile + u"/NativeMessagingHosts/org.tolvane.bar.json"_s);
        manifest.open(QIODevice::WriteOnly);
        manifest.write(QJsonDocument(QJsonObject{{"name", "org.tolvane.bar"},
                                                 {"description", "Tolvane"},
                                                 {"path", TOLVANE_HOST_EXE},
                                                 {"type", "stdio"},
                                                 {"allowed_origins",
                                                  QJsonArray{"chrome-extension://"
                                                             "gbjejihkkndoeenjbnhbopeabdjohche/"}}})
                           .toJson());
    }
    // The page target showing the tab's address: the n-th of them when n tabs before it show it.
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
        for (const BrowserPtr& tab : m_shell.items()) {
            if (tab->LocationURL() == url)
                showing.append(std::static_pointer_cast<ScriptWindow>(tab)->windowId());
        }
        if (showing.isEmpty())
            throw AppError(ErrorNumber::BrowserCall, u"No tab shows "_s + url);
        return showing.value(before, showing.last());
    }

    QTemporaryDir m_runtime;
    ExtensionWindowList m_extension;
};
} // namespace

std::unique_ptr<PageDriver> makeExtensionDriver(const QString& profileFolder)
{
    const QString chromium = QStandardPaths::findExecutable(u"chromium"_s);
    if (chromium.isEmpty())
        return nullptr;
    return std::make_unique<ExtensionDriver>(chromium, profileFolder);
}
