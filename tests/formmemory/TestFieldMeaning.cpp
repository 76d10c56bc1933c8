// What fields mean, told from what pages say of them: every row of FieldDescriptions.txt is a
// field written the way real contest, sign-up and checkout forms write them, with the meaning
// it must be given ("key?" where only unsure, "elses" where it is someone else's), each row a
// test of its own named after its line.
#include "FieldMeaning.h"

#include <QFile>
#include <QTextStream>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
struct Row
{
    int line = 0;
    QString tag;
    QString name;
    FieldDescription field;
    QString expected;
};

QList<std::pair<QString, QString>> optionsOf(const QString& kind)
{
    QList<std::pair<QString, QString>> options{{"", "Please select"}};
    const auto add = [&](const char* listed, bool codes) {
        for (const QString& text : QString::fromLatin1(listed).split(','))
            options.append(
                {codes ? text.section('|', 0, 0) : text.section('|', -1), text.section('|', -1)});
    };
    if (kind == "states")
        add("AL|Alabama,AK|Alaska,AZ|Arizona,AR|Arkansas,CA|California,CO|Colorado,CT|Connecticut,"
            "DE|Delaware,"
            "FL|Florida,GA|Georgia,IL|Illinois,IN|Indiana,NY|New York,TX|Texas,WA|Washington",
            true);
    else if (kind == "countries")
        add("US|United States,CA|Canada,GB|United Kingdom,IE|Ireland,AU|Australia,NZ|New "
            "Zealand,FR|France,"
            "DE|Germany,AT|Austria,CH|Switzerland,BE|Belgium,NL|Netherlands,ES|Spain,PT|Portugal,"
            "IT|Italy,"
            "DK|Denmark,SE|Sweden,NO|Norway,FI|Finland,PL|Poland,MX|Mexico,BR|Brazil,JP|Japan,IN|"
            "India,"
            "ZA|South Africa",
            true);
    else if (kind == "titles")
        add("mr|Mr.,mrs|Mrs.,ms|Ms.,dr|Dr.", true);
    else if (kind == "months")
        add("January,February,March,April,May,June,July,August,September,October,November,December",
            false);
    for (int n = 1; kind == "days" && n <= 31; ++n)
        options.append({QString::number(n), QString::number(n)});
    for (int year = 2010; kind == "years" && year >= 1930; --year)
        options.append({QString::number(year), QString::number(year)});
    return options;
}

std::vector<Row> rows()
{
    std::vector<Row> read;
    QFile file(QStringLiteral(TOLVANE_FIELD_DESCRIPTIONS));
    if (!file.open(QIODevice::ReadOnly))
        return read;
    QTextStream in(&file);
    for (int line = 1; !in.atEnd(); ++line) {
        const QStringList columns = in.readLine().split(u" | "_s);
        if (columns.size() < 4 || columns[0].startsWith('#'))
            continue;
        Row row{line, columns[0], columns[1], {}, columns[3].trimmed()};
        row.field.label = columns[2];
        row.field.inputType = u"text"_s;
        for (const QString& extra : columns.mid(4)) {
            const QString key = extra.section('=', 0, 0);
            const QString value = extra.section('=', 1);
            (key == "ac"        ? row.field.autocomplete
             : key == "type"    ? row.field.inputType
             : key == "ph"      ? row.field.placeholder
             : key == "id"      ? row.field.id
             : key == "section" ? row.field.section
                                : row.field.ariaLabel) = value;
            if (key == "options")
                row.field.options = optionsOf(value);
        }
        read.push_back(row);
    }
    return read;
}

QString outcome(const Recognition& found)
{
    if (found.someoneElses)
        return u"elses"_s;
    const QString key = found.meaning == Meaning::None ? u"none"_s : MeaningKey(found.meaning);
    return key + (found.sure || (found.meaning == Meaning::None && !found.bareName) ? "" : "?");
}

void PrintTo(const Row& row, std::ostream* out)
{
    *out << "line " << row.line;
}

class FieldMeaning : public ::testing::TestWithParam<Row>
{
};

TEST_P(FieldMeaning, IsWhatThePageAsksFor)
{
    const Row& row = GetParam();
    const Recognition found = RecogniseField(row.tag, row.name, row.field);
    EXPECT_EQ(outcome(found).toStdString(), row.expected.toStdString())
        << row.tag.toStdString() << " name=" << row.name.toStdString()
        << " label=" << row.field.label.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Fields, FieldMeaning, ::testing::ValuesIn(rows()),
                         [](const ::testing::TestParamInfo<Row>& info) {
                             return "line" + std::to_string(info.param.line);
                         });

TEST(FieldMeaningLimits, HostileTextsAreReadInBoundedTime)
{
    EXPECT_GE(rows().size(), 200u);
    FieldDescription field;
    field.label = QString(100 * 1024, QChar(u'名')) + u" email"_s;
    field.placeholder = QString(100 * 1024, QLatin1Char('a'));
    field.autocomplete = QString(50 * 1024, QLatin1Char(' ')) + u"email"_s;
    // The long texts are cut: what follows the cut is not read.
    EXPECT_EQ(RecogniseField("input", QString(100 * 1024, QLatin1Char('x')), field).meaning,
              Meaning::None);
    for (const char* name :
         {"\xd0\xb8\xd0\xbc\xd1\x8f", "\xe5\x90\x8d\xe5\x89\x8d",
          "\xd8\xa7\xd9\x84\xd8\xa7\xd9\x85", "\xf0\x9f\x8e\x81", "a\tb\r\nc", ""}) {
        FieldDescription described;
        described.label = QString::fromUtf8(name);
        EXPECT_EQ(RecogniseField("input", QString::fromUtf8(name), described).meaning,
                  Meaning::None)
            << name;
    }
}
} // namespace
