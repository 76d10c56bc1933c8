// Pages that choose awkward field names and values, mutate their documents without rest,
// or flood the document with events: the bar keeps what the user typed, keeps its
// files whole and goes on.
#include "BarFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestHostilePages : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {
            {"/awkward-again.html", page("hostile/awkward-names.html")},
        };
    }
    QString remembered(const QString& site, const QString& key)
    {
        return form->valueStore().GetValue(site, key, u"<missing>"_s);
    }
    void typeInto(const std::shared_ptr<ScriptWindow>& page, const char* id, const QString& text)
    {
        click(page, u"#"_s + QLatin1String(id));
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
    const QString site = server->url("/hostile/awkward-names.html");
    auto page = open(site);
    const QString longValue(100 * 1024, QLatin1Char('v'));
    typeInto(page, "crlf", "one");
    typeInto(page, "brackets", "x]y=z");
    typeInto(page, "unicode", u"Zoë € 名前"_s);
    click(page, "#long");
    driver->paste(*page, longValue);
    typeInto(page, "nul", u"a%1b"_s.arg(QChar(0)));
    typeInto(page, "notes", "line1\nline2 ]=[x]");
    tab(page);
    ASSERT_TRUE(waitFor([&] { return remembered(site, "notes") != QLatin1String("<missing>"); }));

    EXPECT_EQ(remembered(site, "notes"), u"line1\nline2 ]=[x]"_s);
    EXPECT_EQ(remembered(site, "sec]tion=key"), u"x]y=z"_s);
    // Text in any script is kept as it was typed (the files become UTF-8 for it).
    EXPECT_EQ(remembered(site, u"Zoë €名前"_s), u"Zoë € 名前"_s);
    EXPECT_TRUE(fileBytes(form->valueStore().anyFile()).startsWith("\xEF\xBB\xBF"));
    EXPECT_EQ(remembered(site, QString(100 * 1024, QLatin1Char('n'))), longValue.left(255));
    // A name with a line break has no written form: nothing is kept, nothing else harmed.
    EXPECT_EQ(remembered(site, "a\r\nb"), u"<missing>"_s);
    EXPECT_FALSE(fileBytes(form->valueStore().anyFile()).contains("=one"));
    expectNoErrorBox();

    auto again = open(server->url("/awkward-again.html"));
    const auto valueOf = [&](const char* id) {
        return evaluate(again, u"document.getElementById('%1').value"_s.arg(QLatin1String(id)))
            .toString();
    };
    EXPECT_EQ(valueOf("brackets"), u"x]y=z"_s);
    EXPECT_EQ(valueOf("unicode"), u"Zoë € 名前"_s);
    EXPECT_EQ(valueOf("long"), longValue.left(255));
    EXPECT_EQ(valueOf("notes"), u"line1\nline2 ]=[x]"_s);
    EXPECT_EQ(valueOf("crlf"), QString());
}

TEST_P(TestHostilePages, AFloodOfPageEventsLeavesTheBarResponsive)
{
    const QString site = server->url("/hostile/flood.html");
    auto page = open(site);
    waitFor([] { return false; }, 500);
    EXPECT_TRUE(typedIsRemembered(page, site, "g", "steady"));
    EXPECT_FALSE(fileBytes(form->valueStore().anyFile()).contains("flood"));
    expectNoErrorBox();
}
} // namespace

namespace {
TEST_P(TestHostilePages, AMutationStormIsFollowedWithoutFloodingTheBar)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "extra1", "filled once");
    const QString site = server->url("/hostile/storm.html");
    auto page = open(site);
    waitFor([] { return false; }, 1000);
    EXPECT_TRUE(typedIsRemembered(page, site, "steady", "calm"));
    // Every field the page added was filled once: those holding the value were never emptied.
    // The newest may still be on their way, the more so on a loaded machine.
    int filled = 0;
    int all = 0;
    EXPECT_TRUE(waitFor([&] {
        filled = evaluate(page, "[...document.querySelectorAll('[name=extra1]')]"
                                ".filter((f) => f.value === 'filled once').length")
                     .toInt();
        all = evaluate(page, "document.querySelectorAll('[name=extra1]').length").toInt();
        return filled >= all - 2;
    })) << filled
        << " of " << all;
    EXPECT_GT(all, 3);
    // Filling is not typing: the site's file holds what the user typed, nothing the fill wrote.
    EXPECT_FALSE(fileBytes(form->siteFiles().SiteFilePath(site)).contains("filled once"));
    expectNoErrorBox();
}

TEST_P(TestHostilePages, ThousandsOfShadowRootsAndFramesAsDeepAsTheBrowserNestsThem)
{
    form->valueStore().SetValue(server->url("/elsewhere"), "crowd", "everyone");
    form->valueStore().SetValue(server->url("/elsewhere"), "depth", "deep");
    auto crowd = open(server->url("/hostile/shadow-crowd.html"));
    EXPECT_EQ(evaluate(crowd, "[...document.querySelectorAll('x-field')].filter((x) => "
                              "x.shadowRoot.querySelector('input').value === 'everyone').length")
                  .toInt(),
              3000);
    // Firefox loads no frame more than nine below the page.
    const int depth = onFirefox() ? 9 : 20;
    auto nested = open(server->url(u"/hostile/nested.html?d=%1"_s.arg(depth)));
    QString deepest = u"document"_s;
    for (int level = depth; level > 0; --level)
        deepest += u".querySelector('iframe').contentDocument"_s;
    EXPECT_TRUE(waitFor(
        [&] {
            return evaluate(nested, deepest + ".getElementById('d0').value") ==
                   QLatin1String("deep");
        },
        10000));
    typeInto(crowd, "first", "still here");
    tab(crowd);
    EXPECT_TRUE(waitFor([&] {
        return remembered(server->url("/hostile/shadow-crowd.html"), "first") ==
               QLatin1String("still here");
    }));
    expectNoErrorBox();
}

TEST_P(TestHostilePages, APageThatShowsDialogsOverAndOverStopsNothingElse)
{
    const QString site = server->url("/hostile/awkward-names.html");
    auto page = open(site);
    const int before = windows().size();
    driver->openAddress(server->url("/hostile/dialog-loop.html"));
    ASSERT_TRUE(waitFor([&] { return windows().size() > before; }));
    auto loop = asPage(windows().last());
    // The user dismisses ten of them; the page shows the next at once.
    for (int i = 0; i < 10; ++i)
        acceptDialog(loop, 3000);
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
    form->valueStore().SetMeaningValue(u"email"_s, u"ann@example.org"_s);
    const QString site = server->url("/hostile/heavy-labels.html");
    auto page = open(site);
    // A thousand labels saying "E-mail": an e-mail field. What follows 100 KB of text is not read.
    EXPECT_EQ(fieldValue(page, "target"), u"ann@example.org"_s);
    EXPECT_EQ(fieldValue(page, "heavy"), QString());
    EXPECT_EQ(fieldValue(page, "captioned"), QString());
    for (const char* name : {"имя", "名前", "الاسم", "🎁"}) {
        clickOn(page, u"document.querySelector('[name=\"%1\"]')"_s.arg(QString::fromUtf8(name)));
        type(page, u"typed "_s + QString::fromUtf8(name));
        tab(page);
        EXPECT_TRUE(waitFor([&] {
            return remembered(site, QString::fromUtf8(name)) ==
                   u"typed "_s + QString::fromUtf8(name);
        })) << name;
    }
    expectNoErrorBox();
}
ON_BROWSERS(TestHostilePages, TestBrowser::Chromium, TestBrowser::Firefox, TestBrowser::Extension);
} // namespace
