// The browser window holder: document holders for the page and its loaded frames, NewDoc in
// frame order, progress texts, visits to the window's address, and taking up a new window.
#include "BrowserFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestIEHolder : public BrowserFixture
{
protected:
    std::shared_ptr<IEHolder> holderWith(const std::shared_ptr<ModelBrowser>& window)
    {
        auto holder =
            std::make_shared<IEHolder>(1, IEHolderServices{events, errors, sites, shell, clock});
        holder->setInternetExplorer(window);
        return holder;
    }
    QStringList heldUrls(const IEHolder& holder) const
    {
        QStringList urls;
        for (int i = 1; i <= holder.htmlHolderUpperBound(); ++i)
            urls << holder.htmlHolder(i)->HTMLDoc()->url();
        return urls;
    }
};

TEST_F(TestIEHolder, FramesetHoldsTheTopAndEveryLoadedReachableFrame)
{
    auto window = shell.open();
    auto holder = holderWith(window);
    auto loading = page(u"http://a/loading"_s);
    auto top = page(u"http://a/top"_s,
                    {loadedFrame(u"http://a/f1"_s), loading, loadedFrame(u"http://a/f3"_s)});
    top->addFrame(loadedFrame(u"http://other/denied"_s), true);
    top->addFrame(nullptr); // a frame showing no HTML document
    events.take();
    window->navigate(top);
    // The frames complete on their own first, each rebuilding from its own document.
    EXPECT_EQ(events.take(),
              (QStringList{"NewDoc 1 http://a/f1", "NewDoc 1 http://a/f3", "NewDoc 1 http://a/top",
                           "NewDoc 1 http://a/f1", "NewDoc 1 http://a/f3"}));
    EXPECT_EQ(heldUrls(*holder), (QStringList{"http://a/top", "http://a/f1", "http://a/f3"}));
    EXPECT_TRUE(errors.reports.empty());
    EXPECT_EQ(shell.activated().last(), u"Title of http://a/top"_s);

    // A frame completing later is held beside the others, and only it is filled.
    const auto topHolder = holder->htmlHolder(1);
    window->completeFrame(1);
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://a/loading"});
    EXPECT_EQ(heldUrls(*holder),
              (QStringList{"http://a/top", "http://a/f1", "http://a/f3", "http://a/loading"}));
    EXPECT_EQ(holder->htmlHolder(1), topHolder);

    // A frame that goes on to another document: its holder is replaced in place.
    auto ad = loadedFrame(u"http://ads.example/next"_s);
    window->loadFrame(0, ad);
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://ads.example/next"});
    EXPECT_EQ(heldUrls(*holder), (QStringList{"http://a/top", "http://ads.example/next",
                                              "http://a/f3", "http://a/loading"}));
    EXPECT_EQ(ad->subscriberCount(), 1);

    // The page itself is still followed: what the user does there is reported.
    auto name = top->add(ModelElement::input(u"text"_s, u"fname"_s));
    top->type(name, u"Ann"_s);
    top->focus(top->tags(u"body"_s).first());
    EXPECT_TRUE(events.take().contains(u"DocChanged 1 http://a/top INPUT"_s));

    // The top completing again holds the page afresh, in frame order.
    window->navigate(top);
    events.take();
    EXPECT_EQ(heldUrls(*holder), (QStringList{"http://a/top", "http://ads.example/next",
                                              "http://a/loading", "http://a/f3"}));
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestIEHolder, FieldsAPageAddsAreReportedByItsHolder)
{
    auto window = shell.open();
    auto holder = holderWith(window);
    auto frame = loadedFrame(u"http://a/frame"_s);
    auto top = page(u"http://a/top"_s, {frame});
    window->navigate(top);
    events.take();
    top->addLater(ModelElement::input(u"text"_s, u"email"_s));
    frame->addLater(ModelElement::input(u"text"_s, u"phone"_s));
    EXPECT_EQ(events.take(),
              (QStringList{"FieldsAdded 1 http://a/top", "FieldsAdded 1 http://a/frame"}));
}

