#include "CdpDocument.h"

#include "AppError.h"
#include "CdpShell.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
constexpr int NotSupported = 438;

QString literal(const QJsonValue& value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}
} // namespace

CdpDocument::CdpDocument(CdpShell& shell, QString sessionId, QString frameId, int contextId)
    : m_shell(shell), m_session(std::move(sessionId)), m_frame(std::move(frameId)), m_context(contextId)
{
}

QJsonValue CdpDocument::run(const QString& call) const
{
    return m_shell.evaluate(m_session, m_context, QStringLiteral("window.__tolvane.") + call);
}

QString CdpDocument::text(const char* property) const
{
    return run(QStringLiteral("doc(%1)").arg(literal(QString::fromLatin1(property)))).toString();
}

QString CdpDocument::title() const
{
    return text("title");
}

QString CdpDocument::url() const
{
    return text("url");
}

QString CdpDocument::URLUnencoded() const
{
    return text("urlUnencoded");
}

QString CdpDocument::readyState() const
{
    return text("readyState");
}

QString CdpDocument::cookie() const
{
    return text("cookie");
}

ElementPtr CdpDocument::element(const QJsonValue& id) const
{
    const qint64 number = id.toInteger();
    return number > 0 ? std::make_shared<CdpElement>(shared_from_this(), number) : nullptr;
}

ElementPtr CdpDocument::activeElement() const
{
    if (m_activeAtEvent)
        return element(QJsonValue(*m_activeAtEvent));
    return element(run(QStringLiteral("doc('activeElement')")));
}

QList<ElementPtr> CdpDocument::tags(const QString& tagName) const
{
    QList<ElementPtr> found;
    for (const QJsonValue& id : run(QStringLiteral("tags(%1)").arg(literal(tagName))).toArray())
        found.append(element(id));
    return found;
}

int CdpDocument::framesLength() const
{
    return run(QStringLiteral("doc('framesLength')")).toInt();
}

FramePtr CdpDocument::frameItem(int index) const
{
    return m_shell.frameOwner(*this, index);
}

void CdpDocument::subscribe(const std::shared_ptr<DocumentEvents>& sink)
{
    m_sinks.add(sink);
}

void CdpDocument::unsubscribe(const DocumentEvents* sink)
{
    m_sinks.remove(sink);
}

void CdpDocument::raise(const QString& kind, qint64 activeId)
{
    const auto self = shared_from_this();
    const std::optional<qint64> outer = m_activeAtEvent;
    m_activeAtEvent = activeId;
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            if (kind == QLatin1String("focusin"))
                sink->HTML_onfocusin();
            else if (kind == QLatin1String("activate"))
                sink->HTML_onactivate();
            else if (kind == QLatin1String("propertychange"))
                sink->HTML_onpropertychange();
            else if (kind == QLatin1String("click"))
                sink->HTML_onclick();
            else if (kind == QLatin1String("dblclick"))
                sink->HTML_ondblclick();
            else if (kind == QLatin1String("readystatechange"))
                sink->HTML_onreadystatechange();
        } catch (const AppError&) {
            // An error a handler let through ends that handler only, as in the browser.
        }
    }
    m_activeAtEvent = outer;
}

QJsonValue CdpElement::get(const char* property) const
{
    return m_document->run(QStringLiteral("get(%1, %2)").arg(m_id).arg(literal(QString::fromLatin1(property))));
}

void CdpElement::set(const char* property, const QJsonValue& value) const
{
    required(m_document->run(
        QStringLiteral("set(%1, %2, %3)").arg(m_id).arg(literal(QString::fromLatin1(property)), literal(value))));
}

QJsonValue CdpElement::required(const QJsonValue& value)
{
    if (value.isNull() || value.isUndefined())
        throw AppError(NotSupported, QStringLiteral("Object doesn't support this property or method"));
    return value;
}
