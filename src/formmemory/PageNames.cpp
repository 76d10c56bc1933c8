#include "PageNames.h"

#include "AppError.h"
#include "FieldKeys.h"

Meaning PageNames::meaningOf(const Recognition& recognised, const HtmlElement& field)
{
    if (recognised.someoneElses)
        return Meaning::None;
    if (!recognised.bareName)
        return recognised.sure ? recognised.meaning : Meaning::None;
    if (!m_named) {
        Named named;
        for (const ElementPtr& other : m_fields) {
            try {
                if (KindOfInput(other->type()) != FieldKind::TextField)
                    continue;
            } catch (const AppError&) {
                continue;
            }
            FieldDescription described;
            const Recognition found = MeaningOf(*other, described);
            if (found.sure && found.meaning == Meaning::GivenName && !named.given)
                named.given = other.get();
            if (found.sure && found.meaning == Meaning::FamilyName && !named.family)
                named.family = other.get();
        }
        m_named = named;
    }
    if (m_named->given && m_named->given != &field)
        return Meaning::FamilyName;
    if (m_named->family && m_named->family != &field)
        return Meaning::GivenName;
    return recognised.meaning;
}
