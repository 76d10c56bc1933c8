// Remembered by what a field means: typed on one site under one naming style, filled on another
// under another; a site's own values and the names the description fills by still come first;
// values made from related meanings; options picked by code, name or number.
#include "FormMemoryFixture.h"
#include "MeaningValues.h"

using namespace Qt::StringLiterals;

namespace {
const QString Shop = u"http://shop.example/checkout"_s;
const QString Draw = u"http://draw.example/enter"_s;

class TestFillByMeaning : public FormMemoryFixture
{
protected:
    std::shared_ptr<ModelElement> described(const std::shared_ptr<ModelDocument>& page,
                                            std::shared_ptr<ModelElement> element,
                                            const char* label, const char* type = "text")
    {
        FieldDescription description;
        description.label = QString::fromUtf8(label);
        description.inputType = QString::fromLatin1(type);
        element->describe(description);
        page->add(element);
        return element;
    }
    QString byMeaning(const char* key)
    {
        return f.ini
            .readEntry(f.form.valueStore().anyFile(), u"Meaning"_s, QString::fromLatin1(key))
            .value_or(u"<missing>"_s);
    }
};

TEST_F(TestFillByMeaning, WhatTheDescriptionFillsByNameIsUnchanged)
{
    f.form.valueStore().SetMeaningValue(u"given-name"_s, u"Ann"_s);
    f.form.valueStore().SetMeaningValue(u"address-level1"_s, u"Illinois"_s);
    // By name on any site, by name on this site, a list's remembered position: all win.
    f.form.valueStore().SetValue(Shop, u"first"_s, u"Zoe"_s);
    f.form.valueStore().SetValue(Draw, u"fn"_s, u"  "_s, ValueReach::SiteOnly);
    f.form.valueStore().SetValue(Draw, u"st SelectedIndex"_s, u"1"_s, ValueReach::SiteOnly);
    auto draw = formPage(Draw);
    auto first = described(draw, ModelElement::input("text", "first"), "First name");
    auto blank = described(draw, ModelElement::input("text", "fn"), "First name");
    auto region = described(
        draw, ModelElement::select("st", {{"", "--"}, {"NY", "New York"}, {"IL", "Illinois"}}),
        "State");
    load(draw);
    EXPECT_EQ(first->value(), u"Zoe"_s);
    // A blank entry reads as none (the INI layer trims it): the meaning fills that field.
    EXPECT_EQ(blank->value(), u"Ann"_s);
    EXPECT_EQ(region->selectedIndex(), 1);
    // A blank typed value is never remembered by meaning.
    draw->type(first, u"   "_s);
    EXPECT_EQ(byMeaning("given-name"), u"Ann"_s);
}

TEST(MeaningValues, RelatedMeaningsMakeWhatASiteAsksFor)
{
    struct Case
    {
        const char* name;
        const char* remembered; // key=value;key=value
        Meaning asked;
        const char* expected;
        const char* inputType = "";
    } cases[] = {
        {"given from full", "name=Mary Ann Lee", Meaning::GivenName, "Mary Ann"},
        {"family from full", "name=Mary Ann Lee", Meaning::FamilyName, "Lee"},
        {"one word is no split", "name=Cher", Meaning::FamilyName, ""},
        {"full from parts", "given-name=Ann;family-name=Lee", Meaning::FullName, "Ann Lee"},
        {"own value first", "given-name=Ann;name=Mary Lee", Meaning::GivenName, "Ann"},
        {"area code", "tel=(312) 555-0123", Meaning::PhoneAreaCode, "312"},
        {"prefix", "tel=+1 312 555 0123", Meaning::PhoneLocalPrefix, "555"},
        {"suffix", "tel=312.555.0123", Meaning::PhoneLocalSuffix, "0123"},
        {"local", "tel=3125550123", Meaning::PhoneLocal, "5550123"},
        {"no parts of other numbers", "tel=+44 20 7946 0958", Meaning::PhoneAreaCode, ""},
        {"country code", "tel=+44 20 7946 0958", Meaning::PhoneCountryCode, "44"},
        {"whole from parts", "tel-area-code=312;tel-local-prefix=555;tel-local-suffix=0123",
         Meaning::Phone, "3125550123"},
        {"street from lines", "address-line1=1 Main St;address-line2=Apt 2", Meaning::StreetAddress,
         "1 Main St\nApt 2"},
        {"line from street", "street-address=1 Main St\nApt 2", Meaning::AddressLine2, "Apt 2"},
        {"birth parts", "bday=1990-05-17", Meaning::BirthMonth, "05"},
        {"birth year", "bday=1990-05-17", Meaning::BirthYear, "1990"},
        {"birth date for a date field", "bday-year=1990;bday-month=May;bday-day=7",
         Meaning::BirthDate, "1990-05-07", "date"},
        {"no guessed date format", "bday-year=1990;bday-month=5;bday-day=7", Meaning::BirthDate, "",
         "text"},
        {"nothing known", "", Meaning::City, ""},
    };
    for (const Case& c : cases) {
        QMap<QString, QString> remembered;
        for (const QString& entry : QString::fromUtf8(c.remembered).split(';', Qt::SkipEmptyParts))
            remembered.insert(entry.section('=', 0, 0), entry.section('=', 1));
        const MeaningValues values([&](const QString& key) { return remembered.value(key); });
        FieldDescription field;
        field.inputType = QString::fromLatin1(c.inputType);
        EXPECT_EQ(values.valueFor(c.asked, field), QString::fromUtf8(c.expected)) << c.name;
    }
}

TEST(MeaningValues, OptionsArePickedByCodeNameOrNumber)
{
    const QList<std::pair<QString, QString>> states = {
        {"", "Choose"}, {"IL", "Illinois"}, {"NY", "New York"}};
    const QList<std::pair<QString, QString>> countries = {
        {"", "--"}, {"CA", "Canada"}, {"US", "United States"}};
    const QList<std::pair<QString, QString>> months = {
        {"", "Month"}, {"1", "January"}, {"5", "May"}, {"12", "December"}};
    const QList<std::pair<QString, QString>> titles = {{"", ""}, {"mr", "Mr."}, {"mrs", "Mrs."}};
    struct Case
    {
        Meaning meaning;
        const char* remembered;
        const QList<std::pair<QString, QString>>& options;
        int expected;
    } cases[] = {
        {Meaning::Region, "IL", states, 1},
        {Meaning::Region, "new york", states, 2},
        {Meaning::Region, "Texas", states, -1},
        {Meaning::Country, "USA", countries, 2},
        {Meaning::Country, "United States of America", countries, 2},
        {Meaning::Country, "Kanada", countries, 1},
        {Meaning::BirthMonth, "05", months, 2},
        {Meaning::BirthMonth, "mai", months, 2},
        {Meaning::BirthMonth, "December", months, 3},
        {Meaning::Honorific, "Mrs", titles, 2},
        {Meaning::City, "  ", states, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MatchingOption(c.meaning, QString::fromUtf8(c.remembered), c.options), c.expected)
            << c.remembered;
    EXPECT_EQ(ChosenOptionText(states, 1, "IL"), u"Illinois"_s);
    EXPECT_EQ(ChosenOptionText(months, 2, "5"), u"May"_s);
    EXPECT_EQ(ChosenOptionText(states, 0, ""), QString()); // a placeholder is no choice
}
} // namespace

namespace {
// What memory must never learn, and where a remembered value must never go.
TEST_F(TestFillByMeaning, MemoryNeverLearnsAWrongValueNorFillsWhereTheUserWouldNot)
{
    f.form.valueStore().SetMeaningValue(u"address-level1"_s, u"Illinois"_s);
    f.form.valueStore().SetMeaningValue(u"email"_s, u"ann@example.org"_s);
    f.form.valueStore().SetMeaningValue(u"name"_s, u"Ann Lee"_s);
    f.form.valueStore().SetMeaningValue(u"address-level2"_s, u"Springfield"_s);
    auto shop = formPage(Shop);
    auto state = described(
        shop,
        ModelElement::select("st", {{"", "Select an option…"}, {"14", "Illinois"}, {"33", ""}}),
        "State");
    auto mail = described(shop, ModelElement::input("text", "mail"), "E-mail");
    auto street = described(shop, ModelElement::input("text", "street"), "Street address");
    auto phone = described(shop, ModelElement::input("text", "phone"), "Phone", "tel");
    auto bareName = described(shop, ModelElement::input("text", "name"), "Name");
    auto friendMail =
        described(shop, ModelElement::input("text", "email"), "Friend's e-mail", "email");
    load(shop);
    const struct
    {
        std::function<void()> act;
        const char* key;
        const char* kept;
    } typed[] = {
        {[&] { shop->choose(state, 0); }, "address-level1", "Illinois"}, // a placeholder
        {[&] { shop->choose(state, 2); }, "address-level1", "Illinois"}, // a code with no text
        {[&] { shop->type(mail, "not an address"); }, "email", "ann@example.org"},
        {[&] { shop->type(phone, "12345"); }, "tel", "<missing>"}, // too short for a number
        {[&] { shop->type(street, "Illinois"); }, "address-line1",
         "<missing>"},                                               // the state in a street box
        {[&] { shop->type(bareName, "Zoe Q"); }, "name", "Ann Lee"}, // a bare name fills gaps only
        {[&] { shop->type(friendMail, "bob@example.org"); }, "email", "ann@example.org"},
    };
    for (const auto& row : typed) {
        row.act();
        EXPECT_EQ(byMeaning(row.key), QString::fromUtf8(row.kept)) << row.key;
    }
    EXPECT_EQ(stored("zAny.ini", "Any", "email"), u"<missing>"_s);
    EXPECT_EQ(stored("zSHOP.EXAMPLE!CHECKOUT.ini", Shop, "email"), u"bob@example.org"_s);

    // On another site: a field of another meaning under a remembered name, a friend's box named
    // as the user's was, a read-only field, one the page filled, a list the page chose for the
    // user, a bare "Name" beside a first name.
    f.form.valueStore().SetValue(Shop, u"street"_s, u"1 Main St"_s, ValueReach::AnySite,
                                 u"address-line1"_s);
    f.form.valueStore().SetValue(Shop, u"mail"_s, u"ann@example.org"_s, ValueReach::AnySite,
                                 u"email"_s);
    auto draw = formPage(Draw);
    auto streetState = described(draw, ModelElement::input("text", "street"), "State");
    auto friendBox = described(draw, ModelElement::input("text", "mail"), "Your friend's e-mail");
    FieldDescription locked;
    locked.label = u"Email"_s;
    locked.outOfReach = true;
    auto readOnly = ModelElement::input("text", "e1");
    readOnly->describe(locked);
    draw->add(readOnly);
    FieldDescription chosen;
    chosen.label = u"State"_s;
    chosen.preselected = true;
    chosen.options = {{"NY", "New York"}, {"IL", "Illinois"}};
    auto preselected = ModelElement::select("st2", {{"NY", "New York"}, {"IL", "Illinois"}});
    preselected->describe(chosen);
    draw->add(preselected);
    auto signedIn = described(draw, ModelElement::input("text", "e2", "me@site.example"), "Email");
    auto first = described(draw, ModelElement::input("text", "fn"), "First name");
    auto nameBox = described(draw, ModelElement::input("text", "nm"), "Name");
    FieldDescription unsure; // captioned a city, its placeholder asks for a postcode
    unsure.label = u"City"_s;
    unsure.placeholder = u"Postal code"_s;
    auto cityOrCode = ModelElement::input("text", "x");
    cityOrCode->describe(unsure);
    draw->add(cityOrCode);
    load(draw);
    EXPECT_EQ(streetState->value(), u"Illinois"_s); // the state, not the street
    EXPECT_EQ(friendBox->value(), QString());
    EXPECT_EQ(readOnly->value(), QString());
    EXPECT_EQ(preselected->selectedIndex(), 0); // the page's choice stands
    EXPECT_EQ(signedIn->value(), u"me@site.example"_s);
    EXPECT_EQ(first->value(), u"Ann"_s);
    EXPECT_EQ(nameBox->value(), u"Lee"_s);
    EXPECT_EQ(cityOrCode->value(), QString()); // unsure: left empty
}
} // namespace
