// Type it once: a contact block typed on one shop's checkout fills three other sites that name
// their fields in three other ways (autofill tokens only, labels only, French captions in table
// cells), in real Chromium; a friend's e-mail and a promotion code stay empty, and a site's own
// remembered value still wins.
#include "BarFixture.h"

namespace {
const QByteArray Checkout = R"(<!doctype html><html lang=en><head><title>Checkout</title></head><body>
<form class="checkout"><h3>Billing details</h3>
<p><label for="billing_first_name">First name <abbr>*</abbr></label><input id="billing_first_name" name="billing_first_name"></p>
<p><label for="billing_last_name">Last name</label><input id="billing_last_name" name="billing_last_name"></p>
<p><label for="billing_email">Email address</label><input type="email" id="billing_email" name="billing_email"></p>
<p><label for="billing_phone">Phone</label><input type="tel" id="billing_phone" name="billing_phone"></p>
<p><label for="billing_address_1">Street address</label><input id="billing_address_1" name="billing_address_1" placeholder="House number and street name"></p>
<p><label for="billing_city">Town / City</label><input id="billing_city" name="billing_city"></p>
<p><label for="billing_state">State</label><select id="billing_state" name="billing_state">
  <option value="">Select an option…</option><option value="IL">Illinois</option><option value="NY">New York</option></select></p>
<p><label for="billing_postcode">ZIP Code</label><input id="billing_postcode" name="billing_postcode"></p>
</form></body></html>)";

const QByteArray TokensOnly = R"(<!doctype html><html><head><title>Sweepstakes entry</title></head><body>
<div id="app"><form>
<input name="f1" autocomplete="given-name"><input name="f2" autocomplete="family-name">
<input name="f3" type="email" autocomplete="email"><input name="f4" type="tel" autocomplete="tel">
<input name="f5" autocomplete="address-line1"><input name="f6" autocomplete="address-level2">
<input name="f7" autocomplete="address-level1"><input name="f8" autocomplete="postal-code">
</form></div></body></html>)";

const QByteArray LabelsOnly = R"(<!doctype html><html><head><title>Win a weekend</title></head><body>
<form action="/thanks">
<label>Your name <input name="entry.101"></label>
<label>Email address <input name="entry.102"></label>
<label>Phone <input name="entry.103"></label>
<label>Street address <textarea name="entry.104"></textarea></label>
<label>Town/City <input name="entry.105"></label>
<label>State <select name="entry.106"><option>Choose</option><option>New York</option><option>Illinois</option></select></label>
<label>ZIP code <input name="entry.107"></label>
<label>Your friend's email (for a bonus entry) <input name="entry.108"></label>
<label>Promo code <input name="entry.109"></label>
</form></body></html>)";

const QByteArray French = R"(<!doctype html><html lang=fr><head><meta charset="utf-8"><title>Grand jeu concours</title></head><body>
<form><table>
<tr><td>Prénom</td><td><input name="champ1"></td></tr>
<tr><td>Nom</td><td><input name="champ2"></td></tr>
<tr><td>Courriel</td><td><input name="champ3"></td></tr>
<tr><td>Téléphone</td><td><input name="champ4"></td></tr>
<tr><td>Adresse</td><td><input name="champ5"></td></tr>
<tr><td>Ville</td><td><input name="champ6"></td></tr>
<tr><td>Code postal</td><td><input name="champ7"></td></tr>
</table></form></body></html>)";

class TestMeanings : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/checkout.html", Checkout}, {"/tokens.html", TokensOnly}, {"/labels.html", LabelsOnly},
                {"/fr.html", French}};
    }
    QString byMeaning(const char* key)
    {
        return f.ini.readEntry(form->valueStore().anyFile(), QStringLiteral("Meaning"), QString::fromLatin1(key))
            .value_or(QString());
    }
    QStringList values(const std::shared_ptr<ScriptWindow>& page, const QStringList& names)
    {
        QStringList shown;
        for (const QString& name : names)
            shown << fieldValue(page, name.toLatin1().constData());
        return shown;
    }
};

TEST_P(TestMeanings, AContactBlockTypedOnceFillsSitesThatNameItOtherwise)
{
    auto shop = open(server->url("/checkout.html"));
    click(shop, "#billing_first_name");
    for (const char* text : {"Ann", "Lee", "ann@example.org", "312 555 0123", "1 Main St", "Springfield"}) {
        type(shop, QString::fromLatin1(text));
        tab(shop);
    }
    driver->press(*shop, PageDriver::Key::ArrowDown); // the state list, by keyboard
    tab(shop);
    type(shop, "62701");
    tab(shop);
    ASSERT_TRUE(waitFor([&] { return byMeaning("postal-code") == QLatin1String("62701"); })) << byMeaning("postal-code").toStdString();
    EXPECT_EQ(byMeaning("given-name"), QStringLiteral("Ann"));
    EXPECT_EQ(byMeaning("tel"), QStringLiteral("312 555 0123"));
    EXPECT_EQ(byMeaning("address-level1"), QStringLiteral("Illinois"));

    auto tokens = open(server->url("/tokens.html", true));
    EXPECT_EQ(values(tokens, {"f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8"}),
              (QStringList{"Ann", "Lee", "ann@example.org", "312 555 0123", "1 Main St", "Springfield", "Illinois", "62701"}));

    auto labels = open(server->url("/labels.html"));
    const auto labelled = [&](const char* name) {
        return evaluate(labels, QStringLiteral("document.querySelector('[name=\"%1\"]').value").arg(QLatin1String(name))).toString();
    };
    EXPECT_EQ(labelled("entry.101"), QStringLiteral("Ann Lee"));
    EXPECT_EQ(labelled("entry.102"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(labelled("entry.103"), QStringLiteral("312 555 0123"));
    EXPECT_EQ(labelled("entry.104"), QStringLiteral("1 Main St"));
    EXPECT_EQ(labelled("entry.105"), QStringLiteral("Springfield"));
    EXPECT_EQ(labelled("entry.106"), QStringLiteral("Illinois"));
    EXPECT_EQ(labelled("entry.107"), QStringLiteral("62701"));
    EXPECT_EQ(labelled("entry.108"), QString()); // a friend's e-mail
    EXPECT_EQ(labelled("entry.109"), QString()); // a promotion code

    const QString fr = server->url("/fr.html", true);
    form->valueStore().SetValue(fr, "champ1", QStringLiteral("Anne-Marie"), ValueReach::SiteOnly);
    auto french = open(fr);
    EXPECT_EQ(values(french, {"champ1", "champ2", "champ3", "champ4", "champ5", "champ6", "champ7"}),
              (QStringList{"Anne-Marie", "Lee", "ann@example.org", "312 555 0123", "1 Main St", "Springfield", "62701"}));
    expectNoErrorBox();
}
ON_BOTH_BROWSERS(TestMeanings);
} // namespace
