// The browser window holder: document holders for the page and its loaded frames, NewDoc in
// frame order, progress texts, visits to the window's address, and taking up a new window.
#include "BrowserFixture.h"

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
    auto loading = page(QStringLiteral("http://a/loading"));
    auto top =
        page(QStringLiteral("http://a/top"), {loadedFrame(QStringLiteral("http://a/f1")), loading,
                                              loadedFrame(QStringLiteral("http://a/f3"))});
    top->addFrame(loadedFrame(QStringLiteral("http://other/denied")), true);
    top->addFrame(nullptr); // a frame showing no HTML document
    events.take();
    window->navigate(top);
    // The frames complete on their own first, each rebuilding from its own document.
    EXPECT_EQ(events.take(),
              (QStringList{"NewDoc 1 http://a/f1", "NewDoc 1 http://a/f3", "NewDoc 1 http://a/top",
                           "NewDoc 1 http://a/f1", "NewDoc 1 http://a/f3"}));
    EXPECT_EQ(heldUrls(*holder), (QStringList{"http://a/top", "http://a/f1", "http://a/f3"}));
    EXPECT_TRUE(errors.reports.empty());
    EXPECT_EQ(shell.activated().last(), QStringLiteral("Title of http://a/top"));

    // A frame completing later is held beside the others, and only it is filled.
    const auto topHolder = holder->htmlHolder(1);
    window->completeFrame(1);
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://a/loading"});
    EXPECT_EQ(heldUrls(*holder),
              (QStringList{"http://a/top", "http://a/f1", "http://a/f3", "http://a/loading"}));
    EXPECT_EQ(holder->htmlHolder(1), topHolder);

    // A frame that goes on to another document: its holder is replaced in place.
    auto ad = loadedFrame(QStringLiteral("http://ads.example/next"));
    window->loadFrame(0, ad);
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://ads.example/next"});
    EXPECT_EQ(heldUrls(*holder), (QStringList{"http://a/top", "http://ads.example/next",
                                              "http://a/f3", "http://a/loading"}));
    EXPECT_EQ(ad->subscriberCount(), 1);

    // The page itself is still followed: what the user does there is reported.
    auto name = top->add(ModelElement::input(QStringLiteral("text"), QStringLiteral("fname")));
    top->type(name, QStringLiteral("Ann"));
    top->focus(top->tags(QStringLiteral("body")).first());
    EXPECT_TRUE(events.take().contains(QStringLiteral("DocChanged 1 http://a/top INPUT")));

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
    auto frame = loadedFrame(QStringLiteral("http://a/frame"));
    auto top = page(QStringLiteral("http://a/top"), {frame});
    window->navigate(top);
    events.take();
    top->addLater(ModelElement::input(QStringLiteral("text"), QStringLiteral("email")));
    frame->addLater(ModelElement::input(QStringLiteral("text"), QStringLiteral("phone")));
    EXPECT_EQ(events.take(),
              (QStringList{"FieldsAdded 1 http://a/top", "FieldsAdded 1 http://a/frame"}));
}

TEST_F(TestIEHolder, FolderWindowsHoldNothingAndKeepThePreviousPage)
{
    auto folder = shell.open();
    folder->showFolder(QStringLiteral("C:\\Contests"));
    auto idle = holderWith(folder);
    EXPECT_EQ(idle->htmlHolderUpperBound(), 0);

    auto window = shell.open();
    auto holder = holderWith(window);
    window->navigate(page(QStringLiteral("http://a/")));
    events.take();
    auto kept = holder->htmlHolder(1);
    window->showFolder(QStringLiteral("C:\\"));
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
    window->statusText(QStringLiteral("http://a/link"));
    EXPECT_EQ(events.take(), (QStringList{"SetStatus 1 ", "SetStatus 1 http://a/link"}));
}

TEST_F(TestIEHolder, AClickInAFrameRecordsAVisitToTheWindowsAddress)
{
    auto window = shell.open();
    auto holder = holderWith(window);
    auto frame = loadedFrame(QStringLiteral("http://ads.example/banner"));
    window->navigate(page(QStringLiteral("http://prizes.example/enter.html"), {frame}));
    events.take();
    EXPECT_TRUE(frame->click());
    EXPECT_EQ(events.take(), QStringList{"UpdateShortcut 1 http://prizes.example/enter.html"});
    EXPECT_EQ(sites.GetTotalVisits(QStringLiteral("http://prizes.example/enter.html")), 1);
    EXPECT_EQ(sites.GetTotalVisits(QStringLiteral("http://ads.example/banner")), 0);

    // The window has gone by the time of the click: the handler reports and raises nothing.
    window->close();
    frame->click();
    ASSERT_EQ(errors.reports.size(), 1u);
    EXPECT_EQ(errors.reports[0].procedure, QStringLiteral("HTMLHolder_DocComplete"));
    EXPECT_TRUE(events.take().isEmpty());
}

TEST_F(TestIEHolder, TakingUpANewWindowDependsOnWhetherOldDocumentsStillAnswer)
{
    auto oldWindow = shell.open();
    auto holder = holderWith(oldWindow);
    auto oldPage =
        page(QStringLiteral("http://old/"), {loadedFrame(QStringLiteral("http://old/frame"))});
    oldWindow->navigate(oldPage);
    ASSERT_EQ(holder->htmlHolderUpperBound(), 2);

    // The highest document still answers: nothing is destroyed and nothing processed.
    auto second = shell.open();
    second->navigate(page(QStringLiteral("http://second/")));
    events.take();
    holder->setInternetExplorer(second);
    EXPECT_EQ(holder->htmlHolderUpperBound(), 2);
    EXPECT_TRUE(events.take().isEmpty());
    EXPECT_EQ(oldPage->subscriberCount(), 1);

    // All old documents dead: all are dropped and the new window's page is held.
    oldWindow->close();
    auto third = shell.open();
    third->navigate(page(QStringLiteral("http://third/")));
    holder->setInternetExplorer(third);
    EXPECT_EQ(heldUrls(*holder), QStringList{"http://third/"});
    EXPECT_EQ(events.take(), QStringList{"NewDoc 1 http://third/"});
    EXPECT_EQ(oldPage->subscriberCount(), 0);
}
} // namespace
