// Window tracking: one holder per window, free holders reused lowest first, nested passes
// while messages are pumped, and documents destroyed under a running handler.
#include "BrowserFixture.h"

using namespace Qt::StringLiterals;

namespace {
using TestBrowserTracking = BrowserFixture;

TEST_F(TestBrowserTracking, HoldersAreCreatedInOrderAndReusedLowestFirst)
{
    tracking->ResetIEs();
    EXPECT_EQ(tracking->upperBound(), 0);
    EXPECT_EQ(host.statuses, QStringList{"updating windows"});

    auto a = shell.open();
    auto b = shell.open();
    auto c = shell.open();
    tracking->start();
    tracking->ResetIEs();
    EXPECT_EQ(tracking->upperBound(), 3);
    EXPECT_EQ(holderFor(a), 1);
    EXPECT_EQ(holderFor(b), 2);
    EXPECT_EQ(holderFor(c), 3);

    shell.close(b);
    EXPECT_EQ(tracking->upperBound(), 3);
    auto d = shell.open();
    EXPECT_EQ(holderFor(d), 2);
    EXPECT_EQ(tracking->upperBound(), 3);

    auto e = shell.open();
    auto f = shell.open();
    EXPECT_EQ(holderFor(f), 5);
    shell.close(d);
    shell.close(f);
    auto g = shell.open();
    EXPECT_EQ(holderFor(g), 2);
    EXPECT_EQ(tracking->upperBound(), 5);
    EXPECT_EQ(tracking->holder(0)->InternetExplorer(), nullptr);
    EXPECT_EQ(holderFor(e), 4);
}

TEST_F(TestBrowserTracking, ANestedPassDuringThePumpLeavesOneHolderPerWindow)
{
    tracking->start();
    auto a = shell.open();
    // While the next pass pumps after its first window, two more windows open, each starting
    // a nested pass of its own.
    pump.pending.push_back([&] {
        shell.open();
        shell.open();
    });
    auto b = shell.open();
    EXPECT_GE(pump.turns, 3);
    const auto windows = shell.items();
    ASSERT_EQ(windows.size(), 4);
    EXPECT_EQ(tracking->upperBound(), 4);
    QList<int> indexes;
    for (const BrowserPtr& window : windows)
        indexes << holderFor(std::static_pointer_cast<ModelBrowser>(window));
    std::sort(indexes.begin(), indexes.end());
    EXPECT_EQ(indexes, (QList<int>{1, 2, 3, 4}));
    EXPECT_EQ(holderFor(a), 1);
    (void)b;
}

TEST_F(TestBrowserTracking, AnUnanswerableWindowEndsThePassReportedOnlyWhenVisible)
{
    tracking->start();
    auto a = shell.open();
    a->close(); // still listed, but its handle cannot be read
    auto b = shell.open();
    EXPECT_EQ(holderFor(b), 0);
    EXPECT_TRUE(errors.reports.empty());

    host.visible = true;
    tracking->ResetIEs();
    ASSERT_EQ(errors.reports.size(), 1u);
    EXPECT_EQ(errors.reports[0].procedure, u"ResetIEs"_s);

    shell.close(a);
    EXPECT_EQ(holderFor(b), 1);

    shell.setWalkFails(true);
    tracking->ResetIEs();
    EXPECT_EQ(errors.reports.size(), 2u);
}

// A fill pumps messages after every field; meanwhile the window completes again and the
// holders are rebuilt under the running handler. Nothing freed may be touched (ASan checks).
TEST_F(TestBrowserTracking, FillThatPumpsWhileASecondLoadRebuildsTheHolders)
{
    tracking->start();
    auto window = shell.open();
    auto frame = loadedFrame(u"http://a/frame"_s);
    auto first = page(u"http://a/one"_s, {frame});
    auto second = page(u"http://a/two"_s, {loadedFrame(u"http://a/frame2"_s)});

    int depth = 0;
    events.onNewDoc = [&](int, const DocPtr& document) {
        ++depth;
        if (document->url() == QLatin1String("http://a/one") && depth == 1) {
            // The user double-clicks twice in the page being filled while the second page loads.
            pump.pending.push_back([&] { window->navigate(second); });
            for (int field = 0; field < 3; ++field)
                pump.DoEvents();
        }
        --depth;
    };
    window->navigate(first);
    const auto held = tracking->holder(1);
    ASSERT_EQ(held->htmlHolderUpperBound(), 3);
    // The outer pass went on with its own frames after the rebuild.
    EXPECT_EQ(held->htmlHolder(1)->HTMLDoc()->url(), u"http://a/two"_s);
    EXPECT_EQ(held->htmlHolder(3)->HTMLDoc()->url(), u"http://a/frame"_s);
    EXPECT_EQ(first->subscriberCount(), 0);

    // A refill by double clicks that destroys the very holder raising it.
    events.onNewDoc = [&](int, const DocPtr&) {
        if (depth++ == 0)
            window->navigate(page(u"http://a/three"_s));
        --depth;
    };
    auto third = std::static_pointer_cast<ModelDocument>(held->htmlHolder(1)->HTMLDoc());
    clock.advanceMs(100);
    third->dblclick();
    clock.advanceMs(500);
    EXPECT_FALSE(third->dblclick());
    EXPECT_EQ(held->htmlHolder(1)->HTMLDoc()->url(), u"http://a/three"_s);
    EXPECT_EQ(third->handlerErrors(), 0);
}
} // namespace
