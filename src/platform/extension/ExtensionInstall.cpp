#include "ExtensionInstall.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace ExtensionInstall {
namespace {
struct Browser
{
    const char* executable; // what its executable's name holds
    const char* settings;   // its settings folder under the home folder
    const char* system;     // the folder the package installs the extension in, if any
};

// Firefox's own extensions folder, by the application's id.
const char* const FirefoxSystem =
    "/usr/share/mozilla/extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}/extension@tolvane.org";

const Browser Browsers[] = {
    {"chromium", ".config/chromium", "/usr/share/chromium/extensions/tolvane"},
    {"google-chrome", ".config/google-chrome", nullptr},
    {"microsoft-edge", ".config/microsoft-edge", nullptr},
    {"brave", ".config/BraveSoftware/Brave-Browser", nullptr},
    {"firefox", ".mozilla", FirefoxSystem},
};

bool isFirefox(const Browser& browser)
{
    return QLatin1String(browser.executable) == QLatin1String("firefox");
}

// A profile of the browser's that lists the extension among its own.
bool anyProfileHolds(const QString& settings, bool firefox)
{
    const QString id = firefox ? GeckoId : ChromiumId;
    QDirIterator profiles(settings, QDir::Dirs | QDir::NoDotAndDotDot,
                          firefox ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (profiles.hasNext()) {
        const QString profile = profiles.next();
        if (firefox ? QFileInfo::exists(profile + QStringLiteral("/extensions/") + id +
                                        QStringLiteral(".xpi"))
                    : QFileInfo::exists(profile + QStringLiteral("/Extensions/") + id))
            return true;
        // An unpacked extension the user added is named in the profile's settings.
        for (const char* name : {"Secure Preferences", "Preferences"}) {
            QFile file(profile + QLatin1Char('/') + QLatin1String(name));
            if (!firefox && file.open(QIODevice::ReadOnly) &&
                file.readAll().contains(id.toLatin1()))
                return true;
        }
    }
    return false;
}
} // namespace

bool isInstalledFor(const QString& browserExecutable, const QString& home)
{
    const QString name = QFileInfo(browserExecutable).fileName();
    for (const Browser& browser : Browsers) {
        if (!name.contains(QLatin1String(browser.executable)))
            continue;
        return (browser.system && QFileInfo::exists(QLatin1String(browser.system))) ||
               anyProfileHolds(home + QLatin1Char('/') + QLatin1String(browser.settings),
                               isFirefox(browser));
    }
    return false;
}

QByteArray hostManifest(bool firefox, const QString& hostPath)
{
    QJsonObject manifest{{"name", HostName},
                         {"description", "Tolvane, the bar beside the browser"},
                         {"path", hostPath},
                         {"type", "stdio"}};
    if (firefox)
        manifest.insert("allowed_extensions", QJsonArray{GeckoId});
    else
        manifest.insert("allowed_origins",
                        QJsonArray{QStringLiteral("chrome-extension://%1/").arg(ChromiumId)});
    return QJsonDocument(manifest).toJson();
}

void writeUserHostManifests(const QString& home, const QString& hostPath)
{
    for (const Browser& browser : Browsers) {
        const QString settings = home + QLatin1Char('/') + QLatin1String(browser.settings);
        if (!QFileInfo::exists(settings))
            continue;
        const QString folder =
            settings +
            QLatin1String(isFirefox(browser) ? "/native-messaging-hosts" : "/NativeMessagingHosts");
        const QString path = folder + QLatin1Char('/') + HostName + QStringLiteral(".json");
        const QByteArray content = hostManifest(isFirefox(browser), hostPath);
        QFile existing(path);
        if (existing.open(QIODevice::ReadOnly) && existing.readAll() == content)
            continue;
        QSaveFile file(path);
        if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) ||
            file.write(content) != content.size() || !file.commit())
            qWarning("Tolvane: cannot write the browser's host manifest %s", qPrintable(path));
    }
}

} // namespace ExtensionInstall
