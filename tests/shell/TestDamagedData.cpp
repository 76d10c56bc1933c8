// Data folders as they are found after crashes, disk trouble or other programs: the bar starts,
// shows what it can read and keeps every byte it was not asked to change.
#include "FormFixture.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
const QByteArray GoodShortcuts =
    "[Shortcuts]\r\nMax=2\r\n[Shortcut1]\r\nTitle=First\r\nURL=http://first.example/\r\n"
    "[Shortcut2]\r\nTitle=Second\r\nURL=http://second.example/\r\n";
const QByteArray GoodAny = "[Any]\r\nfname=Ann\r\n";

QByteArray garbage(int size)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator random(size);
    for (char& byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

// One [Any] section of 50 MB: years of remembered fields, the user's own value at its end.
QByteArray hugeAny()
{
    QByteArray bytes = "[Any]\r\n";
    const QByteArray filler(500, 'x');
    for (int i = 0; bytes.size() < 50 * 1024 * 1024; ++i)
        bytes += "field" + QByteArray::number(i) + "=" + filler + "\r\n";
    return bytes + "fname=Ann\r\n";
}

struct Damage
{
    const char* name;
    // Made when the case runs: the large ones are not built just to list the tests.
    QByteArray (*shortcuts)(); // empty: a folder stands where the file should be
    QByteArray (*any)();
    bool readOnlyFolder = false;
    QStringList titles; // what the list shows
    QString fname;      // what a page's "fname" field is filled with
};

class TestDamagedData : public ::testing::TestWithParam<Damage>
{
};

TEST_P(TestDamagedData, TheBarStartsShowsWhatItCanAndKeepsTheRest)
{
    const Damage& damage = GetParam();
    FormFixture f;
    const QByteArray shortcuts = damage.shortcuts();
    if (shortcuts.isEmpty())
        QDir().mkpath(f.dataFile("zShortcuts.ini"));
    else
        f.writeDataFile("zShortcuts.ini", shortcuts);
    f.writeDataFile("zAny.ini", damage.any());
    f.writeDataFile("zSITE.EXAMPLE!.ini", "[URL]\r\nLastVisit=1/2/2020\r\n");
    const QStringList files = QDir(f.dataFolder()).entryList(QDir::Files);
    if (damage.readOnlyFolder)
        QFile::setPermissions(f.dataFolder(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);

    ASSERT_NE(f.form.Form_Load(), frmMain::LoadResult::End);
    ASSERT_TRUE(f.form.ShortcutsFile().endsWith(QLatin1String("zShortcuts.ini")));
    QStringList titles;
    for (int row = 0; row < f.form.lvShortcuts.count(); ++row)
        titles << f.form.lvShortcuts.row(row).text;
    EXPECT_EQ(titles, damage.titles);
    EXPECT_EQ(f.form.valueStore().GetValue("http://site.example/", "fname", "<none>"),
              damage.fname);

    // The bar goes on working: a visit and a typed value are kept where they can be.
    QMap<QString, QByteArray> before;
    for (const QString& name : files)
        before.insert(name, f.readDataFile(name));
    f.form.siteFiles().SetLastVisit("http://site.example/");
    f.form.valueStore().SetValue("http://other.example/", "email", "ann@example.com");
    for (const QString& name : files) {
        const QByteArray now = f.readDataFile(name);
        if (name == QLatin1String("zAny.ini")) {
            EXPECT_TRUE(now.startsWith(before[name]) && now.endsWith("email=ann@example.com\r\n"))
                << damage.name;
        } else if (name != QLatin1String("zSITE.EXAMPLE!.ini")) {
            EXPECT_EQ(now, before[name]) << name.toStdString();
        }
    }
    EXPECT_NE(f.readDataFile("zSITE.EXAMPLE!.ini"), before["zSITE.EXAMPLE!.ini"]);
    EXPECT_EQ(QFileInfo::exists(f.dataFile("zOTHER.EXAMPLE!.ini")), !damage.readOnlyFolder);
    EXPECT_TRUE(f.boxes.shown.empty())
        << (f.boxes.shown.empty() ? "" : f.boxes.shown[0].text.toStdString());
    QFile::setPermissions(f.dataFolder(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

const QStringList Both = {u"First"_s, u"Second"_s};

QByteArray goodShortcuts()
{
    return GoodShortcuts;
}
QByteArray goodAny()
{
    return GoodAny;
}

INSTANTIATE_TEST_SUITE_P(
    Damages, TestDamagedData,
    ::testing::Values(
        Damage{"garbage between shortcuts",
               [] {
                   const qsizetype second = GoodShortcuts.indexOf("[Shortcut2]");
                   return GoodShortcuts.left(second) + garbage(64 * 1024) + "\r\n" +
                          GoodShortcuts.mid(second);
               },
               goodAny, false, Both, "Ann"},
        Damage{"Max at the largest number",
               [] { return QByteArray(GoodShortcuts).replace("Max=2", "Max=2147483647"); }, goodAny,
               false, Both, "Ann"},
        Damage{"shortcuts file unreadable", [] { return QByteArray(); }, goodAny, false, {}, "Ann"},
        Damage{"Any.ini of binary garbage", goodShortcuts, [] { return garbage(256 * 1024); },
               false, Both, "<none>"},
        Damage{"Any.ini of 50 MB", goodShortcuts, hugeAny, false, Both, "Ann"},
        Damage{"read-only data folder", goodShortcuts, goodAny, true, Both, "Ann"}),
    [](const ::testing::TestParamInfo<Damage>& info) {
        QString name = QString::fromLatin1(info.param.name);
        name.replace(QRegularExpression(u"[^A-Za-z0-9]"_s), QString());
        return name.toStdString();
    });
} // namespace
