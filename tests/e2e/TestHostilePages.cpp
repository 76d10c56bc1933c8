// Pages that choose awkward field names and values, set fields and move the focus by
// themselves, or flood the document with events: the bar keeps what the user typed, keeps its
// files whole and goes on.
#include "BarFixture.h"

namespace {
const QByteArray AwkwardNames = R"(<html><body><form>
<input id=crlf name="a&#13;&#10;b"><input id=brackets name="sec]tion=key"><input id=unicode name="Zoë €名前">
<input id=long><input id=nul name=nul><textarea id=notes name=notes></textarea></form>
<script>document.getElementById('long').name = 'n'.repeat(100 * 1024);</script></body></html>)";

// The page's own script fills fields and moves the focus around, as some forms do.
const QByteArray MovingFocus = R"(<html><body><form>
<input id=typed name=typed><input id=victim name=victim><input id=other name=other></form>
<script>window.meddle = () => {
  victim.value = 'scripted'; other.focus(); other.value = 'scripted too'; victim.focus(); typed.focus(); victim.focus();
};</script></body></html>)";

// Every millisecond: script clicks, double clicks, value changes with their events, link hovers.
// The link's clicks are the page's own, as a single-page app routes them (a page jumping to its
// own anchor thousands of times a second hangs Firefox itself while BiDi follows it).
const QByteArray Flood =
    R"(<html><body><form><input id=f name=f><input id=g name=g></form><a id=l href="#x">x</a>
<script>l.addEventListener('click', (e) => e.preventDefault());
setInterval(() => {
  for (let i = 0; i < 200; i++) {
    l.click(); f.value = 'flood ' + i; f.dispatchEvent(new Event('input', {bubbles: true}));
    f.dispatchEvent(new Event('change', {bubbles: true}));
    document.body.dispatchEvent(new MouseEvent('dblclick', {bubbles: true}));
    document.body.dispatchEvent(new MouseEvent('mouseover', {bubbles: true}));
  }
}, 1);</script></body></html>)";

// The DOM never rests: nodes come and go every millisecond, and a new field every 50 ms.
const QByteArray Storm =
    R"(<html><body><form><input id=steady name=steady></form><div id=churn></div>
<script>let n = 0; setInterval(() => { churn.replaceChildren(...Array.from({length: 50}, () => document.createElement('div'))); }, 1);
setInterval(() => { const f = document.createElement('input'); f.name = 'extra' + (++n % 5); churn.after(f); }, 50);</script>
</body></html>)";

// Thousands of web components, each with a field in its open shadow root.
const QByteArray ShadowCrowd =
    R"(<html><body><input id=first name=first><div id=crowd></div><script>
customElements.define('x-field', class extends HTMLElement { connectedCallback() {
  this.attachShadow({mode: 'open'}).innerHTML = '<span><input name=crowd></span>'; } });
crowd.innerHTML = '<x-field></x-field>'.repeat(3000);</script></body></html>)";

// Frames inside frames, twenty deep unless asked otherwise, each with a field.
const QByteArray Nested = R"(<html><body><input name=depth><script>
const depth = Number(new URLSearchParams(location.search).get('d') || 20);
document.querySelector('input').id = 'd' + depth;
if (depth > 0) { const f = document.createElement('iframe'); f.src = '/nested.html?d=' + (depth - 1); document.body.append(f); }
</script></body></html>)";

// A dialog again as soon as the last one closed.
const QByteArray DialogLoop = R"(<html><head><title>Loop</title></head><body><input name=x>
<script>const again = () => { alert('Are you sure?'); setTimeout(again, 0); }; setTimeout(again, 0);</script></body></html>)";

// Labels the page makes as heavy as it likes: 100 KB of text, a thousand labels for one field, a
// 100 KB caption before a field, names and labels in many scripts.
const QByteArray HeavyLabels = R"(<html><head><meta charset="utf-8"></head><body><form>
<label id=huge for=heavy></label><input id=heavy name=heavy>
<div id=many></div><input id=target name=target>
<p><span id=caption></span><input name=captioned></p>
<label>имя <input name="имя"></label><label>名前 <input name="名前"></label>
<label>الاسم <input name="الاسم"></label><label>🎁 <input name="🎁"></label>
</form><script>
huge.textContent = 'x'.repeat(100 * 1024) + ' email';
many.innerHTML = '<label for=target>E-mail</label>'.repeat(1000);
caption.textContent = 'y'.repeat(100 * 1024) + ' Email';
</script></body></html>)";

