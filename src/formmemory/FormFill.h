#pragma once

#include "FormMemoryServices.h"
#include "HtmlDocument.h"
#include "MeaningValues.h"

#include <optional>

// Fills a page that is ready with the remembered values: inputs, then text areas, then lists,
// letting pending events run after every field. Fields the page adds later are filled the same
// way, once each, unless the user has been in them.
class FormFill
{
public:
    explicit FormFill(const FormMemoryServices& services) : m_services(services) {}

    void IEHolder_NewDoc(int Index, const DocPtr& document);
    void IEHolder_FieldsAdded(int Index, const DocPtr& document);

    QString LastFillURL() const { return m_lastFillURL; }

private:
    struct Changed
    {
        ElementPtr first;
        ElementPtr last;
    };
    bool isRepeat(const HtmlDocument& document) const;
    void fillInputs(const HtmlDocument& document, const QList<ElementPtr>& inputs, Changed& changed);
    void fillTextAreas(const HtmlDocument& document, const QList<ElementPtr>& areas);
    void fillLists(const HtmlDocument& document, const QList<ElementPtr>& lists);
    void jumpTo(const Changed& changed);
    MeaningValues rememberedByMeaning();
    // What is remembered for the field by name; where nothing is, what its meaning remembers;
    // else its own value (`own`).
    QString rememberedFor(const HtmlDocument& document, const HtmlElement& field, const QString& own);
    // Picks the option the list's meaning remembers; false when the list is left to the
    // description's own steps (something is remembered for it, or nothing by meaning fits).
    bool fillListByMeaning(const HtmlDocument& document, HtmlElement& list);

    FormMemoryServices m_services;
    QString m_lastFillURL;
    std::optional<qint64> m_lastFillTimeMs;
};
