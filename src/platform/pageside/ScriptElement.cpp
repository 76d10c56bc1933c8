#include "AppError.h"
#include "ScriptDocument.h"
#include "ScriptListing.h"

#include <QJsonArray>

namespace {
constexpr int NotSupported = 438;
} // namespace

ScriptElement::ScriptElement(std::shared_ptr<const ScriptDocument> document,
                             std::shared_ptr<ScriptListing> listing, int index)
    : m_document(std::move(document)), m_id(listing->field(index).id),
      m_listing(std::move(listing)), m_index(index)
{
}

bool ScriptElement::userTouched() const
{
    // Only the fields given out as added carry it; the page's own fields are filled regardless.
    const ScriptListing* listed = listing();
    return listed && listed->field(m_index).properties.value(QLatin1String("touched")).toBool();
}

bool ScriptElement::userTyped() const
{
    return get("typed").toBool();
}

FieldDescription ScriptElement::description() const
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
    field.twin = hint.value(QLatin1String("twin")).toString();
    field.section = hint.value(QLatin1String("section")).toString();
    field.language = hint.value(QLatin1String("lang")).toString();
    field.outOfReach = hint.value(QLatin1String("off")).toBool();
    field.preselected = hint.value(QLatin1String("chosen")).toBool();
    return field;
}

ScriptListing* ScriptElement::listing() const
{
    return m_listing && m_listing->batch() == m_document->openBatch() ? m_listing.get() : nullptr;
}

QJsonValue ScriptElement::get(const char* property) const
{
    const QString name = QString::fromLatin1(property);
    if (const ScriptListing* listed = listing()) {
        const QJsonObject& known = listed->field(m_index).properties;
        const auto value = known.constFind(name);
        if (value != known.constEnd())
            return *value;
    }
    if (const auto value = m_document->reported(m_id, name))
        return *value;
    return m_document->run(PageCall::of("get", {m_id, name}));
}

void ScriptElement::set(const char* property, const QJsonValue& value) const
{
    const QString name = QString::fromLatin1(property);
    ScriptListing* listed = listing();
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
    const QJsonValue answer = m_document->run(PageCall::of("set", {m_id, name, value}));
    if (!m_document->unloaded())
        required(answer);
}

QJsonValue ScriptElement::required(const QJsonValue& value)
{
    if (value.isNull() || value.isUndefined())
        throw AppError(NotSupported,
                       QStringLiteral("Object doesn't support this property or method"));
    return value;
}