class TestHostilePages : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/awkward.html", AwkwardNames}, {"/awkward-again.html", AwkwardNames},
                {"/moving.html", MovingFocus},   {"/flood.html", Flood},
                {"/storm.html", Storm},          {"/crowd.html", ShadowCrowd},
                {"/nested.html", Nested},        {"/loop.html", DialogLoop},
                {"/labels.html", HeavyLabels}};
    }
    QString remembered(const QString& site, const QString& key)
    {
        return form->valueStore().GetValue(site, key, QStringLiteral("<missing>"));
    }
    QByteArray anyFileBytes()
    {
        QFile file(form->valueStore().anyFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void typeInto(const std::shared_ptr<ScriptWindow>& page, const char* id, const QString& text)
    {
        click(page, QStringLiteral("#") + QLatin1String(id));
        type(page, text);
    }
    // The user types into a field of a busy page and leaves it: is it remembered?
    bool typedIsRemembered(const std::shared_ptr<ScriptWindow>& page, const QString& site,
                           const char* id, const QString& text)
    {
        typeInto(page, id, text);
        tab(page);
        return waitFor([&] { return remembered(site, QLatin1String(id)) == text; }, 5000);
    }
};

TEST_P(TestHostilePages, AwkwardNamesAndValuesAreKeptWhereTheFilesCanHoldThem)
{
    const QString site = server->url("/awkward.html");
    auto page = open(site);
    const QString longValue(100 * 1024, QLatin1Char('v'));
    typeInto(page, "crlf", "one");
    typeInto(page, "brackets", "x]y=z");
    typeInto(page, "unicode", QStringLiteral("Zoë € 名前"));
    click(page, "#long");
    driver->paste(*page, longValue);
    typeInto(page, "nul", QStringLiteral("a%1b").arg(QChar(0)));
    typeInto(page, "notes", "line1\nline2 ]=[x]");
    tab(page);
    ASSERT_TRUE(waitFor([&] { return remembered(site, "notes") != QLatin1String("<missing>"); }));

    EXPECT_EQ(remembered(site, "notes"), QStringLiteral("line1\nline2 ]=[x]"));
    EXPECT_EQ(remembered(site, "sec]tion=key"), QStringLiteral("x]y=z"));
    // Text in any script is kept as it was typed (the files become UTF-8 for it).
    EXPECT_EQ(remembered(site, QStringLiteral("Zoë €名前")), QStringLiteral("Zoë € 名前"));
    EXPECT_TRUE(anyFileBytes().startsWith("\xEF\xBB\xBF"));
    EXPECT_EQ(remembered(site, QString(100 * 1024, QLatin1Char('n'))), longValue.left(255));
    // A name with a line break has no written form: nothing is kept, nothing else harmed.
    EXPECT_EQ(remembered(site, "a\r\nb"), QStringLiteral("<missing>"));
    EXPECT_FALSE(anyFileBytes().contains("=one"));
    expectNoErrorBox();

    auto again = open(server->url("/awkward-again.html"));
    const auto valueOf = [&](const char* id) {
        return evaluate(
                   again,
                   QStringLiteral("document.getElementById('%1').value").arg(QLatin1String(id)))
            .toString();
    };
    EXPECT_EQ(valueOf("brackets"), QStringLiteral("x]y=z"));
    EXPECT_EQ(valueOf("unicode"), QStringLiteral("Zoë € 名前"));
    EXPECT_EQ(valueOf("long"), longValue.left(255));
    EXPECT_EQ(valueOf("notes"), QStringLiteral("line1\nline2 ]=[x]"));
    EXPECT_EQ(valueOf("crlf"), QString());
}

TEST_P(TestHostilePages, APageScriptsValuesAndFocusMovesStayOutOfAnyIni)
{
    const QString site = server->url("/moving.html");
    auto page = open(site);
    typeInto(page, "typed", "mine");
    click(page, "#victim");
    evaluate(page, "meddle()");
    waitFor([] { return false; }, 300);
    // The user's own focus move: what the user typed is kept, the script's values are not.
    click(page, "#typed");
    tab(page);
    ASSERT_TRUE(waitFor([&] { return remembered(site, "typed") == QLatin1String("mine"); }));
    waitFor([] { return false; }, 300);
    EXPECT_FALSE(anyFileBytes().contains("scripted")) << anyFileBytes().toStdString();
    QFile siteFile(form->siteFiles().SiteFilePath(site));
    ASSERT_TRUE(siteFile.open(QIODevice::ReadOnly));
    EXPECT_FALSE(siteFile.readAll().contains("scripted"));
}

TEST_P(TestHostilePages, AFloodOfPageEventsLeavesTheBarResponsive)
{
    const QString site = server->url("/flood.html");
    auto page = open(site);
    waitFor([] { return false; }, 500);
    EXPECT_TRUE(typedIsRemembered(page, site, "g", "steady"));
    EXPECT_FALSE(anyFileBytes().contains("flood"));
    expectNoErrorBox();
}
} // namespace

