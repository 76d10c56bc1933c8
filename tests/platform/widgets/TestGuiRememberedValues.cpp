// "Remembered values" as the user works it, offscreen: corrections by meaning, by name and per
// site change exactly the entry in the files; Delete forgets after a confirmation; a site is
// forgotten whole; the filter finds text in any script; the profile selector switches it.
#include "FormFixture.h"
#include "HelpWindow.h"
#include "MainWindow.h"
#include "RememberedValuesHands.h"
#include "RememberedValuesWindow.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QByteArray Bom = "\xEF\xBB\xBF";
const QByteArray AnyFile = Bom + "[Any]\r\nfname=Ann\r\ncity=Kraków\r\n[Field Meanings]\r\n"
                                 "fname=given-name\r\n[Meaning]\r\ngiven-name=Ann\r\n"
                                 "address-level2=Łódź\r\n";
const QByteArray SiteFile = "[http://prizes.example/enter.html]\r\nfname=Ann\r\nnote=a<VBCR><VBLF>b"
                            "\r\n[URL]\r\nLastVisit=11/24/2026 3:14:00 PM\r\nVisits=4\r\n";
const QByteArray JapaneseSite = Bom + "[http://draw.example/jp]\r\nname=山田花子\r\n";

class TestGuiRememberedValues : public ::testing::Test
{
protected:
    TestGuiRememberedValues()
    {
        f.writeDataFile(u"zAny.ini"_s, AnyFile);
        f.writeDataFile(u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s, SiteFile);
        f.writeDataFile(u"zDRAW.EXAMPLE!JP.ini"_s, JapaneseSite);
        f.form.Form_Load();
        QTest::keyClick(&bar, Qt::Key_F2);
        window = bar.rememberedValues();
    }
    QTableWidget* table(const char* name) { return window->findChild<QTableWidget*>(name); }
    void pick(const char* name, int column, const QString& text)
    {
        EXPECT_TRUE(RememberedValuesHands::pick(table(name), column, text)) << text.toStdString();
    }
    static void answer(const QString& typed = {}) { RememberedValuesHands::answer(typed); }
    QStringList shownIn(const char* name, int column)
    {
        QStringList texts;
        for (int row = 0; row < table(name)->rowCount(); ++row) {
            if (!table(name)->isRowHidden(row))
                texts << table(name)->item(row, column)->text();
        }
        return texts;
    }

    FormFixture f;
    MainWindow bar{f.form};
    RememberedValuesWindow* window = nullptr;
};

TEST_F(TestGuiRememberedValues, CorrectionsChangeExactlyTheirEntry)
{
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(window->isVisible());
    EXPECT_EQ(shownIn("tblAnySite", 3).size(), 4);

    pick("tblAnySite", 1, u"given-name"_s); // by meaning
    answer(u"Anna"_s);
    QTest::keyClick(table("tblAnySite"), Qt::Key_Return);
    pick("tblAnySite", 1, u"city"_s); // by name
    answer(u"Gdańsk"_s);
    QTest::keyClick(table("tblAnySite"), Qt::Key_Return);
    pick("tblAnySite", 1, u"fname"_s);
    answer();
    QTest::keyClick(table("tblAnySite"), Qt::Key_Delete);
    EXPECT_EQ(f.readDataFile(u"zAny.ini"_s),
              Bom + "[Any]\r\ncity=Gdańsk\r\n[Field Meanings]\r\n[Meaning]\r\ngiven-name=Anna\r\n"
                    "address-level2=Łódź\r\n");

    // Per site: a value of two lines, then the site forgotten whole.
    window->findChild<QTabWidget*>()->setCurrentIndex(1);
    pick("tblSites", 0, u"http://prizes.example/enter.html"_s);
    EXPECT_EQ(shownIn("tblSiteValues", 1), (QStringList{"fname", "note"}));
    pick("tblSiteValues", 1, u"fname"_s);
    answer(u"Ann\nLee"_s);
    QTest::keyClick(table("tblSiteValues"), Qt::Key_Return);
    EXPECT_EQ(f.readDataFile(u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s),
              QByteArray(SiteFile).replace("fname=Ann", "fname=Ann<VBLF>Lee"));
    EXPECT_EQ(f.form.valueStore().GetValue(u"http://prizes.example/enter.html"_s, "fname", {}),
              u"Ann\nLee"_s);
    pick("tblSites", 0, u"http://prizes.example/enter.html"_s);
    answer();
    window->findChild<QPushButton*>("cmdForgetSite")->click();
    EXPECT_FALSE(QFile::exists(f.dataFile(u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s)));
    EXPECT_EQ(shownIn("tblSites", 0), QStringList{"http://draw.example/jp"});
    EXPECT_EQ(f.readDataFile(u"zDRAW.EXAMPLE!JP.ini"_s), JapaneseSite);
    EXPECT_TRUE(f.boxes.shown.empty());
}

TEST_F(TestGuiRememberedValues, TheFilterFindsAnyScriptTheProfileSwitchesItAndKeysWork)
{
    auto* filter = window->findChild<QLineEdit*>("txtFilter");
    filter->insert(u"łódź"_s); // as an input method types it
    EXPECT_EQ(shownIn("tblAnySite", 3), QStringList{u"Łódź"_s});
    filter->clear();
    filter->insert(u"花子"_s);
    EXPECT_TRUE(shownIn("tblAnySite", 3).isEmpty());
    EXPECT_EQ(shownIn("tblSites", 0), QStringList{"http://draw.example/jp"});
    filter->clear();

    // Another profile remembers nothing yet.
    f.form.cboProfiles.setListIndex(1);
    EXPECT_TRUE(shownIn("tblAnySite", 3).isEmpty());
    EXPECT_TRUE(shownIn("tblSites", 0).isEmpty());
    f.form.cboProfiles.setListIndex(0);
    EXPECT_EQ(shownIn("tblSites", 0).size(), 2);

    // F1 opens the help at the window's section; Escape closes it, and its size is kept.
    QFile help(f.shell.programFolder + u"/Tolvane.hlp"_s);
    ASSERT_TRUE(help.open(QIODevice::WriteOnly));
    help.write("<p>Bar</p><h3><a name='remembered-values'></a>Remembered values</h3>");
    help.close();
    QTest::keyClick(window, Qt::Key_F1);
    ASSERT_NE(bar.helpWindow(), nullptr);
    EXPECT_TRUE(bar.helpWindow()->isVisible());
    window->resize(640, 420);
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(f.settings.values.value(u"Remembered values/Width"_s), u"640"_s);
    EXPECT_EQ(f.settings.values.value(u"Remembered values/Height"_s), u"420"_s);
}
} // namespace
