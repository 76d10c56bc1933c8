#include "ScriptDocument.h"

#include "AppError.h"
#include "PageScriptHost.h"
#include "ScriptListing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <utility>

namespace {
// The script's snapshot() answer: JSON text, which the browser passes on faster than an object.
QJsonObject snapshotFrom(const QJsonValue& answer)
{
    return QJsonDocument::fromJson(answer.toString().toUtf8()).object();
}
} // namespace

ScriptDocument::ScriptDocument(PageScriptHost& host, QString realm, QString frameId)
    : m_host(host), m_realm(std::move(realm)), m_frame(std::move(frameId))
{
}

QJsonValue ScriptDocument::run(PageCall call) const
{
    // Writes still pending go first, so whatever is read sees them.
    call.writes = std::exchange(m_pendingWrites, {});
    if (m_unloaded)
        return {};
    try {
        return m_host.evaluate(m_realm, call);
    } catch (const AppError& error) {
        const PageScriptHost::Failure failure = m_host.failureOf(error);
        if (failure == PageScriptHost::Failure::Refused) {
            // Behind a dialog the document answers nothing for now, like one the page left; a fill
            // that met it runs again once the dialog closes.
            if (openBatch() != 0)
                m_fillMissed = true;
            return {};
        }
        if (failure != PageScriptHost::Failure::Gone)
            throw;
        // The page went on to another document (a frame moving to a process of its own does so
        // between two calls): like the detached document of a page that navigated on, this one
        // takes writes and has nothing to give. The new document is filled on its own load.
        m_unloaded = true;
        return {};
    }
}

void ScriptDocument::dialogClosed()
{
    if (!m_fillMissed || m_unloaded)
        return;
    m_fillMissed = false;
    raise(QStringLiteral("readystatechange"), {});
}

QList<ElementPtr> ScriptDocument::addedFields()
{
    return listing(run(PageCall::of("added")).toArray());
}

void ScriptDocument::beginBatch()
{
    if (m_batchDepth++ == 0)
        ++m_batch;
}

void ScriptDocument::endBatch()
{
    if (m_batchDepth == 0 || --m_batchDepth > 0)
        return;
    m_batchTexts.clear();
    m_readAhead.clear();
    m_readAheadDone = false;
    // The writes of a fill want no answer: the listing has already refused what a field lacks,
    // and a page busy loading its frames is not waited for. What is read next sees them.
    if (!m_pendingWrites.isEmpty() && !m_unloaded) {
        try {
            m_host.evaluateLater(m_realm, PageCall::apply(m_pendingWrites));
        } catch (const AppError&) {
            // The browser has gone: the writes go with it, as with a document the page left.
        }
    }
    m_pendingWrites.clear();
}

void ScriptDocument::prefetch(std::function<void()> done)
{
    const std::weak_ptr<ScriptDocument> self = shared_from_this();
    m_host.evaluateAnswered(m_realm, PageCall::of("snapshot"),
                            [self, done = std::move(done)](const QJsonValue& value) {
                                if (const auto document = self.lock())
                                    document->m_prefetched = snapshotFrom(value);
                                done();
                            });
}

void ScriptDocument::wrote(bool throughListing) const
{
    m_prefetched = {};
    m_event.fields = {};
    if (!throughListing)
        m_readAhead.clear();
}

void ScriptDocument::readAhead() const
{
    if (openBatch() == 0 || m_readAheadDone)
        return;
    m_readAheadDone = true;
    // A fill run for the page's completion reads the fields the completion report brought
    // along; one run for a load, what was fetched when the load was seen.
    QJsonObject snapshot;
    if (!m_event.lists.isEmpty())
        snapshot = QJsonObject{{QLatin1String("doc"), m_event.texts},
                               {QLatin1String("lists"), m_event.lists}};
    else if (!m_prefetched.isEmpty())
        snapshot = std::exchange(m_prefetched, {});
    else
        snapshot = snapshotFrom(run(PageCall::of("snapshot")));
    const QJsonObject texts = snapshot.value(QLatin1String("doc")).toObject();
    for (auto text = texts.begin(); text != texts.end(); ++text)
        m_batchTexts.insert(text.key(), text.value().toString());
    const QJsonObject lists = snapshot.value(QLatin1String("lists")).toObject();
    for (auto list = lists.begin(); list != lists.end(); ++list)
        m_readAhead.insert(list.key(), list.value().toArray());
}

void ScriptDocument::queueWrite(qint64 id, const QString& property, const QJsonValue& value) const
{
    // Kept as the script's text: a fill queues a write per field.
    if (!m_pendingWrites.isEmpty())
        m_pendingWrites += QLatin1Char(',');
    m_pendingWrites +=
        QStringLiteral("[%1,%2,%3]").arg(id).arg(scriptLiteral(property), scriptLiteral(value));
}

