// Site file names, visit records counted by local calendar day, and dates read back.
#include "StorageFixture.h"

#include "DateText.h"

namespace {
using TestSiteFiles = StorageFixture;

TEST_F(TestSiteFiles, AddressesMapToTheirFileNames)
{
    struct Case
    {
        QString address;
        int profile;
        QString file;
    } cases[] = {
        {QStringLiteral("http://prizes.example/enter.html"), 0,
         QStringLiteral("zPRIZES.EXAMPLE!ENTER.HTML.ini")},
        {QStringLiteral("http://prizes.example/contest/entry.asp?id=42&ref=home"), 0,
         QStringLiteral("zPRIZES.EXAMPLE!CONTEST!ENTRY.ASPID=42&R.ini")},
        {QStringLiteral("http://prizes.example/contest/entry.asp?id=42&ref=mail"), 0,
         QStringLiteral("zPRIZES.EXAMPLE!CONTEST!ENTRY.ASPID=42&R.ini")},
        {QStringLiteral("https://prizes.example/win"), 1,
         QStringLiteral("vHTTPSPRIZES.EXAMPLE!WIN.ini")},
        {QStringLiteral("HTTP://Prizes.Example/"), 0, QStringLiteral("zHTTPPRIZES.EXAMPLE!.ini")},
        {QStringLiteral("http://prizes.example/a b/c%20d.htm"), 2,
         QStringLiteral("wPRIZES.EXAMPLE!AB!C%20D.HTM.ini")},
        {QStringLiteral("http://prizes.example:8080/x y"), 4,
         QStringLiteral("yPRIZES.EXAMPLE8080!XY.ini")},
        {QStringLiteral("file://C:\\My Pages\\form.htm"), 0,
         QStringLiteral("zFILEC!MYPAGES!FORM.HTM.ini")},
        {QStringLiteral("\\\\server\\share\\form.htm"), 3,
         QStringLiteral("xSERVER!SHARE!FORM.HTM.ini")},
        {QStringLiteral("about:blank"), 0, QStringLiteral("zABOUTBLANK.ini")},
        {QStringLiteral("http://:;<>\"?*|"), -1, QStringLiteral("z.ini")},
        {QStringLiteral("http://caf\u00e9.example/\uff21\u4e2d"), 0,
         QStringLiteral("zCAF.EXAMPLE!.ini")},
        {QStringLiteral("http://x/a\r\nb\tc"), 0, QStringLiteral("zX!ABC.ini")},
        {QStringLiteral("http://x/") + QString(10000, QLatin1Char('q')), 0,
         QStringLiteral("zX!") + QString(37, QLatin1Char('Q')) + QStringLiteral(".ini")},
        {QStringLiteral("http://x/"), 5, QStringLiteral("X!.ini")},
    };
    for (const Case& c : cases) {
        location.profile = c.profile;
        EXPECT_EQ(sites.URL2INIFile(c.address), c.file) << c.address.left(60).toStdString();
    }
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestSiteFiles, VisitsCountDaysNotClicks)
{
    const QString page = QStringLiteral("http://prizes.example/enter.html");
    struct Step
    {
        QDateTime at;
        int visits;
    } steps[] = {
        {QDateTime(QDate(2026, 3, 14), QTime(9, 0)), 1},
        {QDateTime(QDate(2026, 3, 14), QTime(12, 30)), 1},
        {QDateTime(QDate(2026, 3, 14), QTime(23, 59, 59)), 1},
        {QDateTime(QDate(2026, 3, 15), QTime(0, 0, 1)), 2}, // past midnight
        {QDateTime(QDate(2026, 3, 15), QTime(18, 0)), 2},
        {QDateTime(QDate(2026, 3, 14), QTime(18, 0)), 3}, // clock set back a day
        {QDateTime(QDate(2026, 3, 20), QTime(8, 0)), 4},
    };
    EXPECT_EQ(sites.GetLastVisit(page), QStringLiteral("never"));
    EXPECT_EQ(sites.GetTotalVisits(page), 0);
    for (const Step& step : steps) {
        clock.current = step.at;
        sites.SetLastVisit(page);
        EXPECT_EQ(sites.GetTotalVisits(page), step.visits) << step.at.toString().toStdString();
        EXPECT_EQ(raw(QStringLiteral("zPRIZES.EXAMPLE!ENTER.HTML.ini"), QStringLiteral("URL"),
                      QStringLiteral("LastVisit")),
                  DateText::fromDateTime(step.at));
    }
    EXPECT_EQ(sites.GetLastVisit(page), QStringLiteral("3/20/2026 8:00 AM"));
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestSiteFiles, LastVisitIsShownInTheLocalesShortDateAndTwelveHourTime)
{
    const QString page = QStringLiteral("http://p.example/");
    const QString file = dir.path() + QStringLiteral("/zP.EXAMPLE!.ini");
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("3/14/2005 4:07:00 PM"), QStringLiteral("3/14/2005 4:07 PM")},
        {QStringLiteral("3/14/2005 12:05:09 AM"), QStringLiteral("3/14/2005 12:05 AM")},
        {QStringLiteral("12/1/2026 12:00:00 PM"), QStringLiteral("12/1/2026 12:00 PM")},
        {QStringLiteral("2005-03-14T16:07:00"), QStringLiteral("3/14/2005 4:07 PM")},
        {QStringLiteral("3/14/2005"), QStringLiteral("3/14/2005 12:00 AM")},
        {QStringLiteral("yesterday-ish"), QStringLiteral("yesterday-ish")},
    };
    for (const auto& [stored, shown] : cases) {
        ini.WriteINI(QStringLiteral("URL"), QStringLiteral("LastVisit"), stored, file);
        EXPECT_EQ(sites.GetLastVisit(page), shown) << stored.toStdString();
    }

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    ini.WriteINI(QStringLiteral("URL"), QStringLiteral("LastVisit"),
                 QStringLiteral("3/14/2005 4:07:00 PM"), file);
    EXPECT_EQ(sites.GetLastVisit(page), QStringLiteral("14.03.2005 4:07 PM"));
}

