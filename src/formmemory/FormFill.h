#pragma once

#include "FieldKeys.h"
#include "FieldMeaning.h"
#include "FormMemoryServices.h"
#include "HtmlDocument.h"
#include "MeaningValues.h"

#include <functional>
#include <optional>

class PageNames;

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
    // A text field, text area or list as the fill looks it up: its key, where its entries count,
    // and what it means (recognised only when a look-up needs it).
    struct Field
    {
        Field(const HtmlElement& element);
        const Recognition& recognised();
        // Whether an entry for any site typed under `recordedMeaning` may fill this field.
        bool takes(const QString& recordedMeaning);
        std::function<bool(const QString&)> taker()
        {
            return [this](const QString& recordedMeaning) { return takes(recordedMeaning); };
        }

        const HtmlElement& element;
        QString name;
        FieldDescription described;
        FieldEntry entry;
        std::optional<Recognition> recognition;
    };
    bool isRepeat(const HtmlDocument& document) const;
    void fillInputs(const HtmlDocument& document, const QList<ElementPtr>& inputs,
                    Changed& changed);
    void fillTextAreas(const HtmlDocument& document, const QList<ElementPtr>& areas);
    void fillLists(const HtmlDocument& document, const QList<ElementPtr>& lists);
    void jumpTo(const Changed& changed);
    MeaningValues rememberedByMeaning();
    // What is remembered for the field by its key; where nothing is, what its meaning remembers
    // if the user would want it there; else its own value (`own`).
    QString rememberedFor(const HtmlDocument& document, Field& field, const QString& own,
                          PageNames& page);
    // Picks the option the list's meaning remembers; false when nothing by meaning fits.
    bool fillListByMeaning(HtmlElement& list, Field& field);

    FormMemoryServices m_services;
    QString m_lastFillURL;
    std::optional<qint64> m_lastFillTimeMs;
};
