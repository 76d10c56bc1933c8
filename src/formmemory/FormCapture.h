#pragma once

#include "FormMemoryServices.h"
#include "HtmlDocument.h"

#include <functional>

// Remembers what the user put into a field, under the page's address and the field's key.
class FormCapture
{
public:
    explicit FormCapture(const FormMemoryServices& services) : m_services(services) {}

    void IEHolder_DocChanged(int Index, const DocPtr& document, const ElementPtr& element);

private:
    void captureInput(const HtmlDocument& document, HtmlElement& input);
    void captureList(const HtmlDocument& document, HtmlElement& list);
    // A field whose meaning is recognised is remembered by that meaning too, for every site;
    // `valueOf` tells what to remember from what the page says of the field.
    void rememberMeaning(const HtmlElement& field, const std::function<QString(const FieldDescription&)>& valueOf);

    FormMemoryServices m_services;
};
