// The start-up sequence: instance rule, browser warnings, data folder and the one-time moves.
#include "FormFixture.h"

#include <gtest/gtest.h>

namespace {
const QString OldBrowserWarning = QStringLiteral(
    "Tolvane has determined that you are running a version of Microsoft Internet Explorer older "
    "than 5.0.  You should upgrade to the latest version of Internet Explorer in order for "
    "Tolvane to work correctly.");
const QString NotDefaultWarning = QStringLiteral(
    "Internet Explorer is not your default web browser.  Until you set Internet Explorer to be "
    "your default web browser, Tolvane will not work properly.");

QStringList texts(const FakeMessageBoxes& boxes)
{
    QStringList shown;
    for (const auto& box : boxes.shown)
        shown << box.text;
    return shown;
}

TEST(Startup, BrowserChecksWarnOnlyWhenTheirConditionHolds)
{
    struct Case
    {
        const char* name;
        std::optional<DllVersion> version;
        QString associated;
        bool tempFails;
        QStringList warnings;
    } cases[] = {
        {"5.0 is enough", DllVersion{5, 0}, QStringLiteral("C:\\IEXPLORE.EXE"), false, {}},
        {"6.0, lower case",
         DllVersion{6, 0},
         QStringLiteral("c:\\program files\\iexplore.exe"),
         false,
         {}},
        {"4.72 is old",
         DllVersion{4, 72},
         QStringLiteral("C:\\IEXPLORE.EXE"),
         false,
         {OldBrowserWarning}},
        {"no version",
         std::nullopt,
         QStringLiteral("C:\\IEXPLORE.EXE"),
         false,
         {OldBrowserWarning}},
        {"5.50 reads 5.5", DllVersion{5, 50}, QStringLiteral("x:\\iexplore.exe"), false, {}},
        {"other browser",
         DllVersion{6, 0},
         QStringLiteral("C:\\firefox.exe"),
         false,
         {NotDefaultWarning}},
        {"no association", DllVersion{6, 0}, QString(), false, {NotDefaultWarning}},
        {"no temp folder",
         DllVersion{6, 0},
         QStringLiteral("C:\\IEXPLORE.EXE"),
         true,
         {NotDefaultWarning}},
        {"both", DllVersion{4, 0}, QString(), false, {OldBrowserWarning, NotDefaultWarning}},
    };
    for (const Case& c : cases) {
        FormFixture f;
        f.shell.version = c.version;
        f.shell.tempFolderFails = c.tempFails;
        f.shell.findExecutable = [&](const QString&) { return c.associated; };
        ASSERT_EQ(f.form.Form_Load(), frmMain::LoadResult::Show) << c.name;
        EXPECT_EQ(texts(f.boxes), c.warnings) << c.name;
        for (const auto& box : f.boxes.shown) {
            EXPECT_EQ(box.icon, MsgIcon::Exclamation);
            EXPECT_EQ(box.title, QStringLiteral("Tolvane"));
        }
    }
}

TEST(Startup, DefaultBrowserTestFileIsNamedByTheTimeAndRemoved)
{
    FormFixture f;
    f.clock.current = QDateTime(QDate(2026, 1, 2), QTime(14, 30, 25));
    bool existedDuringLookup = false;
    QByteArray content;
    f.shell.findExecutable = [&](const QString& file) {
        QFile test(file);
        existedDuringLookup = test.open(QIODevice::ReadOnly);
        content = test.readAll();
        return QStringLiteral("iexplore.exe");
    };
    f.form.Form_Load();
    ASSERT_EQ(f.shell.filesAskedFor.size(), 1);
    EXPECT_EQ(f.shell.filesAskedFor.first(),
              f.shell.tempFolder + QStringLiteral("/Test143025.html"));
    EXPECT_TRUE(existedDuringLookup);
    EXPECT_EQ(content, QByteArray("\r\n"));
    EXPECT_FALSE(QFile::exists(f.shell.filesAskedFor.first()));
}

TEST(Startup, SecondInstanceEndsSilentlyTouchingNothing)
{
    FormFixture f;
    f.shell.anotherInstance = true;
    f.shell.version = std::nullopt;
    f.writeDataFile(QStringLiteral("Any.ini"), "[Any]\r\nname=Ann\r\n");
    EXPECT_EQ(f.form.Form_Load(), frmMain::LoadResult::End);
    EXPECT_TRUE(f.boxes.shown.empty());
    EXPECT_TRUE(f.shell.filesAskedFor.isEmpty());
    EXPECT_TRUE(QFile::exists(f.dataFile(QStringLiteral("Any.ini"))));
    EXPECT_FALSE(QFile::exists(f.dataFile(QStringLiteral("zAny.ini"))));
    EXPECT_TRUE(f.settings.values.isEmpty());
}

TEST(Startup, DataFolderIsMadeUnderAppDataOrElseBesideTheProgram)
{
    FormFixture withAppData;
    withAppData.form.Form_Load();
    EXPECT_EQ(withAppData.form.DataFolder(), withAppData.dataFolder());
    EXPECT_TRUE(QFileInfo(withAppData.dataFolder()).isDir());
    EXPECT_EQ(withAppData.form.ProfilesFile(),
              withAppData.dataFile(QStringLiteral("Profiles.ini")));
    EXPECT_EQ(withAppData.form.ShortcutsFile(),
              withAppData.dataFile(QStringLiteral("zShortcuts.ini")));

    FormFixture without;
    without.shell.appDataFolder = std::nullopt;
    without.form.Form_Load();
    EXPECT_EQ(without.form.DataFolder(),
              without.shell.programFolder + QStringLiteral("/Tolvane Data"));
    EXPECT_TRUE(QFileInfo(without.form.DataFolder()).isDir());
}

TEST(Startup, DataFolderThatCannotBeFoundEndsWithTheCriticalMessage)
{
    FormFixture f;
    f.shell.appDataFails = true;
    EXPECT_EQ(f.form.Form_Load(), frmMain::LoadResult::End);
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(f.boxes.shown[0].text,
              QStringLiteral("Tolvane is unable to find the application data folder."));
    EXPECT_EQ(f.boxes.shown[0].icon, MsgIcon::Critical);
}

TEST(Startup, OldReleaseFilesTakeTheFirstProfilesNamesOnce)
{
    struct Case
    {
        const char* name;
        QStringList present;
        QStringList after;
    } cases[] = {
        {"both old", {"Any.ini", "Shortcuts.ini"}, {"zAny.ini", "zShortcuts.ini"}},
        {"new already there",
         {"Any.ini", "zAny.ini", "Shortcuts.ini", "zShortcuts.ini"},
         {"Any.ini", "Shortcuts.ini", "zAny.ini", "zShortcuts.ini"}},
        {"only shortcuts", {"Shortcuts.ini"}, {"zShortcuts.ini"}},
        {"nothing", {}, {}},
    };
    for (const Case& c : cases) {
        FormFixture f;
        for (const QString& name : c.present)
            f.writeDataFile(name, "[X]\r\nfrom=" + name.toLatin1() + "\r\n");
        f.form.Form_Load();
        QStringList files = QDir(f.dataFolder()).entryList({QStringLiteral("*.ini")}, QDir::Files);
        files.sort();
        files.removeAll(QStringLiteral("Profiles.ini"));
        EXPECT_EQ(files, c.after) << c.name;
        if (c.present.contains(QStringLiteral("zAny.ini"))) {
            EXPECT_EQ(f.readDataFile(QStringLiteral("zAny.ini")),
                      QByteArray("[X]\r\nfrom=zAny.ini\r\n"));
        }
    }
}

TEST(Startup, ProfileNamesMoveToProfilesIniOnce)
{
    FormFixture f;
    f.writeDataFile(QStringLiteral("zShortcuts.ini"),
                    "[Shortcuts]\r\nMax=3\r\n[Profiles]\r\nProfile2=Anna\r\nProfile4=\r\n");
    f.writeDataFile(QStringLiteral("Profiles.ini"),
                    "[Profiles]\r\nProfile1=Kept\r\nProfile2=Old\r\n");
    f.form.Form_Load();
    EXPECT_EQ(f.readDataFile(QStringLiteral("Profiles.ini")),
              QByteArray("[Profiles]\r\nProfile1=Kept\r\nProfile2=Anna\r\n"));
    EXPECT_EQ(f.readDataFile(QStringLiteral("zShortcuts.ini")),
              QByteArray("[Shortcuts]\r\nMax=3\r\n[Profiles]\r\nProfile2=\r\nProfile4=\r\n"));

    // A second start finds nothing left to move and changes nothing.
    f.writeDataFile(QStringLiteral("Profiles.ini"), "[Profiles]\r\nProfile2=Renamed\r\n");
    FormFixture again;
    again.shell.appDataFolder = f.shell.appDataFolder;
    again.form.Form_Load();
    EXPECT_EQ(f.readDataFile(QStringLiteral("Profiles.ini")),
              QByteArray("[Profiles]\r\nProfile2=Renamed\r\n"));
}

TEST(Startup, ProfileNameStaysWhenItsNewFileCannotBeWritten)
{
    FormFixture f;
    f.writeDataFile(QStringLiteral("zShortcuts.ini"), "[Profiles]\r\nProfile1=Bo\r\n");
    QDir(f.dataFolder()).mkdir(QStringLiteral("Profiles.ini"));
    f.form.Form_Load();
    EXPECT_EQ(f.readDataFile(QStringLiteral("zShortcuts.ini")),
              QByteArray("[Profiles]\r\nProfile1=Bo\r\n"));
}
} // namespace

