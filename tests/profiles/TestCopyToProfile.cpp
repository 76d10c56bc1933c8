// Copying the selected shortcut into another profile's list.
#include "ShortcutFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestCopyToProfile : public ShortcutFixture
{
protected:
    TestCopyToProfile()
    {
        setMax(1);
        shortcut(1, "Spring Sweepstakes", "http://spring.example/", 2, "3/1/2005", "12/31/2005");
        put(1, "Source", "Radio");
        put(1, "Notes", "Enter weekly");
        put(1, "LastVisit", "3/9/2005 1:00 PM");
        f.form.Form_Load();
        f.form.lvShortcuts.setSelectedIndex(0);
    }
    QString target(int number, const char* key, const QString& prefix = "v")
    {
        return f.ini
            .readEntry(f.dataFile(prefix + "Shortcuts.ini"), ShortcutFile::Section(number), key)
            .value_or("<missing>");
    }
    void targetHas(int number, const QString& title, const QString& prefix = "v")
    {
        f.ini.writeEntry(f.dataFile(prefix + "Shortcuts.ini"), ShortcutFile::Section(number),
                         "Title", title);
        f.ini.writeEntry(f.dataFile(prefix + "Shortcuts.ini"), ShortcutFile::Section(number),
                         "Source", "kept");
    }
    void targetMax(int max)
    {
        f.ini.writeEntry(f.dataFile("vShortcuts.ini"), "Shortcuts", "Max", QString::number(max));
    }
    QString max()
    {
        return f.ini.readEntry(f.dataFile("vShortcuts.ini"), "Shortcuts", "Max")
            .value_or("<missing>");
    }
};

TEST_F(TestCopyToProfile, ThePositionTakenAndMax)
{
    struct Case
    {
        const char* name;
        QList<std::pair<int, QString>> existing;
        int maxBefore;
        int number;
        QString maxAfter;
    } cases[] = {
        {"no file", {}, 0, 1, "1"},
        {"removed 2 reused", {{1, "A"}, {2, ""}, {3, "C"}, {4, "D"}}, 4, 2, "4"},
        {"all used", {{1, "A"}, {2, "B"}, {3, "C"}, {4, "D"}}, 4, 5, "5"},
        {"missing section is free", {{1, "A"}, {3, "C"}}, 3, 2, "3"},
    };
    for (const Case& c : cases) {
        QFile::remove(f.dataFile("vShortcuts.ini"));
        for (const auto& [number, title] : c.existing)
            targetHas(number, title);
        if (c.maxBefore)
            targetMax(c.maxBefore);
        f.form.mnuProfile[1]->click();
        EXPECT_EQ(target(c.number, "Title"), u"Spring Sweepstakes"_s) << c.name;
        EXPECT_EQ(target(c.number, "URL"), u"http://spring.example/"_s) << c.name;
        EXPECT_EQ(target(c.number, "Remind"), u"2"_s) << c.name;
        EXPECT_EQ(target(c.number, "StartDate"), u"3/1/2005"_s) << c.name;
        EXPECT_EQ(target(c.number, "Expires"), u"12/31/2005"_s) << c.name;
        EXPECT_EQ(max(), c.maxAfter) << c.name;
        // Keys that are not copied keep what the number had before.
        EXPECT_EQ(target(c.number, "Notes"), u"<missing>"_s) << c.name;
    }
    EXPECT_EQ(target(2, "Source"), u"<missing>"_s);
}

TEST_F(TestCopyToProfile, ARemovedShortcutsOtherKeysStay)
{
    targetHas(1, "");
    targetMax(1);
    f.form.mnuProfile[1]->click();
    EXPECT_EQ(target(1, "Title"), u"Spring Sweepstakes"_s);
    EXPECT_EQ(target(1, "Source"), u"kept"_s);
}

TEST_F(TestCopyToProfile, ATitleAlreadyThereInAnyCaseStopsTheCopy)
{
    for (const char* title : {"spring sweepstakes", "  SPRING SWEEPSTAKES  "}) {
        QFile::remove(f.dataFile("vShortcuts.ini"));
        targetHas(1, "Other");
        targetHas(2, QString::fromLatin1(title));
        targetMax(2);
        const QByteArray before = f.readDataFile("vShortcuts.ini");
        f.form.mnuProfile[1]->click();
        EXPECT_EQ(f.readDataFile("vShortcuts.ini"), before) << title;
    }
    // The current profile's own item finds the shortcut itself.
    const QByteArray own = fileBytes();
    EXPECT_FALSE(f.form.mnuProfile[0]->isEnabled());
    f.form.mnuProfile[0]->click();
    EXPECT_EQ(fileBytes(), own);
    EXPECT_TRUE(f.boxes.shown.empty());
}

TEST_F(TestCopyToProfile, TheCopyShowsInTheTargetWithItsOwnVisits)
{
    f.form.siteFiles().SetLastVisit("http://spring.example/");
    f.form.mnuProfile[4]->click();
    f.form.lvShortcuts.setSelectedIndex(-1);
    f.form.cboProfiles.setListIndex(4);
    f.form.shortcutList().RequeryShortcuts();
    ASSERT_EQ(f.form.lvShortcuts.count(), 1);
    f.form.lvShortcuts.setSelectedIndex(0);
    f.form.lvShortcuts.click();
    EXPECT_EQ(f.form.lblLastEntry.text(), u"never"_s);
    EXPECT_EQ(f.form.lblEntries.text(), u"0"_s);

    // Nothing selected: nothing copied.
    f.form.lvShortcuts.setSelectedIndex(-1);
    f.form.mnuProfile[2]->click();
    EXPECT_FALSE(QFile::exists(f.dataFile("wShortcuts.ini")));
}
} // namespace
