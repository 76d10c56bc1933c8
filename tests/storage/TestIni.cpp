// ReadINI / WriteINI over real files, SameText and the profile prefixes.
#include "DataLocation.h"
#include "Ini.h"
#include "IniFileStore.h"
#include "VbText.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class TestIni : public ::testing::Test
{
protected:
    QString path(const QString& name = u"zAny.ini"_s) const
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
        {u"  abc  "_s, u"abc"_s},
        {long300, long300.left(255)},
        {u" "_s + QString(254, QLatin1Char('y')) + u"z  tail"_s,
         QString(254, QLatin1Char('y')) + u"z"_s},
        // The cut falls inside the last character: it goes whole.
        {QString(254, QLatin1Char('x')) + QString::fromUtf8("\U0001F3C6"),
         QString(254, QLatin1Char('x'))},
    };
    for (const Case& c : cases) {
        m_ini.WriteINI(u"Any"_s, u"Key"_s, c.written, path());
        EXPECT_EQ(m_ini.ReadINI(u"Any"_s, u"Key"_s, {}, path()), c.readBack)
            << c.written.toStdString();
    }
}

TEST_F(TestIni, EmptyValueIsNotMissingButMissingGivesTrimmedDefault)
{
    m_ini.WriteINI(u"S"_s, u"Empty"_s, QString(), path());
    EXPECT_EQ(m_ini.ReadINI(u"S"_s, u"Empty"_s, u"dflt"_s, path()), QString());
    EXPECT_EQ(m_ini.ReadINI(u"S"_s, u"Missing"_s, u"  dflt "_s, path()), u"dflt"_s);
    EXPECT_EQ(m_ini.ReadINI(u"Other"_s, u"Empty"_s, u"d"_s, path()), u"d"_s);
    EXPECT_EQ(m_ini.ReadINI(u"S"_s, u"Empty"_s, u"d"_s, path(u"nofile.ini"_s)), u"d"_s);
}

TEST_F(TestIni, NoFolderIsCreated)
{
    const QString inMissingFolder = m_dir.path() + u"/gone/zAny.ini"_s;
    EXPECT_EQ(m_ini.WriteINI(u"Any"_s, u"k"_s, u"v"_s, inMissingFolder), 0);
    EXPECT_FALSE(QFile::exists(m_dir.path() + u"/gone"_s));
}

} // namespace