namespace {
TEST(Startup, WindowsAlreadyOpenAreTakenUpAndLaterOnesFollowed)
{
    FormFixture f;
    auto first = f.shellWindows.open();
    auto broken = f.shellWindows.open();
    broken->close(); // listed but not answering: the first pass ends there, silently
    f.form.Form_Load();
    EXPECT_EQ(f.form.tracking().upperBound(), 1);
    EXPECT_EQ(f.form.tracking().holder(1)->InternetExplorer(), first);
    EXPECT_TRUE(f.boxes.shown.empty());

    f.shellWindows.close(broken);
    auto later = f.shellWindows.open();
    EXPECT_EQ(f.form.tracking().upperBound(), 2);
    EXPECT_EQ(f.form.tracking().holder(2)->InternetExplorer(), later);
}
} // namespace

// Names, addresses and telephone numbers are the user's alone: a new data folder and its files
// are made so, an older one is tightened at start-up, and nothing is ever opened up.
TEST(Startup, PersonalDataIsTheUsersAlone)
{
    using P = QFileDevice;
    const P::Permissions groupOrOther =
        P::ReadGroup | P::WriteGroup | P::ExeGroup | P::ReadOther | P::WriteOther | P::ExeOther;
    const auto open = [&](const QString& path) {
        return int(QFile::permissions(path) & groupOrOther);
    };

    FormFixture fresh;
    fresh.form.Form_Load();
    fresh.form.valueStore().SetValue(QStringLiteral("http://prizes.example/"), "phone", "555 0100");
    EXPECT_EQ(open(fresh.dataFolder()), 0);
    for (const QFileInfo& file : QDir(fresh.dataFolder()).entryInfoList(QDir::Files)) {
        EXPECT_EQ(open(file.filePath()), 0) << file.fileName().toStdString();
        EXPECT_TRUE(file.permissions() & P::WriteOwner) << file.fileName().toStdString();
    }

    FormFixture older;
    QDir().mkpath(older.dataFolder());
    const QString any = older.dataFile(QStringLiteral("zAny.ini"));
    const QString kept = older.dataFile(QStringLiteral("readonly.ini"));
    for (const QString& file : {any, kept}) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("[Any]\r\nfname=Ann\r\n");
    }
    QFile::setPermissions(older.dataFolder(), P::ReadOwner | P::WriteOwner | P::ExeOwner |
                                                  P::ReadGroup | P::ExeGroup | P::ReadOther |
                                                  P::ExeOther);
    QFile::setPermissions(any, P::ReadOwner | P::WriteOwner | P::ReadGroup | P::ReadOther);
    QFile::setPermissions(kept, P::ReadOwner | P::ReadGroup | P::ReadOther);
    older.form.Form_Load();
    EXPECT_EQ(open(older.dataFolder()), 0);
    EXPECT_EQ(open(any), 0);
    EXPECT_EQ(open(kept), 0);
    EXPECT_FALSE(QFile::permissions(kept) & P::WriteOwner); // tightened, never opened up
    EXPECT_EQ(older.form.valueStore().GetValue(QStringLiteral("http://a/"), "fname", {}),
              QStringLiteral("Ann"));
}
