// Site file names, visit records counted by local calendar day, and dates read back.
#include "StorageFixture.h"

#include "DateText.h"

using namespace Qt::StringLiterals;

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
        {u"http://prizes.example/enter.html"_s, 0, u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s},
        {u"http://prizes.example/contest/entry.asp?id=42&ref=home"_s, 0,
         u"zPRIZES.EXAMPLE!CONTEST!ENTRY.ASPID=42&R.ini"_s},
        {u"http://prizes.example/contest/entry.asp?id=42&ref=mail"_s, 0,
         u"zPRIZES.EXAMPLE!CONTEST!ENTRY.ASPID=42&R.ini"_s},
        {u"https://prizes.example/win"_s, 1, u"vHTTPSPRIZES.EXAMPLE!WIN.ini"_s},
        {u"HTTP://Prizes.Example/"_s, 0, u"zHTTPPRIZES.EXAMPLE!.ini"_s},
        {u"http://prizes.example/a b/c%20d.htm"_s, 2, u"wPRIZES.EXAMPLE!AB!C%20D.HTM.ini"_s},
        {u"http://prizes.example:8080/x y"_s, 4, u"yPRIZES.EXAMPLE8080!XY.ini"_s},
        {u"file://C:\\My Pages\\form.htm"_s, 0, u"zFILEC!MYPAGES!FORM.HTM.ini"_s},
        {u"\\\\server\\share\\form.htm"_s, 3, u"xSERVER!SHARE!FORM.HTM.ini"_s},
        {u"about:blank"_s, 0, u"zABOUTBLANK.ini"_s},
        {u"http://:;<>\"?*|"_s, -1, u"z.ini"_s},
        {u"http://caf\u00e9.example/\uff21\u4e2d"_s, 0, u"zCAF.EXAMPLE!.ini"_s},
        {u"http://x/a\r\nb\tc"_s, 0, u"zX!ABC.ini"_s},
        {u"http://x/"_s + QString(10000, QLatin1Char('q')), 0,
         u"zX!"_s + QString(37, QLatin1Char('Q')) + u".ini"_s},
        {u"http://x/"_s, 5, u"X!.ini"_s},
    };
    for (const Case& c : cases) {
        location.profile = c.profile;
        EXPECT_EQ(sites.URL2INIFile(c.address), c.file) << c.address.left(60).toStdString();
    }
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestSiteFiles, VisitsCountDaysNotClicks)
{
    const QString page = u"http://prizes.example/enter.html"_s;
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
    EXPECT_EQ(sites.GetLastVisit(page), u"never"_s);
    EXPECT_EQ(sites.GetTotalVisits(page), 0);
    for (const Step& step : steps) {
        clock.current = step.at;
        sites.SetLastVisit(page);
        EXPECT_EQ(sites.GetTotalVisits(page), step.visits) << step.at.toString().toStdString();
        EXPECT_EQ(raw(u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s, u"URL"_s, u"LastVisit"_s),
                  DateText::fromDateTime(step.at));
    }
    EXPECT_EQ(sites.GetLastVisit(page), u"3/20/2026 8:00 AM"_s);
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(TestSiteFiles, LastVisitIsShownInTheLocalesShortDateAndTwelveHourTime)
{
    const QString page = u"http://p.example/"_s;
    const QString file = dir.path() + u"/zP.EXAMPLE!.ini"_s;
    const std::pair<QString, QString> cases[] = {
        {u"3/14/2005 4:07:00 PM"_s, u"3/14/2005 4:07 PM"_s},
        {u"3/14/2005 12:05:09 AM"_s, u"3/14/2005 12:05 AM"_s},
        {u"12/1/2026 12:00:00 PM"_s, u"12/1/2026 12:00 PM"_s},
        {u"2005-03-14T16:07:00"_s, u"3/14/2005 4:07 PM"_s},
        {u"3/14/2005"_s, u"3/14/2005 12:00 AM"_s},
        {u"yesterday-ish"_s, u"yesterday-ish"_s},
    };
    for (const auto& [stored, shown] : cases) {
        ini.WriteINI(u"URL"_s, u"LastVisit"_s, stored, file);
        EXPECT_EQ(sites.GetLastVisit(page), shown) << stored.toStdString();
    }

    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    ini.WriteINI(u"URL"_s, u"LastVisit"_s, u"3/14/2005 4:07:00 PM"_s, file);
    EXPECT_EQ(sites.GetLastVisit(page), u"14.03.2005 4:07 PM"_s);
}

TEST_F(TestSiteFiles, DamagedRecordsCountAsTheSystemSays)
{
    const QString page = u"http://p.example/"_s;
    const QString file = dir.path() + u"/zP.EXAMPLE!.ini"_s;
    clock.current = QDateTime(QDate(2026, 5, 1), QTime(10, 0));

    // A last visit that is no date counts as today: this click is not a new day.
    ini.WriteINI(u"URL"_s, u"LastVisit"_s, u"garbage"_s, file);
    ini.WriteINI(u"URL"_s, u"Visits"_s, u"7"_s, file);
    sites.SetLastVisit(page);
    EXPECT_EQ(sites.GetTotalVisits(page), 7);
    EXPECT_EQ(sites.GetLastVisit(page), u"5/1/2026 10:00 AM"_s);

    const std::pair<QString, int> totals[] = {
        {u"abc"_s, 0}, {u"12 days"_s, 12}, {u"2.5"_s, 2}, {u"3.5"_s, 4}, {u"-3"_s, -3},
    };
    for (const auto& [stored, total] : totals) {
        ini.WriteINI(u"URL"_s, u"Visits"_s, stored, file);
        EXPECT_EQ(sites.GetTotalVisits(page), total) << stored.toStdString();
    }
    EXPECT_TRUE(errors.reports.empty());

    ini.WriteINI(u"URL"_s, u"Visits"_s, u"99999999999"_s, file);
    EXPECT_EQ(sites.GetTotalVisits(page), 0);
    ini.WriteINI(u"URL"_s, u"Visits"_s, u"2147483647"_s, file);
    clock.current = clock.current.addDays(1);
    sites.SetLastVisit(page);
    ASSERT_EQ(errors.reports.size(), 2u);
    EXPECT_EQ(errors.reports[0].procedure, u"GetTotalVisits"_s);
    EXPECT_EQ(errors.reports[0].number, 6);
    EXPECT_EQ(errors.reports[1].procedure, u"SetLastVisit"_s);
    // What was written before the failure stays written; the count is left alone.
    EXPECT_EQ(raw(u"zP.EXAMPLE!.ini"_s, u"URL"_s, u"LastVisit"_s), u"2026-05-02 10:00:00"_s);
    EXPECT_EQ(raw(u"zP.EXAMPLE!.ini"_s, u"URL"_s, u"Visits"_s), u"2147483647"_s);
}

TEST_F(TestSiteFiles, RecordsAreSharedByTheFirstFortyCharactersAndKeptPerProfile)
{
    const QString home = u"http://prizes.example/contest/entry.asp?id=42&ref=home"_s;
    const QString mail = u"http://prizes.example/contest/entry.asp?id=42&ref=mail"_s;
    sites.SetLastVisit(home);
    EXPECT_EQ(sites.GetTotalVisits(mail), 1);
    location.profile = 1;
    EXPECT_EQ(sites.GetTotalVisits(home), 0);
    EXPECT_EQ(sites.GetLastVisit(home), u"never"_s);
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
        {u"1/2/2003 4:05:06 AM"_s, QDateTime(QDate(2003, 1, 2), QTime(4, 5, 6))},
        {u"12/31/1999"_s, QDate(1999, 12, 31).startOfDay()},
        {u"1999-12-31"_s, QDate(1999, 12, 31).startOfDay()},
        {u"13/45/2003"_s, today},
        {u"never"_s, today},
        {QString(), today},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(sites.SafeDate(text), date) << text.toStdString();
}
} // namespace
