// Pages built the way today's contest, sign-up and checkout pages are: HTML5 input types, frames
// that load late, forms rendered by scripts and route changes, web components, page dialogs,
// forms that re-render while filled, and tabs. The user types, clicks and tabs for real.
#include "BarFixture.h"

namespace {
const QByteArray SignUp = R"(<html><head><title>Sign up</title></head><body><form>
<label>Name <input name=fname autocomplete=given-name></label>
<label>E-mail <input type=email name=email required></label>
<label>Phone <input type=tel name=phone></label>
<label>Age <input type=number name=age min=18></label>
<label>Born <input type=date name=birth></label>
<label>Web <input type=url name=site></label>
<label>Untyped <input type=fancy name=odd></label>
<input type=password name=secret><button>Join</button></form></body></html>)";

// An ad frame from another site arrives two seconds after the page has loaded.
const QByteArray LateAd = R"(<html><head><title>Win a bike</title></head><body>
<form><input name=fname><input type=email name=email></form>
<script>setTimeout(() => { const ad = document.createElement('iframe');
  ad.src = 'http://localhost:' + location.port + '/ad.html'; document.body.append(ad); }, 2000);</script>
</body></html>)";
const QByteArray Ad =
    R"(<html><head><title>Ad</title></head><body><input name=fname></body></html>)";

// A contest widget that renders its form a second after the load.
const QByteArray Widget =
    R"(<html><head><title>Widget</title></head><body><div id=slot>Loading...</div>
<script>addEventListener('load', () => setTimeout(() => { slot.innerHTML =
  '<form><input name=fname><input type=email name=email><select name=state><option value=CA>CA' +
  '<option value=NY>NY</select><textarea name=why></textarea></form>'; }, 1000));</script></body></html>)";

// A single-page app: the entry form comes with a route change, no load.
const QByteArray SinglePage = R"(<html><head><title>Sweeps</title></head><body><main id=app>
<button id=enter style="padding:30px">Enter now</button></main>
<script>enter.addEventListener('click', () => {
  history.pushState({}, '', '/spa/entry');
  app.innerHTML = '<h1>Entry</h1><input name=fname><input type=tel name=phone><input name=code>' +
    '<a id=rules href="#rules" style="padding:20px">Rules</a><p id=rules>Rules</p>';
});</script></body></html>)";

// Web components: an open shadow root with the fields, and a closed one.
const QByteArray Components = R"(<html><head><title>Components</title></head><body>
<contest-entry></contest-entry><sealed-entry></sealed-entry><input name=after>
<script>
customElements.define('contest-entry', class extends HTMLElement { connectedCallback() {
  this.attachShadow({mode: 'open'}).innerHTML =
    '<label>Name <input name=fname></label><name-part></name-part><select name=state>' +
    '<option value=CA>CA<option value=NY>NY</select>'; } });
customElements.define('name-part', class extends HTMLElement { connectedCallback() {
  this.attachShadow({mode: 'open'}).innerHTML = '<input type=email name=email>'; } });
customElements.define('sealed-entry', class extends HTMLElement { connectedCallback() {
  this.attachShadow({mode: 'closed'}).innerHTML = '<input name=sealed>'; } });
</script></body></html>)";

// Dialogs: one as the page completes, one while the user types.
const QByteArray AlertOnLoad = R"(<html><head><title>Welcome</title></head><body><input name=fname>
<script>document.addEventListener('readystatechange', () => {
  if (document.readyState === 'complete') { dialogUp = true; alert('Welcome to the contest!'); dialogUp = false; } });
</script></body></html>)";
const QByteArray AlertWhileTyping = R"(<html><head><title>Check</title></head><body>
<input name=fname><input name=email><script>let warned = false;
document.querySelector('[name=email]').addEventListener('input', (e) => {
  if (e.isTrusted && !warned) { warned = true;
    setTimeout(() => { dialogUp = true; alert('Use your real e-mail'); dialogUp = false; }, 0); } });
</script></body></html>)";

// Hydration: the page's inputs are replaced, over and over, just as the fill runs.
const QByteArray Hydrating = R"(<html><head><title>Hydrating</title></head><body><form id=f>
<input name=fname><input name=email><input name=phone></form>
<script>document.addEventListener('readystatechange', () => {
  if (document.readyState !== 'complete') return;
  let rounds = 0;
  const swap = () => { const old = document.querySelector('[name=email]');
    const fresh = document.createElement('input'); fresh.name = 'email'; old.replaceWith(fresh);
    if (++rounds < 40) setTimeout(swap, 1); };
  swap(); });</script></body></html>)";

QByteArray titled(const char* title)
{
    return QByteArray("<html><head><title>") + title + "</title></head><body>tab</body></html>";
}

