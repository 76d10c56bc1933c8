#include "FormFill.h"

#include "AppError.h"
#include "Clock.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
#include "FieldMeaning.h"
#include "MeaningValues.h"
#include "MessagePump.h"
#include "PageNames.h"
#include "SiteFiles.h"
#include "ValueStore.h"

namespace {
// The document's own completion and its window's each report the same load.
constexpr qint64 RepeatWindowMs = 1000;
} // namespace

void FormFill::IEHolder_NewDoc(int /*Index*/, const DocPtr& document)
{
    if (m_services.host.isPaused())
        return;
    Changed changed;
    std::optional<QString> filledUrl;
    try {
        DocumentBatch batch(*document);
        if (isRepeat(*document))
            return;
        fillInputs(*document, document->tags(QStringLiteral("input")), changed);
        fillTextAreas(*document, document->tags(QStringLiteral("textarea")));
        fillLists(*document, document->tags(QStringLiteral("select")));
        try {
            filledUrl = document->url();
        } catch (const AppError&) {
        }
        batch.commit();
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("IEHolder_NewDoc"));
        return;
    }
    {
        // The jumps are worth a try only: they go together and a failed one is let be.
        DocumentBatch jumps(*document);
        jumpTo(changed);
    }
    if (filledUrl)
        m_lastFillURL = *filledUrl;
    m_lastFillTimeMs = m_services.clock.monotonicMs();
}

void FormFill::IEHolder_FieldsAdded(int /*Index*/, const DocPtr& document)
{
    if (m_services.host.isPaused())
        return;
    try {
        DocumentBatch batch(*document);
        QList<ElementPtr> inputs;
        QList<ElementPtr> areas;
        QList<ElementPtr> lists;
        for (const ElementPtr& field : document->addedFields()) {
            // What the user is typing or has typed into is theirs.
            if (field->userTouched())
                continue;
            const QString tag = field->tagName().toLower();
            if (tag == QLatin1String("input"))
                inputs.append(field);
            else if (tag == QLatin1String("textarea"))
                areas.append(field);
            else if (tag == QLatin1String("select"))
                lists.append(field);
        }
        // Added fields keep the page where the user is: no jump, and no bearing on repeats.
        Changed ignored;
        fillInputs(*document, inputs, ignored);
        fillTextAreas(*document, areas);
        fillLists(*document, lists);
        batch.commit();
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("IEHolder_FieldsAdded"));
    }
}

bool FormFill::isRepeat(const HtmlDocument& document) const
{
    return m_lastFillTimeMs && document.url() == m_lastFillURL &&
           m_services.clock.monotonicMs() - *m_lastFillTimeMs < RepeatWindowMs;
}

FormFill::Field::Field(const HtmlElement& element) : element(element), name(element.name())
{
    try {
        described = element.description();
    } catch (const AppError&) {
        described = {};
    }
    // Where it is someone else's the look-ups for any site refuse it (`takes`).
    entry = EntryOf(name, described, false);
}

const Recognition& FormFill::Field::recognised()
{
    if (!recognition)
        recognition = RecogniseField(element.tagName(), name, described);
    return *recognition;
}

bool FormFill::Field::takes(const QString& recordedMeaning)
{
    const Recognition& found = recognised();
    if (found.someoneElses)
        return false;
    return recordedMeaning.isEmpty() || found.meaning == Meaning::None ||
           recordedMeaning == MeaningKey(found.meaning);
}

void FormFill::fillInputs(const HtmlDocument& document, const QList<ElementPtr>& inputs,
                          Changed& changed)
{
    PageNames page(inputs);
    for (const ElementPtr& input : inputs) {
        switch (KindOfInput(input->type())) {
        case FieldKind::TextField: {
            Field field(*input);
            const QString remembered = rememberedFor(document, field, input->value(), page);
            if (input->value() != remembered) {
                if (!changed.first)
                    changed.first = input;
                changed.last = input;
            }
            input->setValue(remembered);
            break;
        }
        case FieldKind::Choice: {
            const QString remembered =
                m_services.values.GetValue(document.URLUnencoded(), ChoiceKey(*input),
                                           BooleanText(input->checked()), ReachOf(input->name()));
            input->setChecked(ReadBoolean(remembered));
            break;
        }
        default:
            break;
        }
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + input->name());
        m_services.pump.DoEvents();
    }
}

