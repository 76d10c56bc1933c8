#pragma once

#include "FieldMeaning.h"
#include "FormMemoryServices.h"
#include "HtmlDocument.h"

// Remembers what the user put into a field, under the page's address and the field's key, and
// by the field's meaning where that is sure and the value is one of that meaning.
class FormCapture
{
public:
    explicit FormCapture(const FormMemoryServices& services) : m_services(services) {}

    void IEHolder_DocChanged(int Index, const DocPtr& document, const ElementPtr& element);

private:
    void captureInput(const HtmlDocument& document, HtmlElement& input);
    void captureText(const HtmlDocument& document, HtmlElement& field, const QString& value,
                     bool showStatus);
    void captureList(const HtmlDocument& document, HtmlElement& list);
    void rememberMeaning(const Recognition& recognised, const QString& value,
                         const FieldDescription& described);

    FormMemoryServices m_services;
};
