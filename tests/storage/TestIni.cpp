// ReadINI / WriteINI over real files, SameText and the profile prefixes.
#include "DataLocation.h"
#include "Ini.h"
#include "IniFileStore.h"
#include "VbText.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
class TestIni : public ::testing::Test
{
protected:
    QString path(const QString& name = QStringLiteral("zAny.ini")) const
    {
        return m_dir.path() + QLatin1Char('/') + name;
    }

    QTemporaryDir m_dir;
    IniFileStore m_store;
    Ini m_ini{m_store};
};

TEST_F(TestIni, ValuesReadBackTrimmedAndCutAt255Characters)
{
    const QString long300 = QString(300, QLatin1Char('x'));
    struct Case
    {
        QString written;
        QString readBack;
    } cases[] = {
        {QStringLiteral("  abc  "), QStringLiteral("abc")},
        {long300, long300.left(255)},
        {QStringLiteral(" ") + QString(254, QLatin1Char('y')) + QStringLiteral("z  tail"),
         QString(254, QLatin1Char('y')) + QStringLiteral("z")},
        {QStringLiteral("a=b=c"), QStringLiteral("a=b=c")},
        {QStringLiteral("\"quoted\""), QStringLiteral("quoted")},
        {QStringLiteral("caf\u00e9 \u20ac"), QStringLiteral("caf\u00e9 \u20ac")},
        {QStringLiteral("\u4e2d"), QStringLiteral("\u4e2d")},
        // The cut falls inside the last character: it goes whole.
        {QString(254, QLatin1Char('x')) + QString::fromUtf8("\U0001F3C6"),
         QString(254, QLatin1Char('x'))},
    };
    for (const Case& c : cases) {
        m_ini.WriteINI(QStringLiteral("Any"), QStringLiteral("Key"), c.written, path());
        EXPECT_EQ(m_ini.ReadINI(QStringLiteral("Any"), QStringLiteral("Key"), {}, path()),
                  c.readBack)
            << c.written.toStdString();
    }
}

TEST_F(TestIni, EmptyValueIsNotMissingButMissingGivesTrimmedDefault)
{
    m_ini.WriteINI(QStringLiteral("S"), QStringLiteral("Empty"), QString(), path());
    EXPECT_EQ(
        m_ini.ReadINI(QStringLiteral("S"), QStringLiteral("Empty"), QStringLiteral("dflt"), path()),
        QString());
    EXPECT_EQ(m_ini.ReadINI(QStringLiteral("S"), QStringLiteral("Missing"),
                            QStringLiteral("  dflt "), path()),
              QStringLiteral("dflt"));
    EXPECT_EQ(m_ini.ReadINI(QStringLiteral("Other"), QStringLiteral("Empty"), QStringLiteral("d"),
                            path()),
              QStringLiteral("d"));
    EXPECT_EQ(m_ini.ReadINI(QStringLiteral("S"), QStringLiteral("Empty"), QStringLiteral("d"),
                            path(QStringLiteral("nofile.ini"))),
              QStringLiteral("d"));
}

TEST_F(TestIni, NoFolderIsCreated)
{
    const QString inMissingFolder = m_dir.path() + QStringLiteral("/gone/zAny.ini");
    EXPECT_EQ(m_ini.WriteINI(QStringLiteral("Any"), QStringLiteral("k"), QStringLiteral("v"),
                             inMissingFolder),
              0);
    EXPECT_FALSE(QFile::exists(m_dir.path() + QStringLiteral("/gone")));
}

TEST(SameText, ComparesUpperCasedAndTrimmedOfSpaces)
{
    struct Case
    {
        const char* a;
        const char* b;
        bool same;
    } cases[] = {
        {" Name ", "NAME", true},
        {"a b", "ab", false},
        {"", "  ", true},
        {"\tName", "Name", false},
        {"caf\xc3\xa9", "CAF\xc3\x89", true},
        {"x", "y", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SameText(QString::fromUtf8(c.a), QString::fromUtf8(c.b)), c.same)
            << c.a << "|" << c.b;
}

TEST(ProfilePrefixOf, MapsIndexesToLetters)
{
    const std::pair<int, const char*> cases[] = {{-1, "z"}, {-7, "z"}, {0, "z"}, {1, "v"}, {2, "w"},
                                                 {3, "x"},  {4, "y"},  {5, ""},  {99, ""}};
    for (const auto& [index, prefix] : cases)
        EXPECT_EQ(ProfilePrefixOf(index), QString::fromLatin1(prefix)) << index;
}
} // namespace
