#include "PageCall.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
QJsonArray arrayOf(const QString& elements)
{
    return QJsonDocument::fromJson((QLatin1Char('[') + elements + QLatin1Char(']')).toUtf8())
        .array();
}
} // namespace

QString scriptLiteral(const QJsonValue& value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
        .mid(1)
        .chopped(1);
}

PageCall PageCall::of(const char* function, std::initializer_list<QJsonValue> arguments)
{
    PageCall call{QString::fromLatin1(function), {}, {}};
    for (const QJsonValue& argument : arguments) {
        if (!call.arguments.isEmpty())
            call.arguments += QLatin1Char(',');
        call.arguments += scriptLiteral(argument);
    }
    return call;
}

PageCall PageCall::apply(const QString& writes)
{
    return {QStringLiteral("apply"), QLatin1Char('[') + writes + QLatin1Char(']'), {}};
}

QString PageCall::expression() const
{
    const QString call = QStringLiteral("window.__tolvane.%1(%2)").arg(function, arguments);
    if (writes.isEmpty())
        return call;
    // The writes go first, so whatever is read sees them; a failed one fails the call.
    return QStringLiteral("(window.__tolvane.apply([%1]), %2)").arg(writes, call);
}

QJsonObject PageCall::message() const
{
    return {{QStringLiteral("fn"), function},
            {QStringLiteral("args"), arrayOf(arguments)},
            {QStringLiteral("writes"), arrayOf(writes)}};
}
