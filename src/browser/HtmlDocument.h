#pragma once

#include "HtmlElement.h"

#include <QList>
#include <QString>
#include <memory>

class HtmlDocument;
using DocPtr = std::shared_ptr<HtmlDocument>;

// The six document events the holders subscribe to. Click and double click answer the
// document: true lets the browser act, false cancels.
class DocumentEvents
{
public:
    virtual ~DocumentEvents() = default;
    virtual void HTML_onactivate() = 0;
    virtual bool HTML_onclick() = 0;
    virtual bool HTML_ondblclick() = 0;
    virtual void HTML_onfocusin() = 0;
    virtual void HTML_onpropertychange() = 0;
    virtual void HTML_onreadystatechange() = 0;
    // The page's scripts added form fields after the document completed (today's pages render
    // their forms late); addedFields() gives them out.
    virtual void HTML_onfieldsadded() = 0;
};

// Anything with a "document" member: a browser window or a frame's window.
class DocumentOwner
{
public:
    virtual ~DocumentOwner() = default;
    // The HTML document shown; nullptr when what is shown is no HTML document. Throws
    // AppError when the document cannot be reached (gone, or another site's frame).
    virtual DocPtr document() = 0;
};

using FramePtr = std::shared_ptr<DocumentOwner>;

// An HTML document. Reads of a document whose browser has gone throw AppError.
class HtmlDocument
{
public:
    virtual ~HtmlDocument() = default;

    virtual QString title() const = 0;
    virtual QString url() const = 0;
    virtual QString URLUnencoded() const = 0;
    virtual QString readyState() const = 0;
    virtual QString cookie() const = 0;
    // nullptr when no element is active.
    virtual ElementPtr activeElement() const = 0;
    // all.tags(name): the elements with that tag name, in document order.
    virtual QList<ElementPtr> tags(const QString& tagName) const = 0;
    virtual int framesLength() const = 0;
    // frames.item(index), counted from 0.
    virtual FramePtr frameItem(int index) const = 0;
    // Which frame (or window) shows this document: the same for every document that frame
    // shows, so a frame that loads anew can be told from the others. Never fails.
    virtual QString frameId() const = 0;
    // The form fields (inputs, text areas, lists) the page added after it completed that no
    // fill has taken yet, in document order; each is given out once.
    virtual QList<ElementPtr> addedFields() { return {}; }

    virtual void subscribe(const std::shared_ptr<DocumentEvents>& sink) = 0;
    virtual void unsubscribe(const DocumentEvents* sink) = 0;

    // Reads and writes that belong together (one fill). Between the two calls a document in
    // another process may answer reads of listed elements from the listing and send writes
    // together; endBatch applies what is still pending (an adapter may send it on without
    // waiting) and may throw AppError as a write would.
    // Batches nest; only the outermost end applies.
    virtual void beginBatch() {}
    virtual void endBatch() {}
};

// A batch for one scope: commit() ends it and lets a failed write be seen; leaving the scope
// any other way (an error already on its way) still applies what is pending, quietly.
class DocumentBatch
{
public:
    explicit DocumentBatch(HtmlDocument& document) : m_document(document)
    {
        m_document.beginBatch();
    }
    ~DocumentBatch()
    {
        if (m_open) {
            try {
                m_document.endBatch();
            } catch (...) {
            }
        }
    }
    DocumentBatch(const DocumentBatch&) = delete;
    DocumentBatch& operator=(const DocumentBatch&) = delete;

    void commit()
    {
        m_open = false;
        m_document.endBatch();
    }

private:
    HtmlDocument& m_document;
    bool m_open = true;
};
