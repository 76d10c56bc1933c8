#pragma once

#include "RemoteConnection.h"

#include <QHash>
#include <QStringList>

class AppError;

// Keeps calls away from a page while it shows a dialog (alert, confirm, prompt, leave-page):
// such a page runs no script until the dialog closes, so a call would only wait for it. Calls
// to the page and to the frames attached through it then fail at once, those already waiting
// too. Runs on the connection's I/O thread, on the events as they arrive.
class CdpDialogGuard
{
public:
    explicit CdpDialogGuard(RemoteConnection& connection) : m_connection(connection) {}

    void onEvent(const RemoteConnection::Event& event);
    // A call refused or cut short because its page shows a dialog.
    static bool isRefusal(const AppError& error);

private:
    QStringList sessionsUnder(const QString& session) const;

    RemoteConnection& m_connection;
    QHash<QString, QString> m_parents;     // session -> the session it was attached through
    QHash<QString, QStringList> m_blocked; // session showing a dialog -> sessions blocked for it
};
