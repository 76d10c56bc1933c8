// Pages built the way today's contest, sign-up and checkout pages are: HTML5 input types, frames
// that load late, forms rendered by route changes, web components, page dialogs,
// forms that re-render while filled, and tabs. The user types, clicks and tabs for real.
#include "BarFixture.h"

using namespace Qt::StringLiterals;

namespace {
QByteArray titled(const char* title)
{
    return QByteArray("<html><head><title>") + title + "</title></head><body>tab</body></html>";
}

class TestTodaysPages : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/signup-again.html", page("todays/sign-up.html")},
                {"/components-again.html", page("todays/components.html")},
                {"/front-tab.html", titled("Front tab")},
                {"/background-tab.html", titled("Background tab")},
                {"/untitled.html", QByteArray("<html><body>no title</body></html>")}};
    }
    QString any(const char* key) { return stored("zAny.ini", "Any", QLatin1String(key)); }
    // Whether the page shows its dialog: DevTools cannot reach a page behind one, Firefox can,
    // and the page says so.
    bool showsDialog(const std::shared_ptr<ScriptWindow>& page)
    {
        try {
            return evaluate(page, "window.dialogUp === true").toBool();
        } catch (const AppError&) {
            return true;
        }
    }
    // Opens a page without waiting for it to complete (a dialog may hold it up).
    std::shared_ptr<ScriptWindow> openNoWait(const QString& url)
    {
        const int before = windows().size();
        driver->openAddress(url);
        EXPECT_TRUE(waitFor([&] { return windows().size() > before; }));
        return asPage(windows().last());
    }
    QString visibility(const std::shared_ptr<ScriptWindow>& page)
    {
        return evaluate(page, "document.visibilityState").toString();
    }
};
// What Firefox through the extension does no differently from Chromium through it (the same
// background and page script) and from Firefox over BiDi (the same browser).
class TestTodaysForms : public TestTodaysPages
{
};

TEST_P(TestTodaysForms, EmailPhoneAndOtherHtml5FieldsAreRememberedAndFilled)
{
    const QString site = server->url("/todays/sign-up.html");
    auto page = open(site);
    click(page, "[name=email]");
    type(page, "ann@example.org");
    tab(page);
    type(page, "+1 555 0100");
    tab(page);
    type(page, "42");
    tab(page);
    ASSERT_TRUE(waitFor([&] { return any("age") == QLatin1String("42"); }))
        << any("age").toStdString();
    EXPECT_EQ(any("email"), u"ann@example.org"_s);
    EXPECT_EQ(any("phone"), u"+1 555 0100"_s);
    EXPECT_EQ(siteValue(site, "email"), u"ann@example.org"_s);

    // What a field cannot hold is left as the browser makes it; the rest is filled.
    form->valueStore().SetValue(site, "birth", "2001-02-03");
    form->valueStore().SetValue(site, "site", "https://ann.example.org/");
    form->valueStore().SetValue(site, "odd", "anything");
    form->valueStore().SetValue(site, "secret", "never");
    form->valueStore().SetValue(server->url("/elsewhere"), "age", "forty");
    auto again = open(server->url("/signup-again.html", true));
    EXPECT_EQ(fieldValue(again, "email"), u"ann@example.org"_s);
    EXPECT_EQ(fieldValue(again, "phone"), u"+1 555 0100"_s);
    EXPECT_EQ(fieldValue(again, "birth"), u"2001-02-03"_s);
    EXPECT_EQ(fieldValue(again, "site"), u"https://ann.example.org/"_s);
    EXPECT_EQ(fieldValue(again, "odd"), u"anything"_s);
    EXPECT_EQ(fieldValue(again, "age"), QString()); // "forty" is no number
    EXPECT_EQ(fieldValue(again, "secret"), QString());
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, AnAdFrameLoadingLateLeavesTheMainFormFollowed)
{
    const QString site = server->url("/todays/late-ad.html");
    auto page = open(site);
    const QString ad = server->url("/todays/ad.html", true);
    ASSERT_TRUE(waitFor([&] { return heldUrls(page).contains(ad); }, 8000))
        << heldUrls(page).join(' ').toStdString();
    EXPECT_EQ(heldUrls(page).first(), site);

    click(page, "[name=fname]");
    type(page, "Ann");
    tab(page);
    type(page, "ann@example.org");
    click(page, "[name=fname]");
    EXPECT_TRUE(
        waitFor([&] { return siteValue(site, "email") == QLatin1String("ann@example.org"); }));
    EXPECT_EQ(siteValue(site, "fname"), u"Ann"_s);
    EXPECT_EQ(any("fname"), u"Ann"_s);
    expectNoErrorBox();
}

