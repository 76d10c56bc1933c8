#pragma once

#include "FieldMeaning.h"
#include "HtmlElement.h"

#include <QList>
#include <optional>

// What a bare "Name" box means on its page: the family name beside a given-name box, the given
// name beside a family-name box, else what it means alone. The page's other fields are read once,
// and only when a bare name needs them.
class PageNames
{
public:
    explicit PageNames(const QList<ElementPtr>& fields) : m_fields(fields) {}

    // The meaning to fill `field` by; None where it is not sure.
    Meaning meaningOf(const Recognition& recognised, const HtmlElement& field);

private:
    QList<ElementPtr> m_fields;
    struct Named
    {
        const HtmlElement* given = nullptr;
        const HtmlElement* family = nullptr;
    };
    std::optional<Named> m_named;
};
