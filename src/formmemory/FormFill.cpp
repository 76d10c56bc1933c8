#include "FormFill.h"

#include "AppError.h"
#include "Clock.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
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
        fillInputs(*document, changed);
        fillTextAreas(*document);
        fillLists(*document);
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

bool FormFill::isRepeat(const HtmlDocument& document) const
{
    return m_lastFillTimeMs && document.url() == m_lastFillURL &&
           m_services.clock.monotonicMs() - *m_lastFillTimeMs < RepeatWindowMs;
}

void FormFill::fillInputs(const HtmlDocument& document, Changed& changed)
{
    for (const ElementPtr& input : document.tags(QStringLiteral("input"))) {
        switch (KindOfInput(input->type())) {
        case FieldKind::TextField: {
            const QString remembered = m_services.values.GetValue(document.URLUnencoded(),
                                                                  input->name(), input->value());
            if (input->value() != remembered) {
                if (!changed.first)
                    changed.first = input;
                changed.last = input;
            }
            input->setValue(remembered);
            break;
        }
        case FieldKind::Choice: {
            const QString remembered = m_services.values.GetValue(
                document.URLUnencoded(), ChoiceKey(*input), BooleanText(input->checked()));
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

void FormFill::fillTextAreas(const HtmlDocument& document)
{
    for (const ElementPtr& area : document.tags(QStringLiteral("textarea"))) {
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + area->name());
        area->setInnerText(
            m_services.values.GetValue(document.URLUnencoded(), area->name(), area->innerText()));
        m_services.pump.DoEvents();
    }
}

void FormFill::fillLists(const HtmlDocument& document)
{
    for (const ElementPtr& list : document.tags(QStringLiteral("select"))) {
        m_services.host.ShowStatus(QStringLiteral("retrieving ") + list->name());
        list->setValue(m_services.values.GetValue(document.URLUnencoded(), list->name(), list->value()));
        if (list->value().isEmpty()) {
            const QString index = m_services.values.GetValue(
                document.URLUnencoded(), SelectedIndexKey(list->name()),
                QString::number(list->selectedIndex()));
            list->setSelectedIndex(WholeNumber(index));
        }
        m_services.pump.DoEvents();
    }
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
