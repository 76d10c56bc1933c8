#include "FormCapture.h"

#include "AppError.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
#include "MeaningValues.h"
#include "ValueChecks.h"
#include "ValueStore.h"

void FormCapture::IEHolder_DocChanged(int /*Index*/, const DocPtr& document,
                                      const ElementPtr& element)
{
    if (m_services.host.isPaused())
        return;
    try {
        const QString tag = element->tagName().toLower();
        if (tag == QLatin1String("input"))
            captureInput(*document, *element);
        else if (tag == QLatin1String("select"))
            captureList(*document, *element);
        else if (tag == QLatin1String("textarea") && element->userTyped())
            captureText(*document, *element, element->innerText(), false);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("IEHolder_DocChanged"));
    }
}

void FormCapture::captureInput(const HtmlDocument& document, HtmlElement& input)
{
    switch (KindOfInput(input.type())) {
    case FieldKind::TextField:
        // What a page script put into a field is not the user's.
        if (input.userTyped())
            captureText(document, input, input.value(), true);
        break;
    case FieldKind::Choice: {
        const QString key = ChoiceKey(input);
        const QString value = BooleanText(input.checked());
        m_services.host.ShowStatus(key + QStringLiteral(" = ") + value);
        m_services.values.SetValue(document.URLUnencoded(), key, value, ReachOf(input.name()));
        break;
    }
    default:
        break;
    }
}

void FormCapture::captureText(const HtmlDocument& document, HtmlElement& field,
                              const QString& value, bool showStatus)
{
    FieldDescription described;
    const Recognition recognised = MeaningOf(field, described);
    const FieldEntry entry = EntryOf(field.name(), described, recognised.someoneElses);
    // A text field without a name, told apart by nothing, is not kept (a text area is).
    if (showStatus && entry.key.isEmpty())
        return;
    if (showStatus)
        m_services.host.ShowStatus(entry.key + QStringLiteral(" = ") + value);
    m_services.values.SetValue(document.URLUnencoded(), entry.key, value, entry.reach,
                               MeaningKey(recognised.meaning), entry.anyKey);
    rememberMeaning(recognised, value, described);
}

void FormCapture::rememberMeaning(const Recognition& recognised, const QString& value,
                                  const FieldDescription& described)
{
    if (recognised.someoneElses || recognised.meaning == Meaning::None ||
        !(recognised.sure || recognised.bareName))
        return;
    const QString remembered = ValueToRemember(recognised.meaning, value, described);
    if (remembered.isEmpty())
        return;
    const QString key = MeaningKey(recognised.meaning);
    // A bare "Name" may be a given name beside a family-name box this capture cannot see: it
    // only fills a gap, never replaces what memory holds.
    if (recognised.bareName && !m_services.values.MeaningValue(key).trimmed().isEmpty())
        return;
    m_services.values.SetMeaningValue(key, remembered);
}

void FormCapture::captureList(const HtmlDocument& document, HtmlElement& list)
{
    FieldDescription described;
    const Recognition recognised = MeaningOf(list, described);
    const FieldEntry entry = EntryOf(list.name(), described, recognised.someoneElses);
    m_services.host.ShowStatus(entry.key + QStringLiteral(" = ") + list.value());
    m_services.values.SetValue(document.URLUnencoded(), entry.key, list.value(), entry.reach,
                               MeaningKey(recognised.meaning), entry.anyKey);
    const int index = list.selectedIndex();
    if (index >= 1)
        m_services.values.SetValue(document.URLUnencoded(), SelectedIndexKey(entry.key),
                                   QString::number(index), entry.reach, std::nullopt,
                                   SelectedIndexKey(entry.anyKey));
    // The chosen option's text says more on another site than its value ("Illinois", not "14").
    rememberMeaning(recognised, ChosenOptionText(described.options, index, list.value()),
                    described);
}