TEST_P(TestTodaysForms, ARouteChangeOfASinglePageAppIsFilledUnderItsNewAddress)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    form->valueStore().SetValue(server->url("/elsewhere"), "phone", "555 0100");
    auto page = open(server->url("/todays/single-page.html"));
    click(page, "#enter");
    ASSERT_TRUE(
        waitFor([&] { return fieldValue(page, "phone") == QLatin1String("555 0100"); }, 5000));
    EXPECT_EQ(fieldValue(page, "fname"), u"Ann"_s);

    // What the user types there belongs to the new address.
    click(page, "[name=code]");
    type(page, "WIN-42");
    tab(page);
    const QString route = server->url("/spa/entry");
    EXPECT_TRUE(waitFor([&] { return siteValue(route, "code") == QLatin1String("WIN-42"); }));
    EXPECT_EQ(page->LocationURL(), route);
    // A jump within the page is where the window is now.
    click(page, "a#rules");
    EXPECT_TRUE(waitFor([&] { return page->LocationURL() == route + u"#rules"_s; }))
        << page->LocationURL().toStdString();
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, FieldsInOpenShadowRootsAreRememberedAndFilled)
{
    const QString site = server->url("/todays/components.html");
    auto page = open(site);
    const QString entry = u"document.querySelector('contest-entry').shadowRoot"_s;
    clickOn(page, entry + u".querySelector('[name=fname]')"_s);
    type(page, "Ann");
    tab(page);
    type(page, "ann@example.org");
    tab(page);
    // A list inside the shadow root, chosen with the keyboard.
    driver->press(*page, PageDriver::Key::ArrowDown);
    tab(page);
    ASSERT_TRUE(waitFor([&] { return any("state") == QLatin1String("NY"); }))
        << any("state").toStdString();
    EXPECT_EQ(any("fname"), u"Ann"_s);
    EXPECT_EQ(any("email"), u"ann@example.org"_s);

    form->valueStore().SetValue(site, "sealed", "out of reach");
    auto again = open(server->url("/components-again.html", true));
    const auto inner = [&](const QString& path) {
        return evaluate(again, path + u".value"_s).toString();
    };
    const QString root = u"document.querySelector('contest-entry').shadowRoot"_s;
    EXPECT_EQ(inner(root + u".querySelector('[name=fname]')"_s), u"Ann"_s);
    EXPECT_EQ(inner(root + u".querySelector('name-part').shadowRoot.querySelector('input')"_s),
              u"ann@example.org"_s);
    EXPECT_EQ(inner(root + u".querySelector('select')"_s), u"NY"_s);
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, ADialogNeitherFreezesTheBarNorLosesTheFill)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    auto page = openNoWait(server->url("/todays/alert-on-load.html"));
    ASSERT_TRUE(waitFor([&] { return showsDialog(page); }, 10000)) << "the page shows no dialog";
    // The bar goes on while the dialog is up: its own events run, nothing is reported.
    waitFor([] { return false; }, 500);
    expectNoErrorBox();
    ASSERT_TRUE(acceptDialog(page));
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Ann"); }));

    // A dialog the page shows while the user types: the user closes it and types on, and all
    // of it is remembered.
    const QString site = server->url("/todays/alert-while-typing.html");
    auto typing = open(site);
    click(typing, "[name=email]");
    type(typing, "a");
    ASSERT_TRUE(waitFor([&] { return showsDialog(typing); }, 5000));
    ASSERT_TRUE(acceptDialog(typing));
    ASSERT_TRUE(waitFor([&] { return !showsDialog(typing); }));
    type(typing, "nn@example.org");
    const QString typed = fieldValue(typing, "email");
    EXPECT_EQ(typed, u"ann@example.org"_s);
    click(typing, "[name=fname]");
    EXPECT_TRUE(waitFor([&] { return siteValue(site, "email") == typed; }))
        << siteValue(site, "email").toStdString();
    expectNoErrorBox();
}

TEST_P(TestTodaysForms, AFormReplacingItsInputsWhileFilledEndsUpFilled)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    form->valueStore().SetValue(server->url("/elsewhere"), "email", "ann@example.org");
    form->valueStore().SetValue(server->url("/elsewhere"), "phone", "555 0100");
    auto page = open(server->url("/todays/hydrating.html"));
    EXPECT_TRUE(waitFor(
        [&] { return fieldValue(page, "email") == QLatin1String("ann@example.org"); }, 5000))
        << fieldValue(page, "email").toStdString();
    EXPECT_EQ(fieldValue(page, "fname"), u"Ann"_s);
    EXPECT_EQ(fieldValue(page, "phone"), u"555 0100"_s);
    expectNoErrorBox();
}

TEST_P(TestTodaysForms, ABackgroundTabFinishingItsLoadDoesNotSwitchTabs)
{
    // Every tab in the browser's first window, beside the blank tab it started with.
    const auto tabIn = [&](const char* path, bool background) {
        const int before = windows().size();
        driver->openTab(server->url(QLatin1String(path)), background);
        EXPECT_TRUE(waitFor([&] { return windows().size() > before; }));
        auto tab = asPage(windows().last());
        EXPECT_TRUE(waitFor([&] { return heldUrl(tab) == server->url(QLatin1String(path)); }));
        return tab;
    };
    ASSERT_TRUE(waitFor([&] { return !windows().isEmpty(); }));
    auto blank = asPage(windows().first());
    auto front = tabIn("/front-tab.html", false);
    ASSERT_EQ(visibility(front), u"visible"_s);
    ASSERT_EQ(visibility(blank), u"hidden"_s);

    // A titled page and a page without a title finish loading behind the front tab.
    auto background = tabIn("/background-tab.html", true);
    auto untitled = tabIn("/untitled.html", true);
    waitFor([] { return false; }, 300);
    EXPECT_EQ(visibility(front), u"visible"_s);
    EXPECT_EQ(visibility(blank), u"hidden"_s);
    EXPECT_EQ(visibility(background), u"hidden"_s);
    EXPECT_EQ(visibility(untitled), u"hidden"_s);
    expectNoErrorBox();
}
ON_EVERY_BROWSER(TestTodaysPages);
ON_BROWSERS(TestTodaysForms, TestBrowser::Chromium, TestBrowser::Firefox, TestBrowser::Extension);
} // namespace
