#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <initializer_list>

// One call into a document's page script: a function of its `window.__tolvane` with its
// arguments, run after the writes still pending for the document. Kept as JSON text, since a
// fill queues a write per field and most adapters hand the browser script text.
struct PageCall
{
    QString function;
    QString arguments; // JSON values, comma-separated
    QString writes;    // JSON arrays [id, property, value], comma-separated

    static PageCall of(const char* function, std::initializer_list<QJsonValue> arguments = {});
    // Only the pending writes.
    static PageCall apply(const QString& writes);
    // As script text, for a browser that runs text in the script's realm.
    QString expression() const;
    // As data ({"fn", "args", "writes"}), for a script that takes calls as messages.
    QJsonObject message() const;
};

// The value as a script literal (its JSON text).
QString scriptLiteral(const QJsonValue& value);