void FormFill::fillTextAreas(const HtmlDocument& document, const QList<ElementPtr>& areas)
{
    PageNames page({});
    for (const ElementPtr& area : areas) {
        Field field(*area);
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + field.name);
        area->setInnerText(rememberedFor(document, field, area->innerText(), page));
        m_services.pump.DoEvents();
    }
}

void FormFill::fillLists(const HtmlDocument& document, const QList<ElementPtr>& lists)
{
    const auto nothing = [] { return QString(); };
    for (const ElementPtr& list : lists) {
        Field field(*list);
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + field.name);
        const FieldEntry& entry = field.entry;
        const QString site = document.URLUnencoded();
        const QString byName = m_services.values.ValueOr(site, entry.key, entry.reach, nothing,
                                                         field.taker(), entry.anyKey);
        const QString byIndex =
            m_services.values.ValueOr(site, SelectedIndexKey(entry.key), entry.reach, nothing,
                                      field.taker(), SelectedIndexKey(entry.anyKey));
        // By meaning only where nothing is remembered for the list itself, by name or by position.
        if (!(byName.isEmpty() && byIndex.isEmpty() && fillListByMeaning(*list, field))) {
            list->setValue(byName.isEmpty() ? UnescapeLineBreaks(list->value()) : byName);
            if (list->value().isEmpty())
                list->setSelectedIndex(WholeNumber(
                    byIndex.isEmpty() ? QString::number(list->selectedIndex()) : byIndex));
        }
        m_services.pump.DoEvents();
    }
}

MeaningValues FormFill::rememberedByMeaning()
{
    return MeaningValues(
        [this](const QString& key) { return m_services.values.MeaningValue(key); });
}

QString FormFill::rememberedFor(const HtmlDocument& document, Field& field, const QString& own,
                                PageNames& page)
{
    return m_services.values.ValueOr(
        document.URLUnencoded(), field.entry.key, field.entry.reach,
        [&] {
            // Only where the user would type: never over what the page put there, nor into a field
            // the user cannot reach.
            const QString unescaped = UnescapeLineBreaks(own);
            if (field.described.outOfReach || !unescaped.trimmed().isEmpty())
                return unescaped;
            const Meaning meaning = page.meaningOf(field.recognised(), field.element);
            const bool multiLine = field.element.tagName().compare(QLatin1String("textarea"),
                                                                   Qt::CaseInsensitive) == 0;
            const QString meant =
                rememberedByMeaning().valueFor(meaning, field.described, multiLine);
            return meant.isEmpty() ? unescaped : meant;
        },
        field.taker(), field.entry.anyKey);
}

bool FormFill::fillListByMeaning(HtmlElement& list, Field& field)
{
    // Not where the page has chosen for the user.
    if (field.described.outOfReach || field.described.preselected)
        return false;
    PageNames alone({});
    const Meaning meaning = alone.meaningOf(field.recognised(), list);
    if (meaning == Meaning::None)
        return false;
    const int option =
        MatchingOption(meaning, rememberedByMeaning().valueFor(meaning), field.described.options);
    if (option < 0)
        return false;
    list.setSelectedIndex(option);
    return true;
}

void FormFill::jumpTo(const Changed& changed)
{
    if (!m_services.host.isAutoJumpChecked())
        return;
    // The last changed field first, so the first one is what stays in view.
    for (const ElementPtr& field : {changed.last, changed.first}) {
        try {
            if (field)
                field->scrollIntoView();
        } catch (const AppError&) {
        }
    }
}
