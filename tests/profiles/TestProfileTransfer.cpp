// A profile carried in one file: whole into another profile on a fresh data folder, merged into
// one that has data, and refused (nothing changed) when the file is damaged, foreign or hostile.
#include "Ini.h"
#include "IniFileStore.h"
#include "ProfileTransfer.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class TestProfileTransfer : public ::testing::Test
{
protected:
    ProfileTransfer::Profile profile(const QTemporaryDir& folder, const char* prefix, int number)
    {
        return {folder.path(), QLatin1String(prefix), folder.path() + u"/Profiles.ini"_s, number};
    }
    static void write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    // Every file of the folder with its bytes.
    static QMap<QString, QByteArray> files(const QTemporaryDir& folder)
    {
        QMap<QString, QByteArray> all;
        for (const QString& name : QDir(folder.path()).entryList(QDir::Files)) {
            QFile file(folder.path() + u'/' + name);
            file.open(QIODevice::ReadOnly);
            all.insert(name, file.readAll());
        }
        return all;
    }

    QTemporaryDir from;
    QTemporaryDir to;
    IniFileStore store;
    Ini ini{store};
    ProfileTransfer transfer{ini};
};

TEST_F(TestProfileTransfer, AWholeProfileArrivesByteForByteInAnotherProfile)
{
    QByteArray shortcuts = "[Shortcuts]\r\nMax=300\r\n";
    for (int n = 1; n <= 300; ++n)
        shortcuts += "[Shortcut" + QByteArray::number(n) + "]\r\nTitle=Contest " +
                     QByteArray::number(n) + "\r\nURL=http://site" + QByteArray::number(n) +
                     ".example/\r\nRemind=1\r\n";
    write(from.path() + u"/zShortcuts.ini"_s, shortcuts);
    write(from.path() + u"/zAny.ini"_s, "\xEF\xBB\xBF[Any]\r\nfname=Zoë\r\n[Meaning]\r\ntel=1\r\n");
    write(from.path() + u"/vAny.ini"_s, "[Any]\r\nfname=another profile's\r\n");
    for (int n = 1; n <= 500; ++n) {
        QByteArray site = "[http://site" + QByteArray::number(n) + ".example/]\r\n";
        for (const char* key : {"fname", "lname", "email", "note"})
            site += QByteArray(key) + "=" + key + QByteArray::number(n) + "\r\n";
        site += "[URL]\r\nLastVisit=11/2" + QByteArray::number(n % 10) +
                "/2026 9:00:00 AM\r\nVisits=" + QByteArray::number(n) + "\r\n";
        write(from.path() + u"/zSITE%1.EXAMPLE!.ini"_s.arg(n), site);
    }
    const QByteArray exported = transfer.exportProfile(profile(from, "z", 1), u"Ann"_s);

    const auto plan = transfer.examine(exported, profile(to, "w", 3));
    EXPECT_EQ(plan.refusal, QString());
    EXPECT_EQ(plan.newFiles, 502);
    EXPECT_EQ(transfer.importProfile(exported, profile(to, "w", 3), false), QString());
    auto arrived = files(to);
    EXPECT_EQ(arrived.take(u"Profiles.ini"_s), "[Profiles]\r\nProfile3=Ann\r\n");
    QMap<QString, QByteArray> sent = files(from);
    sent.remove(u"vAny.ini"_s);
    ASSERT_EQ(arrived.size(), sent.size());
    for (auto file = sent.cbegin(); file != sent.cend(); ++file)
        EXPECT_EQ(arrived.value(u"w"_s + file.key().mid(1)), file.value())
            << file.key().toStdString();
}

