#pragma once

#include "Browser.h"
#include "HTMLHolder.h"

#include <memory>
#include <vector>

class Clock;
class ErrorReport;
class ShellWindowList;
class SiteFiles;

// The main window's handlers of the browser window holders' events; the first argument is
// the holder's index.
class IEHolderEvents
{
public:
    virtual ~IEHolderEvents() = default;
    virtual void IEHolder_NewDoc(int Index, const DocPtr& document) = 0;
    virtual void IEHolder_DocChanged(int Index, const DocPtr& document,
                                     const ElementPtr& element) = 0;
    virtual void IEHolder_HTMLGotFocus(int Index, const DocPtr& document) = 0;
    virtual void IEHolder_UpdateShortcut(int Index, const QString& URL) = 0;
    virtual void IEHolder_SetStatus(int Index, const QString& Text) = 0;
    // A followed document's page added form fields after it completed.
    virtual void IEHolder_FieldsAdded(int Index, const DocPtr& document) = 0;
};

// What every browser window holder is given.
struct IEHolderServices
{
    IEHolderEvents& events;
    ErrorReport& errors;
    SiteFiles& sites;
    ShellWindowList& shell;
    const Clock& clock;
};

// Follows one browser window: holds a document holder for its top document and each loaded
// frame, records visits on clicks, and raises its events towards the main window. A frame that
// completes on its own gets a new holder in place of its old one; the others stay held.
class IEHolder : public BrowserEvents,
                 public HTMLHolderEvents,
                 public std::enable_shared_from_this<IEHolder>
{
public:
    IEHolder(int index, const IEHolderServices& services);
    ~IEHolder() override;
    IEHolder(const IEHolder&) = delete;
    IEHolder& operator=(const IEHolder&) = delete;

    int index() const { return m_index; }
    BrowserPtr InternetExplorer() const { return m_ie; }
    // Takes up a window: its documents are held anew unless an old one still answers.
    void setInternetExplorer(const BrowserPtr& browser);
    void ProcessIE(const BrowserPtr& browser);
    // A frame of the window completed on its own: it alone is held anew and filled.
    void ProcessFrame(const BrowserPtr& frame);
    static bool IsHTMLDocument(DocumentOwner* object);

    // Document holders 1 to the upper bound; slot 0 is the template.
    int htmlHolderUpperBound() const { return static_cast<int>(m_htmlHolders.size()) - 1; }
    std::shared_ptr<HTMLHolder> htmlHolder(int index) const { return m_htmlHolders.at(index); }

    void IE_DocumentComplete(const BrowserPtr& pDisp, const QString& URL) override;
    void IE_ProgressChange(int Progress, int ProgressMax) override;
    void IE_StatusTextChange(const QString& Text) override;

    void HTMLHolder_DocChanged(const DocPtr& document, const ElementPtr& element) override;
    void HTMLHolder_HTMLGotFocus(const DocPtr& document) override;
    void HTMLHolder_DocComplete(const DocPtr& document) override;
    void HTMLHolder_DocVisited(const DocPtr& document) override;
    void HTMLHolder_FieldsAdded(const DocPtr& document) override;

private:
    void addHTMLHolder(const DocPtr& document);
    std::shared_ptr<HTMLHolder> makeHTMLHolder(const DocPtr& document);
    void destroyHTMLHoldersDownTo(int lowest);

    int m_index;
    IEHolderServices m_services;
    BrowserPtr m_ie;
    std::vector<std::shared_ptr<HTMLHolder>> m_htmlHolders;
};

// The classic progress text: "loading ... " and the whole percentage, or nothing when the
// figures say no progress.
std::optional<QString> ProgressText(int Progress, int ProgressMax);
