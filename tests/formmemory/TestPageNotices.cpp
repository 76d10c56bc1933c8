// The bar shows the page that last got the focus: title or address, and its cookies.
#include "FormMemoryFixture.h"

using namespace Qt::StringLiterals;

namespace {
using TestPageNotices = FormMemoryFixture;

TEST_F(TestPageNotices, TitleAddressAndCookiesOfTheFocusedPage)
{
    struct Case
    {
        const char* name;
        QString url;
        QString title;
        QString cookie;
        QString active;
        bool cookieShown;
        QString toolTip;
    } cases[] = {
        {"titled with cookies", "http://a/", "Win a car", "id=42; seen=1", "Win a car", true,
         "This page uses cookies: id=42; seen=1"},
        {"no title", "http://b/", "", "", "http://b/", false, "This page uses cookies: "},
        {"blank title", "http://c/", "   ", "  ", "http://c/", false, "This page uses cookies: "},
        {"neither", "", "", "x=1", "", true, "This page uses cookies: x=1"},
    };
    for (const Case& c : cases) {
        auto page = std::make_shared<ModelDocument>(c.url, c.title);
        page->setCookie(c.cookie);
        load(page);
        page->activate();
        EXPECT_EQ(f.form.txtActive.text(), c.active) << c.name;
        EXPECT_EQ(f.form.txtURL.text(), c.url) << c.name;
        EXPECT_EQ(f.form.imgCookie.isVisible(), c.cookieShown) << c.name;
        EXPECT_EQ(f.form.imgCookie.toolTip(), c.toolTip) << c.name;
    }
}

TEST_F(TestPageNotices, FocusMovingBetweenFramesFollowsEachFrame)
{
    auto left = formPage(u"http://a.example/left"_s, {"x"});
    auto right = formPage(u"http://b.example/right"_s, {"y"});
    right->setCookie("r=1");
    left->setReadyState("complete");
    right->setReadyState("complete");
    auto top = formPage(u"http://a.example/"_s);
    top->addFrame(left);
    top->addFrame(right);
    load(top);
    left->focus(field(left, "x"));
    EXPECT_EQ(f.form.txtURL.text(), u"http://a.example/left"_s);
    EXPECT_FALSE(f.form.imgCookie.isVisible());
    right->focus(field(right, "y"));
    EXPECT_EQ(f.form.txtActive.text(), u"Contest at http://b.example/right"_s);
    EXPECT_TRUE(f.form.imgCookie.isVisible());

    // A page gone away empties the boxes and leaves the cookie picture as it was.
    window->close();
    f.form.IEHolder_HTMLGotFocus(1, left);
    EXPECT_EQ(f.form.txtActive.text(), QString());
    EXPECT_TRUE(f.form.imgCookie.isVisible());
    EXPECT_TRUE(f.boxes.shown.empty());
}

// The active page outlives its window: the bar keeps its title and address, so that a page the
// user has just closed can still be added as a shortcut.
TEST_F(TestPageNotices, TheActivePageStaysShownWhenItsWindowCloses)
{
    auto page = std::make_shared<ModelDocument>(u"http://a.example/draw"_s, u"Spring draw"_s);
    load(page);
    page->activate();
    ASSERT_TRUE(f.form.cmdAddShortcut.isEnabled());
    f.shellWindows.close(window);
    EXPECT_EQ(f.form.tracking().upperBound(), 1);
    EXPECT_EQ(f.form.txtActive.text(), u"Spring draw"_s);
    EXPECT_EQ(f.form.txtURL.text(), u"http://a.example/draw"_s);
    EXPECT_TRUE(f.form.cmdAddShortcut.isEnabled());
}
} // namespace
