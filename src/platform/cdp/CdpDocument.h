#pragma once

#include "HtmlDocument.h"
#include "Subscribers.h"

#include <QJsonValue>
#include <optional>

class CdpShell;

// A document of a real page or frame: reads and writes go through the script in Tolvane's own
// world of that document; its events arrive from the shell.
class CdpDocument : public HtmlDocument, public std::enable_shared_from_this<CdpDocument>
{
public:
    CdpDocument(CdpShell& shell, QString sessionId, QString frameId, int contextId);

    QString title() const override;
    QString url() const override;
    QString URLUnencoded() const override;
    QString readyState() const override;
    QString cookie() const override;
    ElementPtr activeElement() const override;
    QList<ElementPtr> tags(const QString& tagName) const override;
    int framesLength() const override;
    FramePtr frameItem(int index) const override;
    void subscribe(const std::shared_ptr<DocumentEvents>& sink) override;
    void unsubscribe(const DocumentEvents* sink) override;

    // Runs "window.__tolvane." + call in the document's world and gives back the value.
    QJsonValue run(const QString& call) const;
    // A user's action the script reported ("click", "focusin", ...), with the element that was
    // active then: while its handlers run, that is the document's active element.
    void raise(const QString& kind, qint64 activeId);

    const QString& sessionId() const { return m_session; }
    const QString& frameId() const { return m_frame; }
    int contextId() const { return m_context; }

private:
    QString text(const char* property) const;
    ElementPtr element(const QJsonValue& id) const;

    CdpShell& m_shell;
    QString m_session;
    QString m_frame;
    int m_context;
    Subscribers<DocumentEvents> m_sinks;
    std::optional<qint64> m_activeAtEvent;
};

// An element of a real page, by its id in the document's script.
class CdpElement : public HtmlElement
{
public:
    CdpElement(std::shared_ptr<const CdpDocument> document, qint64 id) : m_document(std::move(document)), m_id(id) {}

    QString tagName() const override { return get("tagName").toString(); }
    QString name() const override { return get("name").toString(); }
    void scrollIntoView() override { set("scrollIntoView", true); }
    QString innerText() const override { return get("innerText").toString(); }
    void setInnerText(const QString& text) override { set("innerText", text); }
    QString type() const override { return required(get("type")).toString(); }
    bool checked() const override { return required(get("checked")).toBool(); }
    void setChecked(bool checked) override { set("checked", checked); }
    QString value() const override { return required(get("value")).toString(); }
    void setValue(const QString& value) override { set("value", value); }
    int selectedIndex() const override { return required(get("selectedIndex")).toInt(); }
    void setSelectedIndex(int index) override { set("selectedIndex", index); }

private:
    QJsonValue get(const char* property) const;
    void set(const char* property, const QJsonValue& value) const;
    // A property the element does not have is the classic "not supported" error.
    static QJsonValue required(const QJsonValue& value);

    std::shared_ptr<const CdpDocument> m_document;
    qint64 m_id;
};