TEST_F(TestSiteFiles, DamagedRecordsCountAsTheSystemSays)
{
    const QString page = QStringLiteral("http://p.example/");
    const QString file = dir.path() + QStringLiteral("/zP.EXAMPLE!.ini");
    clock.current = QDateTime(QDate(2026, 5, 1), QTime(10, 0));

    // A last visit that is no date counts as today: this click is not a new day.
    ini.WriteINI(QStringLiteral("URL"), QStringLiteral("LastVisit"), QStringLiteral("garbage"),
                 file);
    ini.WriteINI(QStringLiteral("URL"), QStringLiteral("Visits"), QStringLiteral("7"), file);
    sites.SetLastVisit(page);
    EXPECT_EQ(sites.GetTotalVisits(page), 7);
    EXPECT_EQ(sites.GetLastVisit(page), QStringLiteral("5/1/2026 10:00 AM"));

    const std::pair<QString, int> totals[] = {
        {QStringLiteral("abc"), 0}, {QStringLiteral("12 days"), 12}, {QStringLiteral("2.5"), 2},
        {QStringLiteral("3.5"), 4}, {QStringLiteral("-3"), -3},
    };
    for (const auto& [stored, total] : totals) {
        ini.WriteINI(QStringLiteral("URL"), QStringLiteral("Visits"), stored, file);
        EXPECT_EQ(sites.GetTotalVisits(page), total) << stored.toStdString();
    }
    EXPECT_TRUE(errors.reports.empty());

    ini.WriteINI(QStringLiteral("URL"), QStringLiteral("Visits"), QStringLiteral("99999999999"),
                 file);
    EXPECT_EQ(sites.GetTotalVisits(page), 0);
    ini.WriteINI(QStringLiteral("URL"), QStringLiteral("Visits"), QStringLiteral("2147483647"),
                 file);
    clock.current = clock.current.addDays(1);
    sites.SetLastVisit(page);
    ASSERT_EQ(errors.reports.size(), 2u);
    EXPECT_EQ(errors.reports[0].procedure, QStringLiteral("GetTotalVisits"));
    EXPECT_EQ(errors.reports[0].number, 6);
    EXPECT_EQ(errors.reports[1].procedure, QStringLiteral("SetLastVisit"));
    // What was written before the failure stays written; the count is left alone.
    EXPECT_EQ(
        raw(QStringLiteral("zP.EXAMPLE!.ini"), QStringLiteral("URL"), QStringLiteral("LastVisit")),
        QStringLiteral("2026-05-02 10:00:00"));
    EXPECT_EQ(
        raw(QStringLiteral("zP.EXAMPLE!.ini"), QStringLiteral("URL"), QStringLiteral("Visits")),
        QStringLiteral("2147483647"));
}

TEST_F(TestSiteFiles, RecordsAreSharedByTheFirstFortyCharactersAndKeptPerProfile)
{
    const QString home = QStringLiteral("http://prizes.example/contest/entry.asp?id=42&ref=home");
    const QString mail = QStringLiteral("http://prizes.example/contest/entry.asp?id=42&ref=mail");
    sites.SetLastVisit(home);
    EXPECT_EQ(sites.GetTotalVisits(mail), 1);
    location.profile = 1;
    EXPECT_EQ(sites.GetTotalVisits(home), 0);
    EXPECT_EQ(sites.GetLastVisit(home), QStringLiteral("never"));
    sites.SetLastVisit(home);
    clock.current = clock.current.addDays(1);
    sites.SetLastVisit(home);
    EXPECT_EQ(sites.GetTotalVisits(home), 2);
    location.profile = 0;
    EXPECT_EQ(sites.GetTotalVisits(home), 1);
}

TEST_F(TestSiteFiles, SafeDateGivesTodayForAnythingElse)
{
    clock.current = QDateTime(QDate(2026, 7, 4), QTime(15, 45));
    const QDateTime today = QDate(2026, 7, 4).startOfDay();
    const std::pair<QString, QDateTime> cases[] = {
        {QStringLiteral("1/2/2003 4:05:06 AM"), QDateTime(QDate(2003, 1, 2), QTime(4, 5, 6))},
        {QStringLiteral("12/31/1999"), QDate(1999, 12, 31).startOfDay()},
        {QStringLiteral("1999-12-31"), QDate(1999, 12, 31).startOfDay()},
        {QStringLiteral("13/45/2003"), today},
        {QStringLiteral("never"), today},
        {QString(), today},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(sites.SafeDate(text), date) << text.toStdString();
}
} // namespace
