// What the user puts into fields is remembered under the field keys, for the site and Any.ini.
#include "FormMemoryFixture.h"

using namespace Qt::StringLiterals;

namespace {
const QString Url = u"http://prizes.example/enter.html"_s;
const QString SiteFile = u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s;

using TestFormCapture = FormMemoryFixture;

TEST_F(TestFormCapture, EveryKindOfFieldHasItsKey)
{
    auto page = formPage(Url);
    auto optin = page->add(ModelElement::input(u"checkbox"_s, "optin", "yes"));
    auto bare = page->add(ModelElement::input(u"checkbox"_s, QString(), QString()));
    auto sizeS = page->add(ModelElement::input(u"radio"_s, "size", "S"));
    auto sizeM = page->add(ModelElement::input(u"radio"_s, "size", "M"));
    QList<ModelElement::Option> states;
    for (int i = 0; i < 50; ++i)
        states.append({i == 33 ? u"NY"_s : u"S%1"_s.arg(i), QString()});
    auto state = page->add(ModelElement::select("state", states));
    auto unnamedList = page->add(ModelElement::select(QString(), {{"a", ""}, {"b", ""}}));
    auto comments = page->add(ModelElement::textarea("comments"));
    auto caps = page->add(ModelElement::input(u"TEXT"_s, "City"));
    auto password = page->add(ModelElement::input(u"password"_s, "pw"));
    auto hidden = page->add(ModelElement::input(u"hidden"_s, "token", "abc"));
    auto nameless = page->add(ModelElement::input(u"text"_s, QString()));
    load(page);

    page->check(optin, true);
    page->check(bare, true);
    page->check(sizeM, true);
    page->choose(state, 33);
    page->choose(unnamedList, 1);
    page->type(comments, u"line one\r\nline two"_s);
    page->type(caps, u"Oslo"_s);
    page->type(password, u"secret"_s);
    page->type(hidden, u"changed"_s);
    const int statusesBefore = statuses.size();
    page->type(nameless, u"lost"_s);
    EXPECT_EQ(statuses.size(), statusesBefore); // a nameless text field shows nothing
    page->focus(optin);
    page->check(optin, false);
    page->focus(caps);

    const std::pair<const char*, const char*> expected[] = {
        {"optin_yes", "False"},
        {"_", "True"},
        {"size_M", "True"},
        {"size_S", "<missing>"},
        {"state", "NY"},
        {"state SelectedIndex", "33"},
        {"", "b"},
        {"SelectedIndex", "1"},
        {"comments", "line one<VBCR><VBLF>line two"},
        {"City", "Oslo"},
        {"pw", "<missing>"},
        {"token", "<missing>"},
    };
    for (const auto& [key, value] : expected)
        EXPECT_EQ(stored(SiteFile, Url, QString::fromUtf8(key)), QString::fromUtf8(value)) << key;
    EXPECT_TRUE(statuses.contains(u" state = NY"_s));
    EXPECT_TRUE(statuses.contains(u" optin_yes = False"_s));

    // The first option selected: only the value entry is written, the old index stays.
    page->choose(state, 0);
    page->focus(caps);
    EXPECT_EQ(stored(SiteFile, Url, "state"), u"S0"_s);
    EXPECT_EQ(stored(SiteFile, Url, "state SelectedIndex"), u"33"_s);
}

TEST_F(TestFormCapture, AFieldThatNoLongerAnswersIsReported)
{
    auto page = formPage(Url, {"fname"});
    load(page);
    const auto fname = field(page, "fname");
    page->type(fname, u"Ann"_s);
    window->close();
    f.form.IEHolder_DocChanged(1, page, fname);
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_TRUE(f.boxes.shown[0].text.startsWith(
        u"An error occured in procedure IEHolder_DocChanged.\r\n\r\n"_s));
}
} // namespace

namespace {
// A field without a name says nothing about which field it is on another site: what the user
// gives it is kept for its own site, never in Any.ini, and Any.ini never fills it.
TEST_F(TestFormCapture, FieldsWithoutANameAreRememberedForTheirSiteOnly)
{
    const QString other = u"http://sweeps.example/form"_s;
    const auto namelessPage = [](const QString& url) {
        auto page = formPage(url, {"fname"});
        page->add(ModelElement::input(u"checkbox"_s, QString(), QString()));
        page->add(ModelElement::input(u"radio"_s, QString(), u"n1"_s));
        page->add(ModelElement::select(QString(), {{"", "Choose"}, {"a", ""}, {"b", ""}}));
        return page;
    };
    const auto nameless = [](const std::shared_ptr<ModelDocument>& page, int index) {
        return std::static_pointer_cast<ModelElement>(
            (page->tags("input") + page->tags("select") + page->tags("textarea")).at(index));
    };
    // An Any.ini from an older release may already hold such keys: they are not used either.
    f.ini.writeEntry(f.dataFile("zAny.ini"), "Any", "_", "True");
    auto page = namelessPage(Url);
    load(page);
    page->check(nameless(page, 1), true);
    page->check(nameless(page, 2), true);
    page->choose(nameless(page, 3), 2);
    page->focus(nameless(page, 0));

    const std::pair<const char*, const char*> kept[] = {
        {"_", "True"}, {"_n1", "True"}, {"", "b"}, {" SelectedIndex", "2"}};
    for (const auto& [key, value] : kept)
        EXPECT_EQ(stored(SiteFile, Url, QString::fromUtf8(key)), QString::fromUtf8(value)) << key;
    for (const char* key : {"_n1", " SelectedIndex"})
        EXPECT_EQ(stored("zAny.ini", "Any", QString::fromUtf8(key)), u"<missing>"_s) << key;
    EXPECT_EQ(stored("zAny.ini", "Any", QString()), u"<missing>"_s);

    // Another site's nameless fields stay as the page has them; the same site's come back.
    auto elsewhere = namelessPage(other);
    load(elsewhere);
    EXPECT_FALSE(nameless(elsewhere, 1)->checked());
    EXPECT_FALSE(nameless(elsewhere, 2)->checked());
    EXPECT_EQ(nameless(elsewhere, 3)->selectedIndex(), 0);
    auto again = namelessPage(Url);
    load(again);
    EXPECT_TRUE(nameless(again, 1)->checked());
    EXPECT_EQ(nameless(again, 3)->value(), u"b"_s);
}
} // namespace
