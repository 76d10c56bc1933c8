#pragma once

#include <QString>
#include <memory>

class QProcess;
class RemoteConnection;

// The end of a browser Tolvane started, the same for every browser adapter.
namespace BrowserEnd {

// As the browser's own Quit: asked through its connection with `quitMethod` (its windows closed,
// its profile written), then, if it lingers, terminated and at last killed. The connection is
// dropped on the way. Nothing happens to a process that has already ended.
void quit(QProcess* process, std::unique_ptr<RemoteConnection>& connection,
          const QString& quitMethod);
// At once, as a crash would.
void kill(QProcess* process);

} // namespace BrowserEnd
