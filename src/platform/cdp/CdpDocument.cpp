#include "CdpDocument.h"

#include "AppError.h"
#include "CdpDialogGuard.h"
#include "CdpListing.h"
#include "CdpShell.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <utility>

namespace {
constexpr int NotSupported = 438;

// The script's snapshot() answer: JSON text, which the browser passes on faster than an object.
QJsonObject snapshotFrom(const QJsonValue& answer)
{
    return QJsonDocument::fromJson(answer.toString().toUtf8()).object();
}

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
    QString expression = QStringLiteral("window.__tolvane.") + call;
    if (!m_pendingWrites.isEmpty()) {
        // Writes still pending go first, so whatever is read sees them; a failed one fails the call.
        expression = QStringLiteral("(window.__tolvane.apply([%1]), %2)").arg(m_pendingWrites, expression);
        m_pendingWrites.clear();
    }
    if (m_unloaded)
        return {};
    try {
        return m_shell.evaluate(m_session, m_context, expression);
    } catch (const AppError& error) {
        if (CdpDialogGuard::isRefusal(error)) {
            // Behind a dialog the document answers nothing for now, like one the page left; a fill
            // that met it runs again once the dialog closes.
            if (openBatch() != 0)
                m_fillMissed = true;
            return {};
        }
        if (!isContextGone(error))
            throw;
        // The page went on to another document (a frame moving to a process of its own does so
        // between two calls): like the detached document of a page that navigated on, this one
        // takes writes and has nothing to give. The new document is filled on its own load.
        m_unloaded = true;
        return {};
    }
}

bool CdpDocument::isContextGone(const AppError& error)
{
    return error.number() == ErrorNumber::BrowserCall &&
           (error.description().contains(QLatin1String("Cannot find context with specified id")) ||
            error.description().contains(QLatin1String("Execution context was destroyed")));
}

void CdpDocument::dialogClosed()
{
    if (!m_fillMissed || m_unloaded)
        return;
    m_fillMissed = false;
    raise(QStringLiteral("readystatechange"), {});
}

QList<ElementPtr> CdpDocument::addedFields()
{
    return listing(run(QStringLiteral("added()")).toArray());
}

void CdpDocument::beginBatch()
{
    if (m_batchDepth++ == 0)
        ++m_batch;
}

void CdpDocument::endBatch()
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
            m_shell.evaluateLater(m_session, m_context, QStringLiteral("window.__tolvane.apply([%1])").arg(m_pendingWrites));
        } catch (const AppError&) {
            // The browser has gone: the writes go with it, as with a document the page left.
        }
    }
    m_pendingWrites.clear();
}

void CdpDocument::prefetch(std::function<void()> done)
{
    const std::weak_ptr<CdpDocument> self = shared_from_this();
    m_shell.evaluateAnswered(m_session, m_context, QStringLiteral("window.__tolvane.snapshot()"),
                             [self, done = std::move(done)](const QJsonValue& value) {
                                 if (const auto document = self.lock())
                                     document->m_prefetched = snapshotFrom(value);
                                 done();
                             });
}

void CdpDocument::wrote(bool throughListing) const
{
    m_prefetched = {};
    m_event.fields = {};
    if (!throughListing)
        m_readAhead.clear();
}

void CdpDocument::readAhead() const
{
    if (openBatch() == 0 || m_readAheadDone)
        return;
    m_readAheadDone = true;
    // A fill run for the page's completion reads the fields the completion report brought
    // along; one run for a load, what was fetched when the load was seen.
    QJsonObject snapshot;
    if (!m_event.lists.isEmpty())
        snapshot = QJsonObject{{QLatin1String("doc"), m_event.texts}, {QLatin1String("lists"), m_event.lists}};
    else if (!m_prefetched.isEmpty())
        snapshot = std::exchange(m_prefetched, {});
    else
        snapshot = snapshotFrom(run(QStringLiteral("snapshot()")));
    const QJsonObject texts = snapshot.value(QLatin1String("doc")).toObject();
    for (auto text = texts.begin(); text != texts.end(); ++text)
        m_batchTexts.insert(text.key(), text.value().toString());
    const QJsonObject lists = snapshot.value(QLatin1String("lists")).toObject();
    for (auto list = lists.begin(); list != lists.end(); ++list)
        m_readAhead.insert(list.key(), list.value().toArray());
}

void CdpDocument::queueWrite(qint64 id, const QString& property, const QJsonValue& value) const
{
    // Kept as the script's text: a fill queues a write per field.
    if (!m_pendingWrites.isEmpty())
        m_pendingWrites += QLatin1Char(',');
    m_pendingWrites += QStringLiteral("[%1,%2,%3]").arg(id).arg(literal(property), literal(value));
}

QString CdpDocument::text(const char* property) const
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
    const QString value = run(QStringLiteral("doc(%1)").arg(literal(key))).toString();
    if (openBatch() != 0)
        m_batchTexts.insert(key, value);
    return value;
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
    if (m_event.activeId)
        return element(QJsonValue(*m_event.activeId));
    // Every focus move of the user's is reported: the last report's answer stands, and a page
    // busy with its frames is not asked again when its holder is made.
    if (m_lastActiveId)
        return element(QJsonValue(*m_lastActiveId));
    return element(run(QStringLiteral("doc('activeElement')")));
}

