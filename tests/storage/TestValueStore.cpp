// Remembered values: the site first, then Any.ini, then the default; escapes; blank values;
// profiles; addresses and names chosen by hostile pages.
#include "StorageFixture.h"

namespace {
const QString Site = QStringLiteral("http://prizes.example/enter.html");
const QString SiteFile = QStringLiteral("zPRIZES.EXAMPLE!ENTER.HTML.ini");
const QString Other = QStringLiteral("http://other.example/form");

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
        {"both", QStringLiteral("site"), QStringLiteral("any"), QStringLiteral("site")},
        {"any only", std::nullopt, QStringLiteral("any"), QStringLiteral("any")},
        {"site only", QStringLiteral("site"), std::nullopt, QStringLiteral("site")},
        {"blank site entry", QStringLiteral("   "), QStringLiteral("any"), QStringLiteral("any")},
        {"neither", std::nullopt, std::nullopt, QStringLiteral("dflt")},
        {"empty both", QString(), QString(), QStringLiteral("dflt")},
    };
    for (const Case& c : cases) {
        QFile::remove(dir.path() + QLatin1Char('/') + SiteFile);
        QFile::remove(dir.path() + QStringLiteral("/zAny.ini"));
        if (c.siteValue)
            ini.WriteINI(Site, QStringLiteral("email"), *c.siteValue,
                         dir.path() + QLatin1Char('/') + SiteFile);
        if (c.anyValue)
            ini.WriteINI(QStringLiteral("Any"), QStringLiteral("email"), *c.anyValue,
                         dir.path() + QStringLiteral("/zAny.ini"));
        EXPECT_EQ(values.GetValue(Site, QStringLiteral("email"), QStringLiteral("dflt")),
                  c.expected)
            << c.name;
    }
}

TEST_F(TestValueStore, SetValueWritesTheSiteAndAnyAndOtherSitesGetAnysValue)
{
    values.SetValue(Site, QStringLiteral("FirstName"), QStringLiteral("Ann"));
    EXPECT_EQ(fileBytes(SiteFile),
              QByteArray("[http://prizes.example/enter.html]\r\nFirstName=Ann\r\n"));
    EXPECT_EQ(fileBytes(QStringLiteral("zAny.ini")), QByteArray("[Any]\r\nFirstName=Ann\r\n"));
    EXPECT_EQ(values.GetValue(Other, QStringLiteral("firstname"), QString()),
              QStringLiteral("Ann"));

    values.SetValue(Other, QStringLiteral("FirstName"), QStringLiteral("Bo"));
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("FirstName"), QString()), QStringLiteral("Ann"));
    EXPECT_EQ(values.GetValue(QStringLiteral("http://third.example/"), QStringLiteral("FirstName"),
                              QString()),
              QStringLiteral("Bo"));

    // A blank value empties the site entry only; the site then falls back to Any.ini.
    for (const QString& blank : {QString(), QStringLiteral("    ")}) {
        values.SetValue(Site, QStringLiteral("FirstName"), blank);
        EXPECT_EQ(raw(SiteFile, Site, QStringLiteral("FirstName")), QString());
        EXPECT_EQ(
            raw(QStringLiteral("zAny.ini"), QStringLiteral("Any"), QStringLiteral("FirstName")),
            QStringLiteral("Bo"));
        EXPECT_EQ(values.GetValue(Site, QStringLiteral("FirstName"), QString()),
                  QStringLiteral("Bo"));
    }
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestValueStore, LineBreaksAreEscapedOnOneLineAndComeBack)
{
    values.SetValue(Site, QStringLiteral("address"), QStringLiteral("line one\r\nline two"));
    EXPECT_TRUE(fileBytes(SiteFile).contains("address=line one<VBCR><VBLF>line two\r\n"));
    EXPECT_TRUE(
        fileBytes(QStringLiteral("zAny.ini")).contains("address=line one<VBCR><VBLF>line two\r\n"));
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("address"), QString()),
              QStringLiteral("line one\r\nline two"));

    const std::pair<QString, QString> unescaped[] = {
        {QStringLiteral("typed <vbcr> here"), QStringLiteral("typed \r here")},
        {QStringLiteral("a<VbLf>b<VBCR>"), QStringLiteral("a\nb\r")},
        {QStringLiteral("<VBCR<VBLF>>"), QStringLiteral("<VBCR\n>")},
    };
    for (const auto& [stored, back] : unescaped) {
        ini.WriteINI(Site, QStringLiteral("k"), stored, dir.path() + QLatin1Char('/') + SiteFile);
        EXPECT_EQ(values.GetValue(Site, QStringLiteral("k"), QString()), back)
            << stored.toStdString();
    }
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("none"), QStringLiteral("x<VBLF>y")),
              QStringLiteral("x\ny"));
}

