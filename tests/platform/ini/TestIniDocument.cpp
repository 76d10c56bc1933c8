// How INI text written by other programs is read, and how a write changes it.
#include "IniDocument.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
const QString Missing = u"<missing>"_s;

QString lookup(const QString& text, const QString& section, const QString& key)
{
    return IniDocument(text).value(section, key).value_or(Missing);
}

TEST(IniDocumentRead, FollowsTheWindowsRules)
{
    struct Case
    {
        const char* name;
        const char* text;
        const char* section;
        const char* key;
        const char* expected; // nullptr: missing
    } cases[] = {
        {"crlf", "[A]\r\nk=v\r\n", "A", "k", "v"},
        {"lf only", "[A]\nk=v\nj=w\n", "A", "j", "w"},
        {"cr only", "[A]\rk=v\rj=w", "A", "j", "w"},
        {"no trailing newline", "[A]\r\nk=last", "A", "k", "last"},
        {"blank lines", "\r\n[A]\r\n\r\n\r\nk=v\r\n\r\n", "A", "k", "v"},
        {"comment is no key", "[A]\r\n;k=commented\r\nk=v", "A", "k", "v"},
        {"indented comment", "[A]\r\n  ;k=x\r\n", "A", "k", nullptr},
        {"first duplicate wins", "[A]\r\nk=first\r\nk=second\r\n", "A", "k", "first"},
        {"case-insensitive", "[Any]\r\nFirstName=Ann\r\n", "ANY", "firstname", "Ann"},
        {"blanks around names", "  [  A  ]  \r\n \t k \t= v\r\n", "A", "k", "v"},
        {"blanks around value", "[A]\r\nk= \t v w \x0b\r\n", "A", "k", "v w"},
        {"double quotes dropped once", "[A]\r\nk=\"\"v\"\"\r\n", "A", "k", "\"v\""},
        {"single quotes dropped", "[A]\r\nk=' v '\r\n", "A", "k", " v "},
        {"unmatched quote kept", "[A]\r\nk=\"v\r\n", "A", "k", "\"v"},
        {"value after first equals", "[A]\r\nk=a=b\r\n", "A", "k", "a=b"},
        {"empty value", "[A]\r\nk=\r\n", "A", "k", ""},
        {"line without equals", "[A]\r\nk\r\n", "A", "k", nullptr},
        {"before first section", "k=v\r\n[A]\r\n", "A", "k", nullptr},
        {"other section", "[A]\r\n[B]\r\nk=v\r\n", "A", "k", nullptr},
        {"section ends at first ]", "[A]x] trailing\r\nk=v\r\n", "A", "k", "v"},
        {"header without ]", "[A\r\nk=v\r\n", "A", "k", "v"},
        // Windows reads the first section of a name only.
        {"repeated section is not read", "[A]\r\nj=1\r\n[B]\r\n[A]\r\nk=2\r\n", "A", "k", nullptr},
        {"first section of a name is", "[A]\r\nj=1\r\n[B]\r\n[a]\r\nj=2\r\n", "A", "j", "1"},
        {"key with = is not its prefix", "[A]\r\nk=x=y\r\n", "A", "k=x", nullptr},
        {"section with ] is not its prefix", "[A]\r\nk=v\r\n", "A]x", "k", nullptr},
    };
    for (const Case& c : cases) {
        const QString expected = c.expected ? QString::fromUtf8(c.expected) : Missing;
        EXPECT_EQ(lookup(QString::fromUtf8(c.text), QString::fromUtf8(c.section),
                         QString::fromUtf8(c.key)),
                  expected)
            << c.name;
    }
}

