#include "CdpDialogGuard.h"

#include "AppError.h"

namespace {
const QString ShowsDialog = QStringLiteral("The page is showing a dialog.");
} // namespace

bool CdpDialogGuard::isRefusal(const AppError& error)
{
    return error.number() == ErrorNumber::BrowserCall && error.description() == ShowsDialog;
}

QStringList CdpDialogGuard::sessionsUnder(const QString& session) const
{
    QStringList sessions{session};
    // Breadth first over the attach tree; every session is listed once.
    for (qsizetype next = 0; next < sessions.size(); ++next) {
        for (auto child = m_parents.constBegin(); child != m_parents.constEnd(); ++child) {
            if (child.value() == sessions[next] && !sessions.contains(child.key()))
                sessions.append(child.key());
        }
    }
    return sessions;
}

void CdpDialogGuard::onEvent(const RemoteConnection::Event& event)
{
    const QString& method = event.method;
    if (method == QLatin1String("Target.attachedToTarget")) {
        m_parents.insert(event.params.value(QLatin1String("sessionId")).toString(),
                         event.sessionId);
    } else if (method == QLatin1String("Target.detachedFromTarget")) {
        m_parents.remove(event.params.value(QLatin1String("sessionId")).toString());
    } else if (method == QLatin1String("Page.javascriptDialogOpening")) {
        const QStringList sessions = sessionsUnder(event.sessionId);
        m_blocked.insert(event.sessionId, sessions);
        m_connection.blockSessions(sessions, ShowsDialog);
    } else if (method == QLatin1String("Page.javascriptDialogClosed")) {
        m_connection.unblockSessions(m_blocked.take(event.sessionId));
    }
}