namespace {
TEST_P(TestHostilePages, AMutationStormIsFollowedWithoutFloodingTheBar)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "extra1", "filled once");
    const QString site = server->url("/storm.html");
    auto page = open(site);
    waitFor([] { return false; }, 1000);
    EXPECT_TRUE(typedIsRemembered(page, site, "steady", "calm"));
    // Every field the page added was filled once: those holding the value were never emptied.
    const int filled = evaluate(page, "[...document.querySelectorAll('[name=extra1]')]"
                                      ".filter((f) => f.value === 'filled once').length")
                           .toInt();
    const int all = evaluate(page, "document.querySelectorAll('[name=extra1]').length").toInt();
    EXPECT_GE(filled, all - 2) << filled << " of " << all; // the newest may still be on its way
    EXPECT_GT(all, 3);
    // Filling is not typing: the site's file holds what the user typed, nothing the fill wrote.
    QFile siteFile(form->siteFiles().SiteFilePath(site));
    ASSERT_TRUE(siteFile.open(QIODevice::ReadOnly));
    EXPECT_FALSE(siteFile.readAll().contains("filled once"));
    expectNoErrorBox();
}

TEST_P(TestHostilePages, ThousandsOfShadowRootsAndFramesAsDeepAsTheBrowserNestsThem)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "crowd", "everyone");
    form->valueStore().SetValue(server->url("/elsewhere"), "depth", "deep");
    auto crowd = open(server->url("/crowd.html"));
    EXPECT_EQ(evaluate(crowd, "[...document.querySelectorAll('x-field')].filter((x) => "
                              "x.shadowRoot.querySelector('input').value === 'everyone').length")
                  .toInt(),
              3000);
    // Firefox loads no frame more than nine below the page.
    const int depth = onFirefox() ? 9 : 20;
    auto nested = open(server->url(QStringLiteral("/nested.html?d=%1").arg(depth)));
    QString deepest = QStringLiteral("document");
    for (int level = depth; level > 0; --level)
        deepest += QStringLiteral(".querySelector('iframe').contentDocument");
    EXPECT_TRUE(waitFor(
        [&] {
            return evaluate(nested, deepest + ".getElementById('d0').value") ==
                   QLatin1String("deep");
        },
        10000));
    typeInto(crowd, "first", "still here");
    tab(crowd);
    EXPECT_TRUE(waitFor([&] {
        return remembered(server->url("/crowd.html"), "first") == QLatin1String("still here");
    }));
    expectNoErrorBox();
}

TEST_P(TestHostilePages, APageThatShowsDialogsOverAndOverStopsNothingElse)
{
    const QString site = server->url("/awkward.html");
    auto page = open(site);
    const int before = windows().size();
    driver->openAddress(server->url("/loop.html"));
    ASSERT_TRUE(waitFor([&] { return windows().size() > before; }));
    auto loop = asPage(windows().last());
    // The user dismisses ten of them; the page shows the next at once.
    for (int i = 0; i < 10; ++i) {
        waitFor(
            [&] {
                try {
                    driver->acceptDialog(*loop);
                    return true;
                } catch (const AppError&) {
                    return false;
                }
            },
            3000);
    }
    typeInto(page, "notes", "typed beside the loop");
    tab(page);
    EXPECT_TRUE(waitFor(
        [&] { return remembered(site, "notes") == QLatin1String("typed beside the loop"); }));
    expectNoErrorBox();
}
} // namespace

namespace {
TEST_P(TestHostilePages, HeavyLabelsAndNamesInAnyScriptAreReadWithinBounds)
{
    form->valueStore().SetMeaningValue(QStringLiteral("email"), QStringLiteral("ann@example.org"));
    const QString site = server->url("/labels.html");
    auto page = open(site);
    // A thousand labels saying "E-mail": an e-mail field. What follows 100 KB of text is not read.
    EXPECT_EQ(fieldValue(page, "target"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(fieldValue(page, "heavy"), QString());
    EXPECT_EQ(fieldValue(page, "captioned"), QString());
    for (const char* name : {"имя", "名前", "الاسم", "🎁"}) {
        clickOn(
            page,
            QStringLiteral("document.querySelector('[name=\"%1\"]')").arg(QString::fromUtf8(name)));
        type(page, QStringLiteral("typed ") + QString::fromUtf8(name));
        tab(page);
        EXPECT_TRUE(waitFor([&] {
            return remembered(site, QString::fromUtf8(name)) ==
                   QStringLiteral("typed ") + QString::fromUtf8(name);
        })) << name;
    }
    expectNoErrorBox();
}
ON_BOTH_BROWSERS(TestHostilePages);
} // namespace
