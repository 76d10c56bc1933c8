// The start-up sequence: instance rule, browser warnings, data folder and the one-time moves.
#include "FormFixture.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
const QString OldBrowserWarning =
    u"Tolvane has determined that you are running a version of Microsoft Internet Explorer older "
    "than 5.0.  You should upgrade to the latest version of Internet Explorer in order for "
    "Tolvane to work correctly."_s;
const QString NotDefaultWarning =
    u"Internet Explorer is not your default web browser.  Until you set Internet Explorer to be "
    "your default web browser, Tolvane will not work properly."_s;

QStringList texts(const FakeMessageBoxes& boxes)
{
    QStringList shown;
    for (const auto& box : boxes.shown)
        shown << box.text;
    return shown;
}

TEST(Startup, BrowserChecksWarnOnlyWhenTheirConditionHolds)
{
    const std::optional<DllVersion> none;
    struct Case
    {
        const char* name;
        std::optional<DllVersion> version;
        const char* associated;
        bool tempFails, old, notDefault;
    } cases[] = {
        {"5.0 is enough", DllVersion{5, 0}, "C:\\IEXPLORE.EXE", false, false, false},
        {"6.0, lower case", DllVersion{6, 0}, "c:\\files\\iexplore.exe", false, false, false},
        {"4.72 is old", DllVersion{4, 72}, "C:\\IEXPLORE.EXE", false, true, false},
        {"no version", none, "C:\\IEXPLORE.EXE", false, true, false},
        {"5.50 reads 5.5", DllVersion{5, 50}, "x:\\iexplore.exe", false, false, false},
        {"other browser", DllVersion{6, 0}, "C:\\firefox.exe", false, false, true},
        {"no association", DllVersion{6, 0}, "", false, false, true},
        {"no temp folder", DllVersion{6, 0}, "C:\\IEXPLORE.EXE", true, false, true},
        {"both", DllVersion{4, 0}, "", false, true, true},
    };
    for (const Case& c : cases) {
        FormFixture f;
        f.shell.version = c.version;
        f.shell.tempFolderFails = c.tempFails;
        f.shell.findExecutable = [&](const QString&) { return QString::fromLatin1(c.associated); };
        ASSERT_EQ(f.form.Form_Load(), frmMain::LoadResult::Show) << c.name;
        QStringList warnings;
        for (const auto& [warned, text] :
             {std::pair{c.old, OldBrowserWarning}, std::pair{c.notDefault, NotDefaultWarning}})
            warnings += warned ? QStringList{text} : QStringList{};
        EXPECT_EQ(texts(f.boxes), warnings) << c.name;
        for (const auto& box : f.boxes.shown)
            EXPECT_TRUE(box.icon == MsgIcon::Exclamation && box.title == QLatin1String("Tolvane"));
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
        return u"iexplore.exe"_s;
    };
    f.form.Form_Load();
    ASSERT_EQ(f.shell.filesAskedFor.size(), 1);
    EXPECT_EQ(f.shell.filesAskedFor.first(), f.shell.tempFolder + u"/Test143025.html"_s);
    EXPECT_TRUE(existedDuringLookup);
    EXPECT_EQ(content, QByteArray("\r\n"));
    EXPECT_FALSE(QFile::exists(f.shell.filesAskedFor.first()));
}

TEST(Startup, SecondInstanceEndsSilentlyTouchingNothing)
{
    FormFixture f;
    f.shell.anotherInstance = true;
    f.shell.version = std::nullopt;
    f.writeDataFile(u"Any.ini"_s, "[Any]\r\nname=Ann\r\n");
    EXPECT_EQ(f.form.Form_Load(), frmMain::LoadResult::End);
    EXPECT_TRUE(f.boxes.shown.empty());
    EXPECT_TRUE(f.shell.filesAskedFor.isEmpty());
    EXPECT_TRUE(QFile::exists(f.dataFile(u"Any.ini"_s)));
    EXPECT_FALSE(QFile::exists(f.dataFile(u"zAny.ini"_s)));
    EXPECT_TRUE(f.settings.values.isEmpty());
}

