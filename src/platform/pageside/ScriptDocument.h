#pragma once

#include "HtmlDocument.h"
#include "HtmlElement.h"
#include "PageCall.h"
#include "Subscribers.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <functional>
#include <optional>

class AppError;
class PageScriptHost;
class ScriptListing;

// A document of a real page or frame: reads and writes go through the page script in Tolvane's
// own realm of that document; its events arrive from the browser adapter.
class ScriptDocument : public HtmlDocument, public std::enable_shared_from_this<ScriptDocument>
{
public:
    ScriptDocument(PageScriptHost& host, QString realm, QString frameId);

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
    QList<ElementPtr> addedFields() override;
    void beginBatch() override;
    void endBatch() override;
    // The page's dialog closed: a fill it made miss runs now, as the document is complete.
    void dialogClosed();

    // The batch now open, or 0: a listing taken in it answers reads until it ends.
    quint64 openBatch() const { return m_batchDepth > 0 ? m_batch : 0; }
    // A write made during a batch: it goes to the page with the next call, in order.
    void queueWrite(qint64 id, const QString& property, const QJsonValue& value) const;

    // Runs "window.__tolvane." + call in the document's world and gives back the value.
    QJsonValue run(PageCall call) const;
    // A user's action the script reported ("click", "focusin", ...) with what the page was then:
    // the active element, the document's texts and the fields a handler reads (the active one and
    // the one active before). While its handlers run, reads are answered from that, so a handler
    // needs no call to the page and sees the page as it was when the user acted.
    void raise(const QString& kind, const QJsonObject& report);
    // A field's property as the event being handled reported it.
    std::optional<QJsonValue> reported(qint64 id, const QString& property) const;
    // A write makes what the event reported of the fields out of date; one not made through a
    // listing also what the batch read ahead.
    void wrote(bool throughListing) const;

    // The active element as the page last reported it.
    void noteActive(qint64 id) { m_lastActiveId = id; }
    // Asks for what a fill reads first without waiting for it; `done` runs once the answer is
    // in (or the page refused it). The next batch reads it, unless the page reported something
    // or was written to meanwhile: a page busy loading its frames is not waited for.
    void prefetch(std::function<void()> done);

    // Whether the browser has let the document go: its calls then answer nothing.
    bool unloaded() const { return m_unloaded; }

    const QString& realm() const { return m_realm; }
    QString frameId() const override { return m_frame; }

private:
    QString text(const char* property) const;
    ElementPtr element(const QJsonValue& id) const;
    QList<ElementPtr> listing(const QJsonArray& records) const;
    // The batch's first read brings the document's texts and its form fields in one call.
    void readAhead() const;

    PageScriptHost& m_host;
    QString m_realm;
    QString m_frame;
    Subscribers<DocumentEvents> m_sinks;
    struct EventState
    {
        std::optional<qint64> activeId;
        QJsonObject fields; // by element id
        QJsonObject texts;  // the document's
        QJsonObject lists;  // its form fields by tag name, when the report brought them
    };
    mutable EventState m_event;
    std::optional<qint64> m_lastActiveId; // as the page's last report gave it
    int m_batchDepth = 0;
    quint64 m_batch = 0;
    mutable QString m_pendingWrites;                // JSON array elements [id, property, value]
    mutable QHash<QString, QString> m_batchTexts;   // document properties read in the batch
    mutable QHash<QString, QJsonArray> m_readAhead; // listings by tag name, each used once
    mutable bool m_readAheadDone = false;
    mutable bool m_unloaded = false;
    mutable bool m_fillMissed = false;
    mutable QJsonObject m_prefetched; // a snapshot of the page's fields not yet read
};

// An element of a real page, by its id in the document's script.
class ScriptElement : public HtmlElement
{
public:
    ScriptElement(std::shared_ptr<const ScriptDocument> document, qint64 id)
        : m_document(std::move(document)), m_id(id)
    {
    }
    // An element of a listing taken during a batch.
    ScriptElement(std::shared_ptr<const ScriptDocument> document,
                  std::shared_ptr<ScriptListing> listing, int index);

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
    bool userTouched() const override;
    bool userTyped() const override;
    FieldDescription description() const override;

private:
    QJsonValue get(const char* property) const;
    void set(const char* property, const QJsonValue& value) const;
    // A property the element does not have is the classic "not supported" error.
    static QJsonValue required(const QJsonValue& value);
    // The listing, while the batch it was taken in is open.
    ScriptListing* listing() const;

    std::shared_ptr<const ScriptDocument> m_document;
    qint64 m_id;
    std::shared_ptr<ScriptListing> m_listing;
    int m_index = -1;
};
