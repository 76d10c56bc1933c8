#pragma once

#include "HtmlElement.h"

#include <QStringList>
#include <memory>

class ModelDocument;

// An element of the in-memory document model: inputs, lists, text areas and plain elements,
// with the properties a browser's DOM gives them. Asking an element for a property its kind
// lacks throws, as late binding did.
class ModelElement : public HtmlElement
{
public:
    struct Option
    {
        QString value;
        QString text;
        bool valueGiven = true;
        // An option without a value attribute: its value is its text.
        static Option textOnly(const QString& text) { return {QString(), text, false}; }
        QString effectiveValue() const { return valueGiven ? value : text; }
    };

    static std::shared_ptr<ModelElement> input(const QString& type, const QString& name,
                                               const QString& value = {});
    static std::shared_ptr<ModelElement> select(const QString& name, const QList<Option>& options,
                                                int selectedIndex = 0);
    static std::shared_ptr<ModelElement> textarea(const QString& name, const QString& text = {});
    static std::shared_ptr<ModelElement> plain(const QString& tagName, const QString& text = {});

    QString tagName() const override;
    QString name() const override;
    void scrollIntoView() override;
    QString innerText() const override;
    void setInnerText(const QString& text) override;
    QString type() const override;
    bool checked() const override;
    void setChecked(bool checked) override;
    QString value() const override;
    void setValue(const QString& value) override;
    int selectedIndex() const override;
    void setSelectedIndex(int index) override;
    bool userTouched() const override { return m_touched; }
    // What the page says of the field; a list's options are its own.
    FieldDescription description() const override;

    // For the model's document and for tests.
    void setDocument(ModelDocument* document) { m_document = document; }
    int scrollCount() const { return m_scrolls; }
    void markTouched() { m_touched = true; }
    void describe(const FieldDescription& described) { m_described = described; }
    const QList<Option>& options() const { return m_options; }

private:
    explicit ModelElement(const QString& tagName) : m_tag(tagName.toUpper()) {}
    bool isFormField() const;
    void requireKind(bool supported) const;

    QString m_tag;
    QString m_name;
    QString m_type;
    QString m_value;
    QString m_text;
    bool m_checked = false;
    QList<Option> m_options;
    int m_selected = -1;
    int m_scrolls = 0;
    bool m_touched = false;
    FieldDescription m_described;
    ModelDocument* m_document = nullptr;
};