QList<ElementPtr> CdpDocument::tags(const QString& tagName) const
{
    if (openBatch() != 0) {
        readAhead();
        const auto ahead = m_readAhead.find(tagName.toLower());
        if (ahead != m_readAhead.end()) {
            const QJsonArray records = *ahead;
            m_readAhead.erase(ahead);
            return listing(records);
        }
        return listing(run(QStringLiteral("list(%1)").arg(literal(tagName))).toArray());
    }
    QList<ElementPtr> found;
    for (const QJsonValue& id : run(QStringLiteral("tags(%1)").arg(literal(tagName))).toArray())
        found.append(element(id));
    return found;
}

QList<ElementPtr> CdpDocument::listing(const QJsonArray& records) const
{
    std::vector<CdpListing::Field> fields;
    for (const QJsonValue& record : records)
        fields.push_back(CdpListing::fieldFrom(record.toObject()));
    const auto listed = std::make_shared<CdpListing>(std::move(fields), m_batch);
    QList<ElementPtr> found;
    found.reserve(listed->size());
    for (int index = 0; index < listed->size(); ++index)
        found.append(std::make_shared<CdpElement>(shared_from_this(), listed, index));
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

void CdpDocument::raise(const QString& kind, const QJsonObject& report)
{
    const auto self = shared_from_this();
    // The page has moved on since anything fetched ahead.
    m_prefetched = {};
    const std::optional<qint64> outer = m_event.activeId;
    std::optional<qint64> active;
    if (const QJsonValue reported = report.value(QLatin1String("active")); !reported.isUndefined()) {
        active = reported.toInteger();
        noteActive(*active);
    }
    m_event = {active, report.value(QLatin1String("fields")).toObject(), report.value(QLatin1String("doc")).toObject(),
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

std::optional<QJsonValue> CdpDocument::reported(qint64 id, const QString& property) const
{
    const QJsonObject field = m_event.fields.value(QString::number(id)).toObject();
    const auto value = field.constFind(property);
    if (value == field.constEnd())
        return std::nullopt;
    return *value;
}

CdpElement::CdpElement(std::shared_ptr<const CdpDocument> document, std::shared_ptr<CdpListing> listing, int index)
    : m_document(std::move(document)), m_id(listing->field(index).id), m_listing(std::move(listing)), m_index(index)
{
}

bool CdpElement::userTouched() const
{
    // Only the fields given out as added carry it; the page's own fields are filled regardless.
    const CdpListing* listed = listing();
    return listed && listed->field(m_index).properties.value(QLatin1String("touched")).toBool();
}

FieldDescription CdpElement::description() const
{
    const QJsonObject hint = get("hint").toObject();
    FieldDescription field;
    field.autocomplete = hint.value(QLatin1String("autocomplete")).toString();
    field.id = hint.value(QLatin1String("id")).toString();
    field.label = hint.value(QLatin1String("label")).toString();
    field.placeholder = hint.value(QLatin1String("placeholder")).toString();
    field.ariaLabel = hint.value(QLatin1String("aria")).toString();
    field.inputType = hint.value(QLatin1String("type")).toString();
    for (const QJsonValue& option : hint.value(QLatin1String("options")).toArray())
        field.options.append({option[0].toString(), option[1].toString()});
    return field;
}

CdpListing* CdpElement::listing() const
{
    return m_listing && m_listing->batch() == m_document->openBatch() ? m_listing.get() : nullptr;
}

QJsonValue CdpElement::get(const char* property) const
{
    const QString name = QString::fromLatin1(property);
    if (const CdpListing* listed = listing()) {
        const QJsonObject& known = listed->field(m_index).properties;
        const auto value = known.constFind(name);
        if (value != known.constEnd())
            return *value;
    }
    if (const auto value = m_document->reported(m_id, name))
        return *value;
    return m_document->run(QStringLiteral("get(%1, %2)").arg(m_id).arg(literal(name)));
}

void CdpElement::set(const char* property, const QJsonValue& value) const
{
    const QString name = QString::fromLatin1(property);
    CdpListing* listed = listing();
    // A scroll in a batch goes with the batch's writes: every element has it.
    if (!listed && name == QLatin1String("scrollIntoView") && m_document->openBatch() != 0) {
        m_document->queueWrite(m_id, name, value);
        return;
    }
    m_document->wrote(listed != nullptr);
    if (listed) {
        const QJsonObject& known = listed->field(m_index).properties;
        if (known.contains(name))
            required(known.value(name));
        m_document->queueWrite(m_id, name, value);
        listed->wrote(m_index, name, value);
        return;
    }
    const QJsonValue answer = m_document->run(QStringLiteral("set(%1, %2, %3)").arg(m_id).arg(literal(name), literal(value)));
    if (!m_document->unloaded())
        required(answer);
}

QJsonValue CdpElement::required(const QJsonValue& value)
{
    if (value.isNull() || value.isUndefined())
        throw AppError(NotSupported, QStringLiteral("Object doesn't support this property or method"));
    return value;
}
