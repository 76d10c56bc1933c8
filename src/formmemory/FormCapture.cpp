#include "FormCapture.h"

#include "AppError.h"
#include "ErrorReport.h"
#include "FieldKeys.h"
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
        else if (tag == QLatin1String("textarea"))
            m_services.values.SetValue(document->URLUnencoded(), element->name(), element->innerText(),
                                       ReachOf(element->name()));
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
}
