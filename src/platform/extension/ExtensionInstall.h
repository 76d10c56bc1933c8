#pragma once

#include <QByteArray>
#include <QString>

// Where Tolvane's extension and its native-messaging host are known to the browsers.
namespace ExtensionInstall {

// The host's name, as the extension asks for it.
inline const QString HostName = QStringLiteral("org.tolvane.bar");
// The extension's ids: fixed by the public key in its manifest, and by its gecko id.
inline const QString ChromiumId = QStringLiteral("gbjejihkkndoeenjbnhbopeabdjohche");
inline const QString GeckoId = QStringLiteral("extension@tolvane.org");

// Whether the extension is installed for the browser of that executable (the system's folders
// the package fills, or a profile of the user's in the browser's settings folder under `home`).
bool isInstalledFor(const QString& browserExecutable, const QString& home);
// The host manifest naming the host at `hostPath` and only Tolvane's extension.
QByteArray hostManifest(bool firefox, const QString& hostPath);
// Writes the per-user host manifest for every browser whose settings folder is under `home`
// (Google Chrome, Edge, Brave, Chromium, Firefox), where it differs; says on standard error what
// it could not write.
void writeUserHostManifests(const QString& home, const QString& hostPath);

} // namespace ExtensionInstall
