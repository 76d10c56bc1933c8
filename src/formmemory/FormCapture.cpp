#include "FormCapture.h"

#include "AppError.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
#include "FieldMeaning.h"
#include "MeaningValues.h"
#include "ValueStore.h"

void FormCapture::IEHolder_DocChanged(int /*Index*/, const DocPtr& document, const ElementPtr& element)
{
    if (m_services.host.isPaused())
        return;
    try {
        const QString tag = element->tagName().toLower();
        if (tag == QLatin1String("input"))
            captureInput(*document, *element);
        else if (tag == QLatin1String("select"))
            captureList(*document, *element);
        else if (tag == QLatin1String("textarea")) {
            const QString text = element->innerText();
            m_services.values.SetValue(document->URLUnencoded(), element->name(), text, ReachOf(element->name()));
            rememberMeaning(*element, [&text](const FieldDescription&) { return text; });
        }
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("IEHolder_DocChanged"));
    }
}

void FormCapture::captureInput(const HtmlDocument& document, HtmlElement& input)
{
    QString key;
    QString value;
    const QString name = input.name();
    switch (KindOfInput(input.type())) {
    case FieldKind::TextField:
        key = name;
        value = input.value();
        break;
    case FieldKind::Choice:
        key = ChoiceKey(input);
        value = BooleanText(input.checked());
        break;
    default:
        return;
    }
    if (key.isEmpty())
        return;
    m_services.host.ShowStatus(key + QStringLiteral(" = ") + value);
    m_services.values.SetValue(document.URLUnencoded(), key, value, ReachOf(name));
    if (KindOfInput(input.type()) == FieldKind::TextField)
        rememberMeaning(input, [&value](const FieldDescription&) { return value; });
}

void FormCapture::rememberMeaning(const HtmlElement& field,
                                  const std::function<QString(const FieldDescription&)>& valueOf)
{
    FieldDescription described;
    const Meaning meaning = MeaningOf(field, described);
    if (meaning != Meaning::None)
        m_services.values.SetMeaningValue(MeaningKey(meaning), valueOf(described));
}

void FormCapture::captureList(const HtmlDocument& document, HtmlElement& list)
{
    const QString name = list.name();
    m_services.host.ShowStatus(name + QStringLiteral(" = ") + list.value());
    m_services.values.SetValue(document.URLUnencoded(), name, list.value(), ReachOf(name));
    const int index = list.selectedIndex();
    if (index >= 1)
        m_services.values.SetValue(document.URLUnencoded(), SelectedIndexKey(name),
                                   QString::number(index), ReachOf(name));
    // The chosen option's text says more on another site than its value ("Illinois", not "14").
    rememberMeaning(list, [&](const FieldDescription& described) {
        return ChosenOptionText(described.options, index, list.value());
    });
}
