// The INI files on disk: encoding, line ends, atomic replace, the cache and refused writes.
#include "IniFileStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class TestIniFileStore : public ::testing::Test
{
protected:
    QString path() const { return m_dir.path() + u"/site.ini"_s; }
    void writeRaw(const QByteArray& bytes) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }
    QByteArray readRaw() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    std::optional<QString> read(const QString& key)
    {
        return m_store.readEntry(path(), u"S"_s, key);
    }
    bool write(const QString& key, const QString& value)
    {
        return m_store.writeEntry(path(), u"S"_s, key, value);
    }

    QTemporaryDir m_dir;
    IniFileStore m_store;
};

// Names and values in any script come back exactly. A file from the Windows release keeps its
// bytes while what is written fits its code page; the first entry that does not turns the
// whole file into UTF-8 with a byte-order mark, and every entry stays readable.
TEST_F(TestIniFileStore, TextInAnyScriptIsKeptAndTheFileSwitchesToUtf8OnlyWhenItMust)
{
    const QByteArray windowsFile = "[S]\r\nname=Ren\xe9"
                                   "e \x80 5\r\n; Zo\xeb's note\r\n";
    writeRaw(windowsFile);
    ASSERT_TRUE(write(u"city"_s, u"Z\u00fcrich"_s));
    EXPECT_EQ(readRaw(), QByteArray("[S]\r\nname=Ren\xe9"
                                    "e \x80 5\r\ncity=Z\xfcrich\r\n; Zo\xeb's note\r\n"));

    const std::pair<const char*, const char*> scripts[] = {
        {"Polish", "Zo\u00eb \u0141ukasz"},       {"Greek", "\u0395\u03bb\u03ad\u03bd\u03b7"},
        {"Cyrillic", "\u0410\u043d\u043d\u0430"}, {"Arabic", "\u0633\u0627\u0631\u0629"},
        {"CJK", "\u6771\u4eac \u540d\u524d"},     {"emoji", "\U0001F3C6 winner"},
    };
    for (const auto& [script, text] : scripts) {
        const QString value = QString::fromUtf8(text);
        ASSERT_TRUE(write(value + u" key"_s, value)) << script;
        EXPECT_EQ(read(value + u" key"_s), value) << script;
    }
    const QByteArray bytes = readRaw();
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF[S]\r\nname=Ren\xc3\xa9"
                                 "e \xe2\x82\xac 5\r\n"))
        << bytes.toStdString();
    EXPECT_EQ(read(u"name"_s), u"Ren\u00e9e \u20ac 5"_s);
    EXPECT_EQ(read(u"city"_s), u"Z\u00fcrich"_s);
    // Once UTF-8, it stays so, whatever is written next.
    ASSERT_TRUE(write(u"plain"_s, u"ascii"_s));
    EXPECT_TRUE(readRaw().startsWith("\xEF\xBB\xBF"));
    EXPECT_EQ(read(QString::fromUtf8("\U0001F3C6 winner key")),
              QString::fromUtf8("\U0001F3C6 winner"));
}

// Damaged bytes read without a fault and cost no other entry.
TEST_F(TestIniFileStore, InvalidUtf8AndStrayByteOrderMarksLoseNoOtherEntry)
{
    const std::pair<const char*, QByteArray> files[] = {
        {"invalid UTF-8 after the mark", "\xEF\xBB\xBF[S]\r\nbad=\xC3\x28\xFF\r\nk=v\r\n"},
        {"a mark in the middle", "[S]\r\n\xEF\xBB\xBFodd=1\r\nk=v\r\n"},
        {"two marks", "\xEF\xBB\xBF\xEF\xBB\xBF[T]\r\n[S]\r\nk=v\r\n"},
        {"a cut sequence at the end", "\xEF\xBB\xBF[S]\r\nk=v\r\nlast=\xE6\x9D"},
    };
    for (const auto& [what, bytes] : files) {
        writeRaw(bytes);
        EXPECT_EQ(read(u"k"_s), u"v"_s) << what;
        ASSERT_TRUE(write(u"new"_s, QString::fromUtf8("\u00e9t\u00e9"))) << what;
        EXPECT_EQ(read(u"k"_s), u"v"_s) << what;
        EXPECT_EQ(read(u"new"_s), QString::fromUtf8("\u00e9t\u00e9")) << what;
    }
}

TEST_F(TestIniFileStore, KeepsAByteOrderMarkAndReadsPastIt)
{
    writeRaw("\xEF\xBB\xBF[S]\nk=v\n");
    EXPECT_EQ(read(u"k"_s), u"v"_s);
    ASSERT_TRUE(write(u"j"_s, u"w"_s));
    EXPECT_EQ(readRaw(), QByteArray("\xEF\xBB\xBF[S]\nk=v\nj=w\r\n"));
}

TEST_F(TestIniFileStore, SeesChangesMadeByOtherProgramsEvenOfTheSameSize)
{
    writeRaw("[S]\nk=1\n");
    EXPECT_EQ(read(u"k"_s), u"1"_s);
    writeRaw("[S]\nk=2\n");
    EXPECT_EQ(read(u"k"_s), u"2"_s);
    QFile::remove(path());
    EXPECT_EQ(read(u"k"_s), std::nullopt);
    writeRaw("[S]\nk=3\n");
    ASSERT_TRUE(write(u"j"_s, u"x"_s));
    EXPECT_EQ(readRaw(), QByteArray("[S]\nk=3\nj=x\r\n"));
}

TEST_F(TestIniFileStore, ReadOnlyFileIsLeftAsItWas)
{
    writeRaw("[S]\nk=1\n");
    QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::ReadGroup);
    EXPECT_FALSE(write(u"k"_s, u"2"_s));
    EXPECT_EQ(readRaw(), QByteArray("[S]\nk=1\n"));
    EXPECT_EQ(read(u"k"_s), u"1"_s);
    QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

TEST_F(TestIniFileStore, UnreadablePathReadsAsMissingAndIsNeverReplaced)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(u"site.ini"_s));
    EXPECT_EQ(read(u"k"_s), std::nullopt);
    EXPECT_FALSE(write(u"k"_s, u"v"_s));
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(TestIniFileStore, RefusedWriteLeavesEveryOtherEntry)
{
    writeRaw("[S]\r\nname=Ann\r\ncity=Oslo\r\n");
    EXPECT_FALSE(write(u"x\r\nname"_s, u"Eve"_s));
    EXPECT_FALSE(write(u"city"_s, u"A\nname=Eve"_s));
    EXPECT_EQ(readRaw(), QByteArray("[S]\r\nname=Ann\r\ncity=Oslo\r\n"));
}

TEST_F(TestIniFileStore, ManyWritesInARowAllLand)
{
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(write(u"k%1"_s.arg(i % 50), QString::number(i)));
    IniFileStore fresh;
    for (int i = 150; i < 200; ++i)
        EXPECT_EQ(fresh.readEntry(path(), u"S"_s, u"k%1"_s.arg(i % 50)), QString::number(i));
}
} // namespace
