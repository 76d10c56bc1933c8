// Contest forms built with React 18 (controlled inputs) and Vue 3 (v-model), from npm: what the
// bar fills is what the page submits, the page's own listeners hear each filled field once, and
// the data files hold only what the user typed.
#include "BarFixture.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {
QByteArray framework(const char* path)
{
    QFile file(QStringLiteral(TOLVANE_E2E_FRAMEWORKS "/") + QLatin1String(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing: scripts/test installs it with npm ci", qPrintable(file.fileName()));
    return file.readAll();
}

class TestFrameworkForms : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/react.js", framework("react/umd/react.production.min.js")},
                {"/react-dom.js", framework("react-dom/umd/react-dom.production.min.js")},
                {"/vue.js", framework("vue/dist/vue.global.prod.js")}};
    }
};

TEST_P(TestFrameworkForms, WhatTheBarFillsIsWhatThePageSubmits)
{
    const QString elsewhere = server->url("/elsewhere");
    const std::pair<const char*, const char*> remembered[] = {
        {"fname", "Ann"},      {"email", "ann@example.org"}, {"state", "NY"},
        {"optin_yes", "True"}, {"size_M", "True"},           {"why", "Because\nI ride"}};
    for (const auto& [key, value] : remembered)
        form->valueStore().SetValue(elsewhere, QLatin1String(key), QString::fromUtf8(value));
    const QByteArray anyBefore = fileBytes(form->valueStore().anyFile());

    // Each page has a field of its own that the user types into.
    for (const auto& [path, own] : {std::pair{"/frameworks/react.html", "code"},
                                    std::pair{"/frameworks/vue.html", "ticket"}}) {
        SCOPED_TRACE(path);
        const QString site = server->url(QLatin1String(path));
        auto page = open(site);
        ASSERT_TRUE(waitFor(
            [&] { return fieldValue(page, "why") == QLatin1String("Because\nI ride"); }, 5000))
            << evaluate(page, "JSON.stringify([document.readyState, "
                              "[...document.querySelectorAll('input,textarea,select')].map((f) => "
                              "f.name + '=' + f.value), window.counts])")
                   .toString()
                   .toStdString()
            << " held " << heldUrls(page).join(' ').toStdString() << " last fill "
            << form->formFill().LastFillURL().toStdString();

        // The user adds a code of their own and sends the form with a real click.
        click(page, u"[name=%1]"_s.arg(QLatin1String(own)));
        type(page, "WIN-42");
        click(page, "#send");
        ASSERT_TRUE(waitFor([&] { return evaluate(page, "!!window.submitted").toBool(); }));
        const QJsonObject sent = evaluate(page, "window.submitted").toObject();
        EXPECT_EQ(sent.value("fname").toString(), u"Ann"_s);
        EXPECT_EQ(sent.value("email").toString(), u"ann@example.org"_s);
        EXPECT_EQ(sent.value("state").toString(), u"NY"_s);
        EXPECT_EQ(sent.value("optin").toBool(), true);
        EXPECT_EQ(sent.value("size").toString(), u"M"_s);
        EXPECT_EQ(sent.value("why").toString(), u"Because\nI ride"_s);
        EXPECT_EQ(sent.value(QLatin1String(own)).toString(), u"WIN-42"_s);

        // Each field the fill changed was announced once; the radio button it checked too, the
        // one it left unchecked and the fields it left empty not at all.
        const QJsonObject counts = evaluate(page, "window.counts").toObject();
        for (const char* name : {"fname", "email", "state", "optin", "why"}) {
            for (const char* kind : {"input", "change"})
                EXPECT_EQ(counts.value(u"%1 %2"_s.arg(name, kind)).toInt(), 1)
                    << name << " " << kind;
        }
        EXPECT_EQ(counts.value("size input").toInt(), 1);
        EXPECT_EQ(counts.value("size change").toInt(), 1);

        // The files hold what the user typed, nothing the fill wrote.
        ASSERT_TRUE(waitFor([&] { return siteValue(site, own) == QLatin1String("WIN-42"); }));
        const QByteArray siteBytes = fileBytes(form->siteFiles().SiteFilePath(site));
        for (const char* filled : {"Ann", "ann@example.org", "NY", "optin", "size", "Because"})
            EXPECT_FALSE(siteBytes.contains(filled)) << filled;
    }
    // And the meaning of the fields they were typed in: none.
    EXPECT_EQ(
        fileBytes(form->valueStore().anyFile()),
        anyBefore +
            "code=WIN-42\r\nticket=WIN-42\r\n[Field Meanings]\r\ncode=none\r\nticket=none\r\n");
    expectNoErrorBox();
}
ON_EVERY_BROWSER(TestFrameworkForms);
} // namespace