TEST_F(TestIEHolder, FolderWindowsHoldNothingAndKeepThePreviousPage)
{
    auto folder = shell.open();
    folder->showFolder(u"C:\\Contests"_s);
    auto idle = holderWith(folder);
    EXPECT_EQ(idle->htmlHolderUpperBound(), 0);

    auto window = shell.open();
    auto holder = holderWith(window);
    window->navigate(page(u"http://a/"_s));
    events.take();
    auto kept = holder->htmlHolder(1);
    window->showFolder(u"C:\\"_s);
    EXPECT_TRUE(events.take().isEmpty());
    EXPECT_EQ(holder->htmlHolder(1), kept);
}

TEST_F(TestIEHolder, ProgressAndStatusTexts)
{
    auto window = shell.open();
    auto holder = holderWith(window);
    const std::tuple<int, int, const char*> cases[] = {
        {50, 200, "SetStatus 1 loading ... 25%"},
        {3, 7, "SetStatus 1 loading ... 42%"},
        {300, 200, "SetStatus 1 loading ... 150%"},
        {0, 100, "SetStatus 1 loading ... 0%"},
        {7, 0, nullptr},
        {-1, 100, nullptr},
        {2147483647, 1, "SetStatus 1 loading ... 214748364700%"},
    };
    for (const auto& [progress, max, text] : cases) {
        window->progress(progress, max);
        EXPECT_EQ(events.take(), text ? QStringList{QString::fromLatin1(text)} : QStringList{})
            << progress << "/" << max;
    }
    window->statusText(QString());
    window->statusText(u"http://a/link"_s);
    EXPECT_EQ(events.take(), (QStringList{"SetStatus 1 ", "SetStatus 1 http://a/link"}));
}

TEST_F(TestIEHolder, AClickInAFrameRecordsAVisitToTheWindowsAddress)
{
    auto window = shell.open();
    auto holder = holderWith(window);
    auto frame = loadedFrame(u"http://ads.example/banner"_s);
    window->navigate(page(u"http://prizes.example/enter.html"_s, {frame}));
    events.take();
    EXPECT_TRUE(frame->click());
    EXPECT_EQ(events.take(), QStringList{"UpdateShortcut 1 http://prizes.example/enter.html"});
    EXPECT_EQ(sites.GetTotalVisits(u"http://prizes.example/enter.html"_s), 1);
    EXPECT_EQ(sites.GetTotalVisits(u"http://ads.example/banner"_s), 0);

    // The window has gone by the time of the click: the handler reports and raises nothing.
    window->close();
    frame->click();
    ASSERT_EQ(errors.reports.size(), 1u);
    EXPECT_EQ(errors.reports[0].procedure, u"HTMLHolder_DocComplete"_s);
    EXPECT_TRUE(events.take().isEmpty());
}

TEST_F(TestIEHolder, TakingUpANewWindowDependsOnWhetherOldDocumentsStillAnswer)
{
    auto oldWindow = shell.open();
    auto holder = holderWith(oldWindow);
    auto oldPage = page(u"http://old/"_s, {loadedFrame(u"http://old/frame"_s)});
    oldWindow->navigate(oldPage);
    ASSERT_EQ(holder->htmlHolderUpperBound(), 2);

    // The highest document still answers: nothing is destroyed and nothing processed.
    auto second = shell.open();
    second->navigate(page(u"http://second/"_s));
    events.take();
    holder->setInternetExplorer(second);
    EXPECT_EQ(holder->htmlHolderUpperBound(), 2);
    EXPECT_TRUE(events.take().isEmpty());
    EXPECT_EQ(oldPage->subscriberCount(), 1);

    // All old documents dead: all are dropped and the new window's page is held.
    oldWindow->close();
    auto third = shell.open();
    third->navigate(page(u"http://third/"_s));
    holder->setInternetExplorer(third);
    EXPECT_EQ(heldUrls(*holder), QStringList{"http://third/"});
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://third/"});
    EXPECT_EQ(oldPage->subscriberCount(), 0);
}
} // namespace
