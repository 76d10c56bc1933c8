// The INI files on disk: encoding, line ends, atomic replace, the cache and refused writes.
#include "IniFileStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
class TestIniFileStore : public ::testing::Test
{
protected:
    QString path() const { return m_dir.path() + QStringLiteral("/site.ini"); }
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
        return m_store.readEntry(path(), QStringLiteral("S"), key);
    }
    bool write(const QString& key, const QString& value)
    {
        return m_store.writeEntry(path(), QStringLiteral("S"), key, value);
    }

    QTemporaryDir m_dir;
    IniFileStore m_store;
};

TEST_F(TestIniFileStore, WritesWindows1252WithCrLf)
{
    ASSERT_TRUE(write(QStringLiteral("name"), QStringLiteral("Ren\u00e9e \u20ac \u4e2d")));
    EXPECT_EQ(readRaw(), QByteArray("[S]\r\nname=Ren\xe9" "e \x80 ?\r\n"));
    EXPECT_EQ(read(QStringLiteral("name")), QStringLiteral("Ren\u00e9e \u20ac ?"));
}

TEST_F(TestIniFileStore, KeepsAByteOrderMarkAndReadsPastIt)
{
    writeRaw("\xEF\xBB\xBF[S]\nk=v\n");
    EXPECT_EQ(read(QStringLiteral("k")), QStringLiteral("v"));
    ASSERT_TRUE(write(QStringLiteral("j"), QStringLiteral("w")));
    EXPECT_EQ(readRaw(), QByteArray("\xEF\xBB\xBF[S]\nk=v\nj=w\r\n"));
}

TEST_F(TestIniFileStore, SeesChangesMadeByOtherProgramsEvenOfTheSameSize)
{
    writeRaw("[S]\nk=1\n");
    EXPECT_EQ(read(QStringLiteral("k")), QStringLiteral("1"));
    writeRaw("[S]\nk=2\n");
    EXPECT_EQ(read(QStringLiteral("k")), QStringLiteral("2"));
    QFile::remove(path());
    EXPECT_EQ(read(QStringLiteral("k")), std::nullopt);
    writeRaw("[S]\nk=3\n");
    ASSERT_TRUE(write(QStringLiteral("j"), QStringLiteral("x")));
    EXPECT_EQ(readRaw(), QByteArray("[S]\nk=3\nj=x\r\n"));
}

TEST_F(TestIniFileStore, ReadOnlyFileIsLeftAsItWas)
{
    writeRaw("[S]\nk=1\n");
    QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::ReadGroup);
    EXPECT_FALSE(write(QStringLiteral("k"), QStringLiteral("2")));
    EXPECT_EQ(readRaw(), QByteArray("[S]\nk=1\n"));
    EXPECT_EQ(read(QStringLiteral("k")), QStringLiteral("1"));
    QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

TEST_F(TestIniFileStore, UnreadablePathReadsAsMissingAndIsNeverReplaced)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(QStringLiteral("site.ini")));
    EXPECT_EQ(read(QStringLiteral("k")), std::nullopt);
    EXPECT_FALSE(write(QStringLiteral("k"), QStringLiteral("v")));
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(TestIniFileStore, RefusedWriteLeavesEveryOtherEntry)
{
    writeRaw("[S]\r\nname=Ann\r\ncity=Oslo\r\n");
    EXPECT_FALSE(write(QStringLiteral("x\r\nname"), QStringLiteral("Eve")));
    EXPECT_FALSE(write(QStringLiteral("city"), QStringLiteral("A\nname=Eve")));
    EXPECT_EQ(readRaw(), QByteArray("[S]\r\nname=Ann\r\ncity=Oslo\r\n"));
}

TEST_F(TestIniFileStore, ManyWritesInARowAllLand)
{
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(write(QStringLiteral("k%1").arg(i % 50), QString::number(i)));
    IniFileStore fresh;
    for (int i = 150; i < 200; ++i)
        EXPECT_EQ(fresh.readEntry(path(), QStringLiteral("S"), QStringLiteral("k%1").arg(i % 50)),
                  QString::number(i));
}
} // namespace