TEST_F(TestProfileTransfer, AProfileWithDataKeepsItsOwnUnlessTheFilesValuesAreTaken)
{
    const QString site = u"/zPRIZES.EXAMPLE!.ini"_s;
    write(from.path() + site, "[http://prizes.example/]\r\nfname=Ann\r\nemail=new@example.org\r\n"
                              "[URL]\r\nLastVisit=11/24/2026 9:00:00 AM\r\nVisits=2\r\n");
    write(from.path() + u"/zShortcuts.ini"_s,
          "[Shortcuts]\r\nMax=2\r\n[Shortcut1]\r\nTitle=spring DRAW\r\nRemind=2\r\n"
          "[Shortcut2]\r\nTitle=New one\r\nURL=http://new.example/\r\n");
    for (const bool takeImported : {false, true}) {
        QTemporaryDir target;
        write(target.path() + site, "[http://prizes.example/]\r\nemail=old@example.org\r\n"
                                    "[URL]\r\nLastVisit=11/20/2026 9:00:00 AM\r\nVisits=5\r\n");
        write(target.path() + u"/zShortcuts.ini"_s,
              "[Shortcuts]\r\nMax=3\r\n[Shortcut1]\r\nTitle=Spring draw\r\nRemind=1\r\n"
              "[Shortcut3]\r\nTitle=Kept\r\n");
        write(target.path() + u"/Profiles.ini"_s, "[Profiles]\r\nProfile1=Bo\r\n");
        const QByteArray exported = transfer.exportProfile(profile(from, "z", 1), u"Ann"_s);
        const auto plan = transfer.examine(exported, profile(target, "z", 1));
        EXPECT_EQ(plan.differing, 2); // the e-mail and the reminder
        EXPECT_EQ(plan.added, 2);     // the first name and the new shortcut
        ASSERT_EQ(transfer.importProfile(exported, profile(target, "z", 1), takeImported),
                  QString());
        const auto read = [&](const QString& file, const char* section, const char* key) {
            return ini.ReadINI(QLatin1String(section), QLatin1String(key), u"-"_s,
                               target.path() + file);
        };
        const char* email = takeImported ? "new@example.org" : "old@example.org";
        EXPECT_EQ(read(site, "http://prizes.example/", "email"), QLatin1String(email));
        EXPECT_EQ(read(site, "http://prizes.example/", "fname"), u"Ann"_s);
        // The later visit, the larger count.
        EXPECT_EQ(read(site, "URL", "LastVisit"), u"11/24/2026 9:00:00 AM"_s);
        EXPECT_EQ(read(site, "URL", "Visits"), u"5"_s);
        const QString shortcuts = u"/zShortcuts.ini"_s;
        EXPECT_EQ(read(shortcuts, "Shortcut1", "Remind"), takeImported ? u"2"_s : u"1"_s);
        EXPECT_EQ(read(shortcuts, "Shortcut2", "Title"), u"New one"_s);
        EXPECT_EQ(read(shortcuts, "Shortcut3", "Title"), u"Kept"_s);
        EXPECT_EQ(read(u"/Profiles.ini"_s, "Profiles", "Profile1"), u"Bo"_s);
    }
}

// What is not a whole profile of ours changes nothing; hostile names inside a profile's files
// stay the names of their own entries.
TEST_F(TestProfileTransfer, DamagedForeignOrHostileFilesChangeNothing)
{
    write(from.path() + u"/zA.EXAMPLE!.ini"_s, "[http://a.example/]\r\nk=v\r\n");
    const QByteArray good = transfer.exportProfile(profile(from, "z", 1), u"Ann"_s);
    const auto with = [&](const QJsonObject& file, const QString& name = u"Ann"_s) {
        QJsonObject root = QJsonDocument::fromJson(good).object();
        root.insert("profile", name);
        root.insert("files", QJsonArray{file});
        return QJsonDocument(root).toJson();
    };
    const auto site = [](const QString& name, const QByteArray& bytes) {
        return QJsonObject{{"kind", "site"}, {"name", name}, {"bytes", QString(bytes.toBase64())}};
    };
    const std::pair<const char*, QByteArray> refused[] = {
        {"truncated", good.left(good.size() / 2)},
        {"another program's", R"({"name": "settings", "files": []})"},
        {"not JSON", "\x89PNG\r\n\x1a\n"},
        {"newer", QByteArray(good).replace("\"version\": 1", "\"version\": 2")},
        {"a path", with(site(u"../zAny.ini"_s, "[Any]\r\n"))},
        {"a name of 100 KB", with(site(QString(100 * 1024, u'A') + u".ini"_s, "[A]\r\n"))},
        {"bad base64", with(QJsonObject{{"kind", "site"}, {"name", "A.ini"}, {"bytes", "@@"}})},
        {"a profile name with a line break", with(site(u"A.ini"_s, ""), u"Ann\r\n[Profiles]"_s)},
    };
    write(to.path() + u"/zAny.ini"_s, "[Any]\r\nfname=Bo\r\n");
    const auto before = files(to);
    for (const auto& [what, document] : refused) {
        EXPECT_NE(transfer.examine(document, profile(to, "z", 1)).refusal, QString()) << what;
        EXPECT_NE(transfer.importProfile(document, profile(to, "z", 1), true), QString()) << what;
        EXPECT_EQ(files(to), before) << what;
    }

    const QString key100k(100 * 1024, u'k');
    const QByteArray hostile = "[http://a.example/x%5Dy]\r\nuser[email]=a\r\n%5BAny]=b\r\n" +
                               key100k.toLatin1() + "=c\r\n";
    write(to.path() + u"/zA.EXAMPLE!.ini"_s, "[http://a.example/x%5Dy]\r\nold=1\r\n");
    ASSERT_EQ(
        transfer.importProfile(with(site(u"A.EXAMPLE!.ini"_s, hostile)), profile(to, "z", 1), true),
        QString());
    const QString merged = to.path() + u"/zA.EXAMPLE!.ini"_s;
    EXPECT_EQ(ini.SectionNames(merged), QStringList{u"http://a.example/x%5Dy"_s});
    EXPECT_EQ(ini.StoredEntries(u"http://a.example/x%5Dy"_s, merged).size(), 4);
    EXPECT_EQ(ini.ReadINI(u"http://a.example/x]y"_s, key100k, {}, merged), u"c"_s);
    EXPECT_EQ(ini.ReadINI(u"Any"_s, u"fname"_s, {}, to.path() + u"/zAny.ini"_s), u"Bo"_s);
}
} // namespace
