// The five profiles: names, the saved selection, what a change does, and the names dialog.
#include "ShortcutFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestProfiles : public ShortcutFixture
{
protected:
    QString profilesFile() const { return f.dataFile("Profiles.ini"); }
    QStringList names() const { return f.form.cboProfiles.items(); }
    void shortcutIn(const QString& prefix, int number, const QString& title)
    {
        const QString other = f.dataFile(prefix + "Shortcuts.ini");
        f.ini.writeEntry(other, "Shortcuts", "Max", QString::number(number));
        f.ini.writeEntry(other, ShortcutFile::Section(number), "Title", title);
        f.ini.writeEntry(other, ShortcutFile::Section(number), "URL",
                         "http://" + title + ".example/");
    }
    QStringList titles() const
    {
        QStringList shown;
        for (int i = 0; i < f.form.lvShortcuts.count(); ++i)
            shown << f.form.lvShortcuts.row(i).text;
        return shown;
    }
    QList<bool> menuEnabled() const
    {
        QList<bool> enabled;
        for (const auto& item : f.form.mnuProfile)
            enabled << item->isEnabled();
        return enabled;
    }
};

TEST_F(TestProfiles, TheSavedProfileIsSelectedAtStartUp)
{
    shortcutIn("z", 1, "first");
    shortcutIn("x", 1, "fourth");
    struct Case
    {
        std::optional<QString> saved;
        int selected;
        QStringList list;
        bool reported;
    } cases[] = {
        {std::nullopt, 0, {"first"}, false}, {u"3"_s, 3, {"fourth"}, false},
        {u"9"_s, 0, {"first"}, false},       {u"-1"_s, 0, {"first"}, false},
        {u"abc"_s, -1, {"first"}, true},
    };
    for (const Case& c : cases) {
        FormFixture g;
        g.shell.appDataFolder = f.shell.appDataFolder;
        if (c.saved)
            g.settings.values.insert("Settings/Profile", *c.saved);
        g.form.Form_Load();
        EXPECT_EQ(g.form.cboProfiles.listIndex(), c.selected)
            << c.saved.value_or("none").toStdString();
        QStringList shown;
        for (int i = 0; i < g.form.lvShortcuts.count(); ++i)
            shown << g.form.lvShortcuts.row(i).text;
        EXPECT_EQ(shown, c.list);
        EXPECT_EQ(!g.boxes.shown.empty(), c.reported);
        if (c.reported) {
            EXPECT_TRUE(
                g.boxes.shown[0].text.startsWith("An error occured in procedure RequeryProfiles."));
        } else {
            EXPECT_EQ(
                g.form.cboProfiles.items(),
                (QStringList{"Profile 1", "Profile 2", "Profile 3", "Profile 4", "Profile 5"}));
        }
    }
}

TEST_F(TestProfiles, ChangingTheProfileReloadsTheListMenuAndEveryPage)
{
    shortcutIn("z", 1, "first");
    shortcutIn("w", 2, "third");
    f.form.Form_Load();
    auto one = f.shellWindows.open();
    auto two = f.shellWindows.open();
    auto closed = f.shellWindows.open();
    closed->close(); // still listed, fails to reload: skipped silently
    f.form.window.setVisible(true);

    f.form.cboProfiles.setListIndex(2);
    EXPECT_EQ(f.form.ShortcutsFile(), f.dataFile("wShortcuts.ini"));
    EXPECT_EQ(titles(), QStringList{"third"});
    EXPECT_EQ(menuEnabled(), (QList<bool>{true, true, false, true, true}));
    EXPECT_EQ(one->refreshCount(), 1);
    EXPECT_EQ(two->refreshCount(), 1);
    EXPECT_TRUE(f.boxes.shown.empty());

    f.form.cboProfiles.setListIndex(0);
    EXPECT_EQ(titles(), QStringList{"first"});
    EXPECT_EQ(one->refreshCount(), 2);
}

TEST_F(TestProfiles, RenamingWritesWhatIsTypedAndCancelWritesNothing)
{
    f.form.Form_Load();
    f.form.cboProfiles.setListIndex(1);
    f.profilesEditor.user = [](frmProfiles& form) {
        form.txtProfile[1]->setText(QString());
        form.txtProfile[3]->setText(" Anna ");
        form.cmdOK.click();
    };
    f.form.cmdProfiles.click();
    EXPECT_EQ(f.ini.readEntry(profilesFile(), "Profiles", "Profile2"), QString());
    EXPECT_EQ(names(), (QStringList{"Profile 1", "", "Profile 3", "Anna", "Profile 5"}));
    EXPECT_EQ(f.form.mnuProfile[3]->text(), u"Anna"_s);
    EXPECT_EQ(f.form.cboProfiles.listIndex(), 1);

    const QByteArray before = f.readDataFile("Profiles.ini");
    QStringList shownInDialog;
    f.profilesEditor.user = [&](frmProfiles& form) {
        for (const auto& box : form.txtProfile)
            shownInDialog << box->text();
        form.txtProfile[0]->setText("Lost");
        form.cmdCancel.click();
    };
    f.form.cmdProfiles.click();
    EXPECT_EQ(shownInDialog, (QStringList{"Profile 1", "", "Profile 3", "Anna", "Profile 5"}));
    EXPECT_EQ(f.readDataFile("Profiles.ini"), before);
}
} // namespace
