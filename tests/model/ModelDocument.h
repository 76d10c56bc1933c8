#pragma once

#include "HtmlDocument.h"
#include "ModelElement.h"
#include "Subscribers.h"

#include <QList>
#include <functional>

// A frame's window in the document model: its document, or none when what it shows is no HTML
// document; a frame of another site denies access to its document.
class ModelFrame : public DocumentOwner
{
public:
    const DocPtr& shown() const { return m_document; }
    ModelFrame(DocPtr document, bool accessDenied = false);
    DocPtr document() override;
    // The frame goes on to another document.
    void show(DocPtr document);

private:
    QString m_id;
    DocPtr m_document;
    bool m_denied;
};

// An HTML document of the in-memory model. Tests and demos act on it as a user and a browser
// would (focus, typing, clicks, loading), and it raises the six document events synchronously.
class ModelDocument : public HtmlDocument, public std::enable_shared_from_this<ModelDocument>
{
public:
    explicit ModelDocument(const QString& url, const QString& title = {});

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
    QString frameId() const override { return m_frameId; }
    QList<ElementPtr> addedFields() override;

    // Building the page.
    template <class E> std::shared_ptr<E> add(std::shared_ptr<E> element)
    {
        element->setDocument(this);
        m_elements.append(element);
        return element;
    }
    std::shared_ptr<ModelFrame> addFrame(const DocPtr& document, bool accessDenied = false);
    // The page's script adds a field after the document completed; the report of it may come
    // with this or a later addition.
    void addLater(const std::shared_ptr<ModelElement>& element, bool reportNow = true);
    void setFrameId(const QString& frameId) { m_frameId = frameId; }
    void setTitle(const QString& title) { m_title = title; }
    void setCookie(const QString& cookie) { m_cookie = cookie; }
    // An active element that cannot be read, as some browsers answer during a load.
    void setActiveElementUnreadable(bool unreadable) { m_activeUnreadable = unreadable; }

    // What a user and the browser do; each raises the document's events.
    void focus(const ElementPtr& element);
    void type(const std::shared_ptr<ModelElement>& element, const QString& text);
    void check(const std::shared_ptr<ModelElement>& element, bool checked);
    void choose(const std::shared_ptr<ModelElement>& list, int index);
    bool click();
    bool dblclick();
    void activate();
    void setReadyState(const QString& state);
    // The window went away: every later call on this document and its frames throws.
    void detach();

    void checkAlive() const;
    void uncheckRadioGroup(const QString& name, const ModelElement* except);
    int subscriberCount() const { return static_cast<int>(m_sinks.snapshot().size()); }
    // Errors that escaped a handler; the browser drops them, tests look at them.
    int handlerErrors() const { return m_handlerErrors; }

private:
    bool raise(const std::function<bool(DocumentEvents&)>& event);
    // The user focuses the element (when it has not the focus yet) and changes it.
    void edit(const ElementPtr& element, const std::function<void()>& change);

    QString m_url;
    QString m_frameId;
    QList<ElementPtr> m_added;
    QString m_title;
    QString m_cookie;
    QString m_readyState = QStringLiteral("loading");
    ElementPtr m_active;
    bool m_activeUnreadable = false;
    QList<ElementPtr> m_elements;
    QList<std::shared_ptr<ModelFrame>> m_frames;
    Subscribers<DocumentEvents> m_sinks;
    bool m_detached = false;
    int m_handlerErrors = 0;
};