TEST_F(TestValueStore, TheCutAt255CountsEscapesAndMayEndInsideOne)
{
    values.SetValue(Site, QStringLiteral("notes"),
                    QString(250, QLatin1Char('a')) + QStringLiteral("\r\nb"));
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("notes"), QString()),
              QString(250, QLatin1Char('a')) + QStringLiteral("<VBCR"));
    values.SetValue(Site, QStringLiteral("spaced"), QStringLiteral("   padded   "));
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("spaced"), QString()), QStringLiteral("padded"));
}

TEST_F(TestValueStore, EachCallUsesTheProfileCurrentAtThatMoment)
{
    values.SetValue(Site, QStringLiteral("name"), QStringLiteral("Zed"));
    location.profile = 2;
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("name"), QStringLiteral("none")),
              QStringLiteral("none"));
    values.SetValue(Site, QStringLiteral("name"), QStringLiteral("Wes"));
    EXPECT_TRUE(QFile::exists(dir.path() + QStringLiteral("/wAny.ini")));
    EXPECT_TRUE(QFile::exists(dir.path() + QStringLiteral("/wPRIZES.EXAMPLE!ENTER.HTML.ini")));
    location.profile = 0;
    EXPECT_EQ(values.GetValue(Site, QStringLiteral("name"), QString()), QStringLiteral("Zed"));
    EXPECT_EQ(values.GetValue(Other, QStringLiteral("name"), QString()), QStringLiteral("Zed"));
}

TEST_F(TestValueStore, HostilePagesNeverBreakOrForgeAnotherEntry)
{
    values.SetValue(Site, QStringLiteral("name"), QStringLiteral("Ann"));
    values.SetValue(Site, QStringLiteral("city"), QStringLiteral("Oslo"));

    struct Case
    {
        QString site;
        QString key;
        bool storedForSite; // false: the site entry cannot be written (its name has a line break)
    } cases[] = {
        {Site + QStringLiteral("?q=") + QString(10000, QLatin1Char('x')), QStringLiteral("name"),
         true},
        {Site + QStringLiteral("\r\n[") + Site + QStringLiteral("]"), QStringLiteral("name"),
         false},
        {Site + QStringLiteral("]\r\nname=Eve"), QStringLiteral("name"), false},
        {Site + QStringLiteral("?a[]=1"), QStringLiteral("name"), true},
        {Site, QStringLiteral("name=Eve\r\ncity"), false},
        {Site, QStringLiteral("name]=x"), true},
        {Site, QStringLiteral("[") + Site + QStringLiteral("]"), true},
        {QStringLiteral("http://\u0441\u0430\u0439\u0442.example/\u00e9"),
         QStringLiteral("n\u00e4me"), true},
    };
    for (const Case& c : cases) {
        values.SetValue(c.site, c.key, QStringLiteral("Eve"));
        const QString back = values.GetValue(c.site, c.key, QStringLiteral("dflt"));
        if (c.storedForSite) {
            EXPECT_EQ(back, QStringLiteral("Eve")) << c.key.toStdString();
        }
        EXPECT_EQ(values.GetValue(Site, QStringLiteral("name"), QString()), QStringLiteral("Ann"))
            << c.site.left(80).toStdString() << " / " << c.key.toStdString();
        EXPECT_EQ(values.GetValue(Site, QStringLiteral("city"), QString()), QStringLiteral("Oslo"));
    }
    // No entry of Any.ini was forged: "city" is as it was, and every line is a section or an entry.
    EXPECT_EQ(raw(QStringLiteral("zAny.ini"), QStringLiteral("Any"), QStringLiteral("city")),
              QStringLiteral("Oslo"));
    const QByteArray any = fileBytes(QStringLiteral("zAny.ini"));
    for (const QByteArray& line : any.split('\n')) {
        if (!line.isEmpty()) {
            EXPECT_TRUE(line.startsWith('[') || line.contains('=')) << line.toStdString();
        }
    }
    EXPECT_TRUE(errors.reports.empty());
}
} // namespace