QString ScriptDocument::text(const char* property) const
{
    // Within a batch the page is taken to stay where it is: one read serves the whole fill.
    const QString key = QString::fromLatin1(property);
    const auto reportedText = m_event.texts.constFind(key);
    if (reportedText != m_event.texts.constEnd())
        return reportedText->toString();
    readAhead();
    if (openBatch() != 0) {
        const auto known = m_batchTexts.constFind(key);
        if (known != m_batchTexts.constEnd())
            return *known;
    }
    const QString value = run(PageCall::of("doc", {key})).toString();
    if (openBatch() != 0)
        m_batchTexts.insert(key, value);
    return value;
}

QString ScriptDocument::title() const
{
    return text("title");
}

QString ScriptDocument::url() const
{
    return text("url");
}

QString ScriptDocument::URLUnencoded() const
{
    return text("urlUnencoded");
}

QString ScriptDocument::readyState() const
{
    return text("readyState");
}

QString ScriptDocument::cookie() const
{
    return text("cookie");
}

ElementPtr ScriptDocument::element(const QJsonValue& id) const
{
    const qint64 number = id.toInteger();
    return number > 0 ? std::make_shared<ScriptElement>(shared_from_this(), number) : nullptr;
}

ElementPtr ScriptDocument::activeElement() const
{
    if (m_event.activeId)
        return element(QJsonValue(*m_event.activeId));
    // Every focus move of the user's is reported: the last report's answer stands, and a page
    // busy with its frames is not asked again when its holder is made.
    if (m_lastActiveId)
        return element(QJsonValue(*m_lastActiveId));
    return element(run(PageCall::of("doc", {QStringLiteral("activeElement")})));
}

QList<ElementPtr> ScriptDocument::tags(const QString& tagName) const
{
    if (openBatch() != 0) {
        readAhead();
        const auto ahead = m_readAhead.find(tagName.toLower());
        if (ahead != m_readAhead.end()) {
            const QJsonArray records = *ahead;
            m_readAhead.erase(ahead);
            return listing(records);
        }
        return listing(run(PageCall::of("list", {tagName})).toArray());
    }
    QList<ElementPtr> found;
    for (const QJsonValue& id : run(PageCall::of("tags", {tagName})).toArray())
        found.append(element(id));
    return found;
}

QList<ElementPtr> ScriptDocument::listing(const QJsonArray& records) const
{
    std::vector<ScriptListing::Field> fields;
    for (const QJsonValue& record : records)
        fields.push_back(ScriptListing::fieldFrom(record.toObject()));
    const auto listed = std::make_shared<ScriptListing>(std::move(fields), m_batch);
    QList<ElementPtr> found;
    found.reserve(listed->size());
    for (int index = 0; index < listed->size(); ++index)
        found.append(std::make_shared<ScriptElement>(shared_from_this(), listed, index));
    return found;
}

int ScriptDocument::framesLength() const
{
    return run(PageCall::of("doc", {QStringLiteral("framesLength")})).toInt();
}

FramePtr ScriptDocument::frameItem(int index) const
{
    return m_host.frameOwner(m_realm, index);
}

void ScriptDocument::subscribe(const std::shared_ptr<DocumentEvents>& sink)
{
    m_sinks.add(sink);
}

void ScriptDocument::unsubscribe(const DocumentEvents* sink)
{
    m_sinks.remove(sink);
}

void ScriptDocument::raise(const QString& kind, const QJsonObject& report)
{
    const auto self = shared_from_this();
    // The page has moved on since anything fetched ahead.
    m_prefetched = {};
    const std::optional<qint64> outer = m_event.activeId;
    std::optional<qint64> active;
    if (const QJsonValue reported = report.value(QLatin1String("active"));
        !reported.isUndefined()) {
        active = reported.toInteger();
        noteActive(*active);
    }
    m_event = {active, report.value(QLatin1String("fields")).toObject(),
               report.value(QLatin1String("doc")).toObject(),
               report.value(QLatin1String("lists")).toObject()};
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
            else if (kind == QLatin1String("fieldsadded"))
                sink->HTML_onfieldsadded();
        } catch (const AppError&) {
            // An error a handler let through ends that handler only, as in the browser.
        }
    }
    // An event handled inside another's handler: the outer one reads the page itself from now on.
    m_event = {outer, {}, {}, {}};
}

std::optional<QJsonValue> ScriptDocument::reported(qint64 id, const QString& property) const
{
    const QJsonObject field = m_event.fields.value(QString::number(id)).toObject();
    const auto value = field.constFind(property);
    if (value == field.constEnd())
        return std::nullopt;
    return *value;
}
