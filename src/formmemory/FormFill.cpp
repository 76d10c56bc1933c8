#include "FormFill.h"

#include "AppError.h"
#include "Clock.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
#include "FieldMeaning.h"
#include "MeaningValues.h"
#include "MessagePump.h"
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

void FormFill::fillInputs(const HtmlDocument& document, const QList<ElementPtr>& inputs, Changed& changed)
{
    for (const ElementPtr& input : inputs) {
        switch (KindOfInput(input->type())) {
        case FieldKind::TextField: {
            const QString remembered = rememberedFor(document, *input, input->value());
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
    for (const ElementPtr& area : areas) {
        const QString name = area->name();
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + name);
        area->setInnerText(rememberedFor(document, *area, area->innerText()));
        m_services.pump.DoEvents();
    }
}

void FormFill::fillLists(const HtmlDocument& document, const QList<ElementPtr>& lists)
{
    for (const ElementPtr& list : lists) {
        const QString name = list->name();
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + name);
        if (fillListByMeaning(document, *list)) {
            m_services.pump.DoEvents();
            continue;
        }
        list->setValue(m_services.values.GetValue(document.URLUnencoded(), name, list->value(),
                                                  ReachOf(name)));
        if (list->value().isEmpty()) {
            const QString index = m_services.values.GetValue(
                document.URLUnencoded(), SelectedIndexKey(name),
                QString::number(list->selectedIndex()), ReachOf(name));
            list->setSelectedIndex(WholeNumber(index));
        }
        m_services.pump.DoEvents();
    }
}

MeaningValues FormFill::rememberedByMeaning()
{
    return MeaningValues([this](const QString& key) { return m_services.values.MeaningValue(key); });
}

QString FormFill::rememberedFor(const HtmlDocument& document, const HtmlElement& field, const QString& own)
{
    const QString name = field.name();
    return m_services.values.ValueOr(document.URLUnencoded(), name, ReachOf(name), [&] {
        FieldDescription described;
        const Meaning meaning = MeaningOf(field, described);
        const QString meant = rememberedByMeaning().valueFor(meaning, described.inputType);
        return meant.isEmpty() ? UnescapeLineBreaks(own) : meant;
    });
}

bool FormFill::fillListByMeaning(const HtmlDocument& document, HtmlElement& list)
{
    // Only where nothing is remembered for the list itself, by name or by position.
    const QString site = document.URLUnencoded();
    const QString name = list.name();
    const auto nothing = [] { return QString(); };
    if (!m_services.values.ValueOr(site, name, ReachOf(name), nothing).isEmpty() ||
        !m_services.values.ValueOr(site, SelectedIndexKey(name), ReachOf(name), nothing).isEmpty())
        return false;
    FieldDescription described;
    const Meaning meaning = MeaningOf(list, described);
    if (meaning == Meaning::None)
        return false;
    const int option = MatchingOption(meaning, rememberedByMeaning().valueFor(meaning), described.options);
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