class TestTodaysPages : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/signup.html", SignUp},
                {"/signup-again.html", SignUp},
                {"/late-ad.html", LateAd},
                {"/ad.html", Ad},
                {"/widget.html", Widget},
                {"/spa.html", SinglePage},
                {"/components.html", Components},
                {"/components-again.html", Components},
                {"/alert-load.html", AlertOnLoad},
                {"/alert-typing.html", AlertWhileTyping},
                {"/hydrating.html", Hydrating},
                {"/front-tab.html", titled("Front tab")},
                {"/background-tab.html", titled("Background tab")},
                {"/untitled.html", QByteArray("<html><body>no title</body></html>")}};
    }
    QString any(const char* key) { return stored("zAny.ini", "Any", QLatin1String(key)); }
    QString siteValue(const QString& site, const char* key)
    {
        return f.ini.readEntry(form->siteFiles().SiteFilePath(site), site, QLatin1String(key))
            .value_or(QStringLiteral("<missing>"));
    }
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
    void acceptDialog(const std::shared_ptr<ScriptWindow>& page) { driver->acceptDialog(*page); }
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

TEST_P(TestTodaysPages, EmailPhoneAndOtherHtml5FieldsAreRememberedAndFilled)
{
    const QString site = server->url("/signup.html");
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
    EXPECT_EQ(any("email"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(any("phone"), QStringLiteral("+1 555 0100"));
    EXPECT_EQ(siteValue(site, "email"), QStringLiteral("ann@example.org"));

    // What a field cannot hold is left as the browser makes it; the rest is filled.
    form->valueStore().SetValue(site, "birth", "2001-02-03");
    form->valueStore().SetValue(site, "site", "https://ann.example.org/");
    form->valueStore().SetValue(site, "odd", "anything");
    form->valueStore().SetValue(site, "secret", "never");
    form->valueStore().SetValue(server->url("/elsewhere"), "age", "forty");
    auto again = open(server->url("/signup-again.html", true));
    EXPECT_EQ(fieldValue(again, "email"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(fieldValue(again, "phone"), QStringLiteral("+1 555 0100"));
    EXPECT_EQ(fieldValue(again, "birth"), QStringLiteral("2001-02-03"));
    EXPECT_EQ(fieldValue(again, "site"), QStringLiteral("https://ann.example.org/"));
    EXPECT_EQ(fieldValue(again, "odd"), QStringLiteral("anything"));
    EXPECT_EQ(fieldValue(again, "age"), QString()); // "forty" is no number
    EXPECT_EQ(fieldValue(again, "secret"), QString());
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, AnAdFrameLoadingLateLeavesTheMainFormFollowed)
{
    const QString site = server->url("/late-ad.html");
    auto page = open(site);
    const QString ad = server->url("/ad.html", true);
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
    EXPECT_EQ(siteValue(site, "fname"), QStringLiteral("Ann"));
    EXPECT_EQ(any("fname"), QStringLiteral("Ann"));
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, AFormRenderedAfterTheLoadIsFilled)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    form->valueStore().SetValue(server->url("/elsewhere"), "email", "ann@example.org");
    form->valueStore().SetValue(server->url("/elsewhere"), "state", "NY");
    form->valueStore().SetValue(server->url("/elsewhere"), "why", "Because\nI ride");
    const QString site = server->url("/widget.html");
    auto page = open(site);
    ASSERT_TRUE(
        waitFor([&] { return fieldValue(page, "why") == QLatin1String("Because\nI ride"); }, 5000));
    EXPECT_EQ(fieldValue(page, "fname"), QStringLiteral("Ann"));
    EXPECT_EQ(fieldValue(page, "email"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(fieldValue(page, "state"), QStringLiteral("NY"));
    // Filling stores nothing: the site has no file of its own until the user types there.
    EXPECT_FALSE(QFile::exists(form->siteFiles().SiteFilePath(site)));
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, ARouteChangeOfASinglePageAppIsFilledUnderItsNewAddress)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    form->valueStore().SetValue(server->url("/elsewhere"), "phone", "555 0100");
    auto page = open(server->url("/spa.html"));
    click(page, "#enter");
    ASSERT_TRUE(
        waitFor([&] { return fieldValue(page, "phone") == QLatin1String("555 0100"); }, 5000));
    EXPECT_EQ(fieldValue(page, "fname"), QStringLiteral("Ann"));

    // What the user types there belongs to the new address.
    click(page, "[name=code]");
    type(page, "WIN-42");
    tab(page);
    const QString route = server->url("/spa/entry");
    EXPECT_TRUE(waitFor([&] { return siteValue(route, "code") == QLatin1String("WIN-42"); }));
    EXPECT_EQ(page->LocationURL(), route);
    // A jump within the page is where the window is now.
    click(page, "a#rules");
    EXPECT_TRUE(waitFor([&] { return page->LocationURL() == route + QStringLiteral("#rules"); }))
        << page->LocationURL().toStdString();
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, FieldsInOpenShadowRootsAreRememberedAndFilled)
{
    const QString site = server->url("/components.html");
    auto page = open(site);
    const QString entry = QStringLiteral("document.querySelector('contest-entry').shadowRoot");
    clickOn(page, entry + QStringLiteral(".querySelector('[name=fname]')"));
    type(page, "Ann");
    tab(page);
    type(page, "ann@example.org");
    tab(page);
    // A list inside the shadow root, chosen with the keyboard.
    driver->press(*page, PageDriver::Key::ArrowDown);
    tab(page);
    ASSERT_TRUE(waitFor([&] { return any("state") == QLatin1String("NY"); }))
        << any("state").toStdString();
    EXPECT_EQ(any("fname"), QStringLiteral("Ann"));
    EXPECT_EQ(any("email"), QStringLiteral("ann@example.org"));

    form->valueStore().SetValue(site, "sealed", "out of reach");
    auto again = open(server->url("/components-again.html", true));
    const auto inner = [&](const QString& path) {
        return evaluate(again, path + QStringLiteral(".value")).toString();
    };
    const QString root = QStringLiteral("document.querySelector('contest-entry').shadowRoot");
    EXPECT_EQ(inner(root + QStringLiteral(".querySelector('[name=fname]')")),
              QStringLiteral("Ann"));
    EXPECT_EQ(inner(root + QStringLiteral(
                               ".querySelector('name-part').shadowRoot.querySelector('input')")),
              QStringLiteral("ann@example.org"));
    EXPECT_EQ(inner(root + QStringLiteral(".querySelector('select')")), QStringLiteral("NY"));
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, ADialogNeitherFreezesTheBarNorLosesTheFill)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    auto page = openNoWait(server->url("/alert-load.html"));
    ASSERT_TRUE(waitFor([&] { return showsDialog(page); }, 10000)) << "the page shows no dialog";
    // The bar goes on while the dialog is up: its own events run, nothing is reported.
    waitFor([] { return false; }, 500);
    expectNoErrorBox();
    acceptDialog(page);
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Ann"); }));

    // A dialog the page shows while the user types: the user closes it and types on, and all
    // of it is remembered.
    const QString site = server->url("/alert-typing.html");
    auto typing = open(site);
    click(typing, "[name=email]");
    type(typing, "a");
    ASSERT_TRUE(waitFor([&] { return showsDialog(typing); }, 5000));
    acceptDialog(typing);
    ASSERT_TRUE(waitFor([&] { return !showsDialog(typing); }));
    type(typing, "nn@example.org");
    const QString typed = fieldValue(typing, "email");
    EXPECT_EQ(typed, QStringLiteral("ann@example.org"));
    click(typing, "[name=fname]");
    EXPECT_TRUE(waitFor([&] { return siteValue(site, "email") == typed; }))
        << siteValue(site, "email").toStdString();
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, AFormReplacingItsInputsWhileFilledEndsUpFilled)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "fname", "Ann");
    form->valueStore().SetValue(server->url("/elsewhere"), "email", "ann@example.org");
    form->valueStore().SetValue(server->url("/elsewhere"), "phone", "555 0100");
    auto page = open(server->url("/hydrating.html"));
    EXPECT_TRUE(waitFor(
        [&] { return fieldValue(page, "email") == QLatin1String("ann@example.org"); }, 5000))
        << fieldValue(page, "email").toStdString();
    EXPECT_EQ(fieldValue(page, "fname"), QStringLiteral("Ann"));
    EXPECT_EQ(fieldValue(page, "phone"), QStringLiteral("555 0100"));
    expectNoErrorBox();
}

TEST_P(TestTodaysPages, ABackgroundTabFinishingItsLoadDoesNotSwitchTabs)
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
    ASSERT_EQ(visibility(front), QStringLiteral("visible"));
    ASSERT_EQ(visibility(blank), QStringLiteral("hidden"));

    // A titled page and a page without a title finish loading behind the front tab.
    auto background = tabIn("/background-tab.html", true);
    auto untitled = tabIn("/untitled.html", true);
    waitFor([] { return false; }, 300);
    EXPECT_EQ(visibility(front), QStringLiteral("visible"));
    EXPECT_EQ(visibility(blank), QStringLiteral("hidden"));
    EXPECT_EQ(visibility(background), QStringLiteral("hidden"));
    EXPECT_EQ(visibility(untitled), QStringLiteral("hidden"));
    expectNoErrorBox();
}
ON_BOTH_BROWSERS(TestTodaysPages);
} // namespace
