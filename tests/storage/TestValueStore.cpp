// Remembered values: the site first, then Any.ini, then the default; escapes; blank values;
// profiles; addresses and names chosen by hostile pages.
#include "StorageFixture.h"

using namespace Qt::StringLiterals;

namespace {
const QString Site = u"http://prizes.example/enter.html"_s;
const QString SiteFile = u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s;
const QString Other = u"http://other.example/form"_s;

using TestValueStore = StorageFixture;

TEST_F(TestValueStore, SiteValueComesFirstThenAnyThenTheDefault)
{
    struct Case
    {
        const char* name;
        std::optional<QString> siteValue;
        std::optional<QString> anyValue;
        QString expected;
    } cases[] = {
        {"both", u"site"_s, u"any"_s, u"site"_s},
        {"any only", std::nullopt, u"any"_s, u"any"_s},
        {"site only", u"site"_s, std::nullopt, u"site"_s},
        {"blank site entry", u"   "_s, u"any"_s, u"any"_s},
        {"neither", std::nullopt, std::nullopt, u"dflt"_s},
        {"empty both", QString(), QString(), u"dflt"_s},
    };
    for (const Case& c : cases) {
        QFile::remove(dir.path() + QLatin1Char('/') + SiteFile);
        QFile::remove(dir.path() + u"/zAny.ini"_s);
        if (c.siteValue)
            ini.WriteINI(Site, u"email"_s, *c.siteValue, dir.path() + QLatin1Char('/') + SiteFile);
        if (c.anyValue)
            ini.WriteINI(u"Any"_s, u"email"_s, *c.anyValue, dir.path() + u"/zAny.ini"_s);
        EXPECT_EQ(values.GetValue(Site, u"email"_s, u"dflt"_s), c.expected) << c.name;
    }
}

TEST_F(TestValueStore, SetValueWritesTheSiteAndAnyAndOtherSitesGetAnysValue)
{
    values.SetValue(Site, u"FirstName"_s, u"Ann"_s);
    EXPECT_EQ(fileBytes(SiteFile),
              QByteArray("[http://prizes.example/enter.html]\r\nFirstName=Ann\r\n"));
    EXPECT_EQ(fileBytes(u"zAny.ini"_s), QByteArray("[Any]\r\nFirstName=Ann\r\n"));
    EXPECT_EQ(values.GetValue(Other, u"firstname"_s, QString()), u"Ann"_s);

    values.SetValue(Other, u"FirstName"_s, u"Bo"_s);
    EXPECT_EQ(values.GetValue(Site, u"FirstName"_s, QString()), u"Ann"_s);
    EXPECT_EQ(values.GetValue(u"http://third.example/"_s, u"FirstName"_s, QString()), u"Bo"_s);

    // A blank value never replaces what is remembered by meaning.
    values.SetMeaningValue(u"email"_s, u"ann@example.org"_s);
    values.SetMeaningValue(u"email"_s, u"  "_s);
    EXPECT_EQ(values.MeaningValue(u"email"_s), u"ann@example.org"_s);

    // A blank value empties the site entry only; the site then falls back to Any.ini.
    for (const QString& blank : {QString(), u"    "_s}) {
        values.SetValue(Site, u"FirstName"_s, blank);
        EXPECT_EQ(raw(SiteFile, Site, u"FirstName"_s), QString());
        EXPECT_EQ(raw(u"zAny.ini"_s, u"Any"_s, u"FirstName"_s), u"Bo"_s);
        EXPECT_EQ(values.GetValue(Site, u"FirstName"_s, QString()), u"Bo"_s);
    }
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestValueStore, LineBreaksAreEscapedOnOneLineAndComeBack)
{
    values.SetValue(Site, u"address"_s, u"line one\r\nline two"_s);
    EXPECT_TRUE(fileBytes(SiteFile).contains("address=line one<VBCR><VBLF>line two\r\n"));
    EXPECT_TRUE(fileBytes(u"zAny.ini"_s).contains("address=line one<VBCR><VBLF>line two\r\n"));
    EXPECT_EQ(values.GetValue(Site, u"address"_s, QString()), u"line one\r\nline two"_s);

    const std::pair<QString, QString> unescaped[] = {
        {u"typed <vbcr> here"_s, u"typed \r here"_s},
        {u"a<VbLf>b<VBCR>"_s, u"a\nb\r"_s},
        {u"<VBCR<VBLF>>"_s, u"<VBCR\n>"_s},
    };
    for (const auto& [stored, back] : unescaped) {
        ini.WriteINI(Site, u"k"_s, stored, dir.path() + QLatin1Char('/') + SiteFile);
        EXPECT_EQ(values.GetValue(Site, u"k"_s, QString()), back) << stored.toStdString();
    }
    EXPECT_EQ(values.GetValue(Site, u"none"_s, u"x<VBLF>y"_s), u"x\ny"_s);
}

TEST_F(TestValueStore, TheCutAt255CountsEscapesAndMayEndInsideOne)
{
    values.SetValue(Site, u"notes"_s, QString(250, QLatin1Char('a')) + u"\r\nb"_s);
    EXPECT_EQ(values.GetValue(Site, u"notes"_s, QString()),
              QString(250, QLatin1Char('a')) + u"<VBCR"_s);
}

TEST_F(TestValueStore, EachCallUsesTheProfileCurrentAtThatMoment)
{
    values.SetValue(Site, u"name"_s, u"Zed"_s);
    location.profile = 2;
    EXPECT_EQ(values.GetValue(Site, u"name"_s, u"none"_s), u"none"_s);
    values.SetValue(Site, u"name"_s, u"Wes"_s);
    EXPECT_TRUE(QFile::exists(dir.path() + u"/wAny.ini"_s));
    EXPECT_TRUE(QFile::exists(dir.path() + u"/wPRIZES.EXAMPLE!ENTER.HTML.ini"_s));
    location.profile = 0;
    EXPECT_EQ(values.GetValue(Site, u"name"_s, QString()), u"Zed"_s);
    EXPECT_EQ(values.GetValue(Other, u"name"_s, QString()), u"Zed"_s);
}

TEST_F(TestValueStore, HostilePagesNeverBreakOrForgeAnotherEntry)
{
    values.SetValue(Site, u"name"_s, u"Ann"_s);
    values.SetValue(Site, u"city"_s, u"Oslo"_s);

    struct Case
    {
        QString site;
        QString key;
        bool storedForSite; // false: the site entry cannot be written (its name has a line break)
    } cases[] = {
        {Site + u"?q="_s + QString(10000, QLatin1Char('x')), u"name"_s, true},
        {Site + u"\r\n["_s + Site + u"]"_s, u"name"_s, false},
        {Site + u"]\r\nname=Eve"_s, u"name"_s, false},
        {Site + u"?a[]=1"_s, u"name"_s, true},
        {Site, u"name=Eve\r\ncity"_s, false},
        {Site, u"name]=x"_s, true},
        {Site, u"["_s + Site + u"]"_s, true},
        {u"http://\u0441\u0430\u0439\u0442.example/\u00e9"_s, u"n\u00e4me"_s, true},
    };
    for (const Case& c : cases) {
        values.SetValue(c.site, c.key, u"Eve"_s);
        const QString back = values.GetValue(c.site, c.key, u"dflt"_s);
        if (c.storedForSite) {
            EXPECT_EQ(back, u"Eve"_s) << c.key.toStdString();
        }
        EXPECT_EQ(values.GetValue(Site, u"name"_s, QString()), u"Ann"_s)
            << c.site.left(80).toStdString() << " / " << c.key.toStdString();
        EXPECT_EQ(values.GetValue(Site, u"city"_s, QString()), u"Oslo"_s);
    }
    // No entry of Any.ini was forged: "city" is as it was, and every line is a section or an entry.
    EXPECT_EQ(raw(u"zAny.ini"_s, u"Any"_s, u"city"_s), u"Oslo"_s);
    const QByteArray any = fileBytes(u"zAny.ini"_s);
    for (const QByteArray& line : any.split('\n')) {
        if (!line.isEmpty()) {
            EXPECT_TRUE(line.startsWith('[') || line.contains('=')) << line.toStdString();
        }
    }
    EXPECT_TRUE(errors.reports.empty());
}
} // namespace