TEST(Startup, DataFolderIsMadeUnderAppDataOrElseBesideTheProgram)
{
    FormFixture withAppData;
    withAppData.form.Form_Load();
    EXPECT_EQ(withAppData.form.DataFolder(), withAppData.dataFolder());
    EXPECT_TRUE(QFileInfo(withAppData.dataFolder()).isDir());
    EXPECT_EQ(withAppData.form.ProfilesFile(), withAppData.dataFile(u"Profiles.ini"_s));
    EXPECT_EQ(withAppData.form.ShortcutsFile(), withAppData.dataFile(u"zShortcuts.ini"_s));

    FormFixture without;
    without.shell.appDataFolder = std::nullopt;
    without.form.Form_Load();
    EXPECT_EQ(without.form.DataFolder(), without.shell.programFolder + u"/Tolvane Data"_s);
    EXPECT_TRUE(QFileInfo(without.form.DataFolder()).isDir());
}

TEST(Startup, DataFolderThatCannotBeFoundEndsWithTheCriticalMessage)
{
    FormFixture f;
    f.shell.appDataFails = true;
    EXPECT_EQ(f.form.Form_Load(), frmMain::LoadResult::End);
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(f.boxes.shown[0].text, u"Tolvane is unable to find the application data folder."_s);
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
        QStringList files = QDir(f.dataFolder()).entryList({u"*.ini"_s}, QDir::Files);
        files.sort();
        files.removeAll(u"Profiles.ini"_s);
        EXPECT_EQ(files, c.after) << c.name;
        if (c.present.contains(u"zAny.ini"_s)) {
            EXPECT_EQ(f.readDataFile(u"zAny.ini"_s), QByteArray("[X]\r\nfrom=zAny.ini\r\n"));
        }
    }
}

TEST(Startup, ProfileNamesMoveToProfilesIniOnce)
{
    FormFixture f;
    f.writeDataFile(u"zShortcuts.ini"_s,
                    "[Shortcuts]\r\nMax=3\r\n[Profiles]\r\nProfile2=Anna\r\nProfile4=\r\n"
                    "Profile5=Eve\r\n");
    f.writeDataFile(u"Profiles.ini"_s, "[Profiles]\r\nProfile1=Kept\r\nProfile2=Old\r\n");
    f.form.Form_Load();
    EXPECT_EQ(f.readDataFile(u"Profiles.ini"_s),
              QByteArray("[Profiles]\r\nProfile1=Kept\r\nProfile2=Anna\r\nProfile5=Eve\r\n"));
    EXPECT_EQ(f.readDataFile(u"zShortcuts.ini"_s),
              QByteArray("[Shortcuts]\r\nMax=3\r\n[Profiles]\r\nProfile2=\r\nProfile4=\r\n"
                         "Profile5=\r\n"));

    // A second start finds nothing left to move and changes nothing.
    f.writeDataFile(u"Profiles.ini"_s, "[Profiles]\r\nProfile2=Renamed\r\n");
    FormFixture again;
    again.shell.appDataFolder = f.shell.appDataFolder;
    again.form.Form_Load();
    EXPECT_EQ(f.readDataFile(u"Profiles.ini"_s), QByteArray("[Profiles]\r\nProfile2=Renamed\r\n"));
}

TEST(Startup, ProfileNameStaysWhenItsNewFileCannotBeWritten)
{
    FormFixture f;
    f.writeDataFile(u"zShortcuts.ini"_s, "[Profiles]\r\nProfile1=Bo\r\n");
    QDir(f.dataFolder()).mkdir(u"Profiles.ini"_s);
    f.form.Form_Load();
    EXPECT_EQ(f.readDataFile(u"zShortcuts.ini"_s), QByteArray("[Profiles]\r\nProfile1=Bo\r\n"));
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
    fresh.form.valueStore().SetValue(u"http://prizes.example/"_s, "phone", "555 0100");
    EXPECT_EQ(open(fresh.dataFolder()), 0);
    for (const QFileInfo& file : QDir(fresh.dataFolder()).entryInfoList(QDir::Files)) {
        EXPECT_EQ(open(file.filePath()), 0) << file.fileName().toStdString();
        EXPECT_TRUE(file.permissions() & P::WriteOwner) << file.fileName().toStdString();
    }

    FormFixture older;
    QDir().mkpath(older.dataFolder());
    const QString any = older.dataFile(u"zAny.ini"_s);
    const QString kept = older.dataFile(u"readonly.ini"_s);
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
    EXPECT_EQ(older.form.valueStore().GetValue(u"http://a/"_s, "fname", {}), u"Ann"_s);
}
