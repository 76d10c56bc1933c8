#include "ModelElement.h"

#include "AppError.h"
#include "ModelDocument.h"

namespace {
constexpr int NotSupported = 438;
}

std::shared_ptr<ModelElement> ModelElement::input(const QString& type, const QString& name,
                                                  const QString& value)
{
    std::shared_ptr<ModelElement> element(new ModelElement(QStringLiteral("INPUT")));
    element->m_type = type.toLower();
    element->m_name = name;
    element->m_value = value;
    return element;
}

std::shared_ptr<ModelElement> ModelElement::select(const QString& name,
                                                   const QList<Option>& options, int selectedIndex)
{
    std::shared_ptr<ModelElement> element(new ModelElement(QStringLiteral("SELECT")));
    element->m_type = QStringLiteral("select-one");
    element->m_name = name;
    element->m_options = options;
    element->m_selected = options.isEmpty() ? -1 : selectedIndex;
    return element;
}

std::shared_ptr<ModelElement> ModelElement::textarea(const QString& name, const QString& text)
{
    std::shared_ptr<ModelElement> element(new ModelElement(QStringLiteral("TEXTAREA")));
    element->m_type = QStringLiteral("textarea");
    element->m_name = name;
    element->m_text = text;
    return element;
}

std::shared_ptr<ModelElement> ModelElement::plain(const QString& tagName, const QString& text)
{
    std::shared_ptr<ModelElement> element(new ModelElement(tagName));
    element->m_text = text;
    return element;
}

bool ModelElement::isFormField() const
{
    return m_tag == QLatin1String("INPUT") || m_tag == QLatin1String("SELECT") ||
           m_tag == QLatin1String("TEXTAREA");
}

void ModelElement::requireKind(bool supported) const
{
    if (m_document)
        m_document->checkAlive();
    if (!supported)
        throw AppError(NotSupported,
                       QStringLiteral("Object doesn't support this property or method"));
}

QString ModelElement::tagName() const
{
    requireKind(true);
    return m_tag;
}

QString ModelElement::name() const
{
    requireKind(isFormField());
    return m_name;
}

void ModelElement::scrollIntoView()
{
    requireKind(true);
    ++m_scrolls;
}

QString ModelElement::innerText() const
{
    requireKind(true);
    return m_tag == QLatin1String("INPUT") ? QString() : m_text;
}

void ModelElement::setInnerText(const QString& text)
{
    requireKind(m_tag != QLatin1String("INPUT") && m_tag != QLatin1String("SELECT"));
    m_text = text;
}

QString ModelElement::type() const
{
    requireKind(isFormField());
    return m_type;
}

bool ModelElement::checked() const
{
    requireKind(m_tag == QLatin1String("INPUT"));
    return m_checked;
}

void ModelElement::setChecked(bool checked)
{
    requireKind(m_tag == QLatin1String("INPUT"));
    if (checked && m_type == QLatin1String("radio") && m_document)
        m_document->uncheckRadioGroup(m_name, this);
    m_checked = checked;
}

QString ModelElement::value() const
{
    requireKind(isFormField());
    if (m_tag == QLatin1String("SELECT"))
        return m_selected >= 0 ? m_options.at(m_selected).effectiveValue() : QString();
    if (m_tag == QLatin1String("TEXTAREA"))
        return m_text;
    return m_value;
}

void ModelElement::setValue(const QString& value)
{
    requireKind(isFormField());
    if (m_tag == QLatin1String("SELECT")) {
        // A value no option has leaves the selection as it was, as the classic browser did.
        for (int i = 0; i < m_options.size(); ++i) {
            if (m_options.at(i).effectiveValue() == value) {
                m_selected = i;
                break;
            }
        }
    } else if (m_tag == QLatin1String("TEXTAREA")) {
        m_text = value;
    } else {
        m_value = value;
    }
}

int ModelElement::selectedIndex() const
{
    requireKind(m_tag == QLatin1String("SELECT"));
    return m_selected;
}

void ModelElement::setSelectedIndex(int index)
{
    requireKind(m_tag == QLatin1String("SELECT"));
    m_selected = (index >= 0 && index < m_options.size()) ? index : -1;
}

FieldDescription ModelElement::description() const
{
    FieldDescription described = m_described;
    for (const Option& option : m_options)
        described.options.append({option.effectiveValue(), option.text});
    return described;
}