TEST(IniDocumentWrite, ChangesOnlyWhatItMust)
{
    struct Case
    {
        const char* name;
        const char* before;
        const char* section;
        const char* key;
        const char* value;
        const char* after;
    } cases[] = {
        {"new file", "", "A", "k", "v", "[A]\r\nk=v\r\n"},
        {"replace in place", "[A]\nk = old\nj=1\n", "a", "K", "new", "[A]\nk =new\nj=1\n"},
        {"first duplicate replaced", "[A]\r\nk=1\r\nk=2\r\n", "A", "k", "3",
         "[A]\r\nk=3\r\nk=2\r\n"},
        {"new key after last key", "[A]\r\nk=1\r\n\r\n;note\r\n[B]\r\n", "A", "j", "2",
         "[A]\r\nk=1\r\nj=2\r\n\r\n;note\r\n[B]\r\n"},
        {"new key in empty section", "[A]\r\n[B]\r\nx=1\r\n", "A", "j", "2",
         "[A]\r\nj=2\r\n[B]\r\nx=1\r\n"},
        {"new key after unterminated last line", "[A]\nk=1", "A", "j", "2", "[A]\nk=1\r\nj=2\r\n"},
        {"new section at end", "[A]\nk=1\n", "B", "j", "2", "[A]\nk=1\n[B]\r\nj=2\r\n"},
        {"new section after unterminated line", "[A]\nk=1", "B", "j", "2",
         "[A]\nk=1\r\n[B]\r\nj=2\r\n"},
        {"value written unchanged", "", "A", "k", "  spaced  ", "[A]\r\nk=  spaced  \r\n"},
        {"empty value", "[A]\r\nk=v\r\n", "A", "k", "", "[A]\r\nk=\r\n"},
        {"comment lookalike untouched", "[A]\r\n;k=c\r\n", "A", "k", "v", "[A]\r\nk=v\r\n;k=c\r\n"},
        {"key of a repeated section written in the first", "[A]\r\nj=1\r\n[A]\r\nk=2\r\n", "A", "k",
         "3", "[A]\r\nj=1\r\nk=3\r\n[A]\r\nk=2\r\n"},
    };
    for (const Case& c : cases) {
        IniDocument document(QString::fromUtf8(c.before));
        ASSERT_TRUE(document.setValue(QString::fromUtf8(c.section), QString::fromUtf8(c.key),
                                      QString::fromUtf8(c.value)))
            << c.name;
        EXPECT_EQ(document.text(), QString::fromUtf8(c.after)) << c.name;
    }
}

// Names a web page chooses may hold "]", "=", "[" or ";": they are written escaped, read back by
// the same name, and never reach another entry. Line breaks and NUL have no written form: refused.
TEST(IniDocumentWrite, HostileNamesAreWrittenEscapedAndNeverForgeAnother)
{
    const QString before = u"[Any]\r\nname=Ann\r\n"_s;
    const QString nul(QChar(0));
    struct Case
    {
        QString section, key, value;
        const char* added; // nullptr: refused, nothing written
    } cases[] = {
        {u"Any"_s, u"name=x"_s, u"Eve"_s, "name%3Dx=Eve\r\n"},
        {u"Any"_s, u"[Any]"_s, u"Eve"_s, "%5BAny]=Eve\r\n"},
        {u"Any"_s, u";name"_s, u"Eve"_s, "%3Bname=Eve\r\n"},
        {u"Any"_s, u"user[email]"_s, u"Eve"_s, "user[email]=Eve\r\n"},
        {u"Any"_s, u"  "_s, u"Eve"_s, "=Eve\r\n"},
        {u"Any]\tx"_s, u"name"_s, u"Eve"_s, "[Any%5D\tx]\r\nname=Eve\r\n"},
        {u"http://x/?a[]=1"_s, u"name"_s, u"Eve"_s, "[http://x/?a[%5D=1]\r\nname=Eve\r\n"},
        {u"Any"_s, u"x\r\nname"_s, u"Eve"_s, nullptr},
        {u"Any"_s, u"x\nname"_s, u"Eve"_s, nullptr},
        {u"Any\r\n[Any"_s, u"name"_s, u"Eve"_s, nullptr},
        {u"Any"_s, u"n"_s + nul + u"x"_s, u"Eve"_s, nullptr},
        {u"Any"_s, u"city"_s, u"Oslo\r\nname=Eve"_s, nullptr},
        {u"Any"_s, u"city"_s, u"Oslo\rname=Eve"_s, nullptr},
    };
    for (const Case& c : cases) {
        IniDocument document(before);
        EXPECT_EQ(document.setValue(c.section, c.key, c.value), c.added != nullptr)
            << c.key.toStdString();
        EXPECT_EQ(document.text(), before + QString::fromUtf8(c.added ? c.added : ""))
            << c.key.toStdString();
        if (c.added) {
            EXPECT_EQ(document.value(c.section, c.key), u"Eve"_s);
        }
        EXPECT_EQ(document.value(u"Any"_s, u"name"_s), u"Ann"_s);
    }
}

TEST(IniDocumentWrite, ValueEndsAtNulAndNonAsciiNamesWork)
{
    IniDocument document;
    ASSERT_TRUE(
        document.setValue(u"Sect\u00f8n"_s, u"K\u00e9y"_s, u"abc"_s + QChar(0) + u"hidden"_s));
    EXPECT_EQ(document.value(u"SECT\u00d8N"_s, u"k\u00c9Y"_s), u"abc"_s);
}
} // namespace
