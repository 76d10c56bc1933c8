// Pages that choose awkward field names and values, set fields and move the focus by
// themselves, or flood the document with events: the bar keeps what the user typed, keeps its
// files whole and goes on.
#include "ChromiumBarFixture.h"

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
const QByteArray Flood =
    R"(<html><body><form><input id=f name=f><input id=g name=g></form><a id=l href="#x">x</a>
<script>setInterval(() => {
  for (let i = 0; i < 200; i++) {
    l.click(); f.value = 'flood ' + i; f.dispatchEvent(new Event('input', {bubbles: true}));
    f.dispatchEvent(new Event('change', {bubbles: true}));
    document.body.dispatchEvent(new MouseEvent('dblclick', {bubbles: true}));
    document.body.dispatchEvent(new MouseEvent('mouseover', {bubbles: true}));
  }
}, 1);</script></body></html>)";

class TestChromiumHostilePages : public ChromiumBarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/awkward.html", AwkwardNames},
                {"/awkward-again.html", AwkwardNames},
                {"/moving.html", MovingFocus},
                {"/flood.html", Flood}};
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
    void typeInto(const std::shared_ptr<CdpBrowser>& page, const char* id, const QString& text)
    {
        click(page, QStringLiteral("#") + QLatin1String(id));
        type(page, text);
    }
};

TEST_F(TestChromiumHostilePages, AwkwardNamesAndValuesAreKeptWhereTheFilesCanHoldThem)
{
    const QString site = server->url("/awkward.html");
    auto page = open(site);
    const QString longValue(100 * 1024, QLatin1Char('v'));
    typeInto(page, "crlf", "one");
    typeInto(page, "brackets", "x]y=z");
    typeInto(page, "unicode", QStringLiteral("Zoë € 名前"));
    typeInto(page, "long", longValue);
    typeInto(page, "nul", QStringLiteral("a%1b").arg(QChar(0)));
    typeInto(page, "notes", "line1\nline2 ]=[x]");
    tab(page);
    ASSERT_TRUE(waitFor([&] { return remembered(site, "notes") != QLatin1String("<missing>"); }));

    EXPECT_EQ(remembered(site, "notes"), QStringLiteral("line1\nline2 ]=[x]"));
    EXPECT_EQ(remembered(site, "sec]tion=key"), QStringLiteral("x]y=z"));
    // The files are in Windows' code page: what it cannot hold comes back as "?".
    EXPECT_EQ(remembered(site, QStringLiteral("Zoë €名前")), QStringLiteral("Zoë € ??"));
    EXPECT_EQ(remembered(site, QString(100 * 1024, QLatin1Char('n'))), longValue.left(255));
    // A name with a line break has no written form: nothing is kept, nothing else harmed.
    EXPECT_EQ(remembered(site, "a\r\nb"), QStringLiteral("<missing>"));
    EXPECT_FALSE(anyFileBytes().contains("one"));
    EXPECT_TRUE(f.boxes.shown.empty())
        << (f.boxes.shown.empty() ? "" : f.boxes.shown[0].text.toStdString());

    auto again = open(server->url("/awkward-again.html"));
    const auto valueOf = [&](const char* id) {
        return evaluate(
                   again,
                   QStringLiteral("document.getElementById('%1').value").arg(QLatin1String(id)))
            .toString();
    };
    EXPECT_EQ(valueOf("brackets"), QStringLiteral("x]y=z"));
    EXPECT_EQ(valueOf("unicode"), QStringLiteral("Zoë € ??"));
    EXPECT_EQ(valueOf("long"), longValue.left(255));
    EXPECT_EQ(valueOf("notes"), QStringLiteral("line1\nline2 ]=[x]"));
    EXPECT_EQ(valueOf("crlf"), QString());
}

TEST_F(TestChromiumHostilePages, APageScriptsValuesAndFocusMovesStayOutOfAnyIni)
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

TEST_F(TestChromiumHostilePages, AFloodOfPageEventsLeavesTheBarResponsive)
{
    const QString site = server->url("/flood.html");
    auto page = open(site);
    waitFor([] { return false; }, 500);
    typeInto(page, "g", "steady");
    tab(page);
    EXPECT_TRUE(waitFor([&] { return remembered(site, "g") == QLatin1String("steady"); }, 5000));
    EXPECT_FALSE(anyFileBytes().contains("flood"));
    EXPECT_TRUE(f.boxes.shown.empty())
        << (f.boxes.shown.empty() ? "" : f.boxes.shown[0].text.toStdString());
}
} // namespace
