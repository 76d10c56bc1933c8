#include "MeaningRules.h"

#include "MeaningWords.h"

#include <algorithm>
#include <optional>
#include <vector>

using namespace MeaningWords;

namespace {
bool matches(const QRegularExpression& pattern, const QString& text)
{
    return pattern.match(text).hasMatch();
}

// Parts of a date or a phone number. A source naming several parts only shows a format
// ("dd/mm/yyyy"), so only sources naming one part count; a part named by a letter alone ("d")
// only where the same source says what it is a part of ("dob d").
Meaning onePart(const QStringList& sources, const std::vector<Rule>& parts,
                const QRegularExpression& whole, Meaning wholeMeaning)
{
    static const QRegularExpression letter(QStringLiteral("^[a-z]$"));
    Meaning found = Meaning::None;
    for (const QString& source : sources) {
        Meaning inSource = Meaning::None;
        int named = 0;
        const bool saysWhole = matches(whole, source);
        for (const Rule& part : parts) {
            const auto match = part.pattern.match(source);
            if (match.hasMatch() &&
                (saysWhole || !letter.match(match.captured().trimmed()).hasMatch())) {
                inSource = part.meaning;
                ++named;
            }
        }
        if (named != 1)
            continue;
        if (found != Meaning::None && found != inSource)
            return wholeMeaning;
        found = inSource;
    }
    return found == Meaning::None ? wholeMeaning : found;
}

QString identifierWords(const QString& identifier)
{
    QString spaced;
    spaced.reserve(identifier.size() * 2);
    for (qsizetype i = 0; i < identifier.size(); ++i) {
        const QChar c = identifier[i];
        const QChar before = i > 0 ? identifier[i - 1] : QChar();
        const QChar after = i + 1 < identifier.size() ? identifier[i + 1] : QChar();
        // "firstName" and "SFirstName" are cut before the capital that starts a word, and digits
        // are cut from letters.
        const bool wordStart =
            c.isUpper() && (before.isLower() || (before.isUpper() && after.isLower()));
        const bool digitEdge = !before.isNull() && c.isDigit() != before.isDigit() &&
                               before.isLetterOrNumber() && c.isLetterOrNumber();
        if (wordStart || digitEdge)
            spaced += QLatin1Char(' ');
        spaced += c;
    }
    return MeaningRules::plainWords(spaced);
}

// What one text says: the meaning its first matching rule names, whether it names something of
// another kind, and whether all it says is a bare "Name".
struct Reading
{
    Meaning meaning = Meaning::None;
    bool other = false;
    bool weakOther = false;
    bool bare = false;
};

// Every word list a text is read against, as one pattern: one search of the text finds what
// each part names, instead of a search for each list. Groups in order of precedence: another
// kind of field, a birth date, a phone, an area code, the rules in their order; then the weak
// vetoes and the bare name, which only count where nothing else is named.
struct Combined
{
    QRegularExpression pattern;
    std::vector<Meaning> meanings; // by group; None for the three below
    int other = 0;
    int weak = 0;
    int bare = 0;
};

const Combined& combined()
{
    static const Combined all = [] {
        Combined built;
        QStringList groups;
        const auto add = [&](const QRegularExpression& part, Meaning meaning) {
            groups << QLatin1Char('(') + alternativesOf(part) + QLatin1Char(')');
            built.meanings.push_back(meaning);
            return static_cast<int>(groups.size()) - 1;
        };
        built.other = add(otherKind(), Meaning::None);
        add(birthWords(), Meaning::BirthDate);
        add(phoneWords(), Meaning::Phone);
        add(words("area ?code|areacode|vorwahl"), Meaning::PhoneAreaCode);
        for (const Rule& rule : rules())
            add(rule.pattern, rule.meaning);
        built.weak = add(weakOther(), Meaning::None);
        built.bare = add(bareName(), Meaning::None);
        built.pattern = wordsOf(groups.join(QLatin1Char('|')));
        return built;
    }();
    return all;
}

Reading read(const QString& source, bool isList)
{
    Reading reading;
    if (source == QLatin1String("q") || source == QLatin1String("s")) {
        reading.other = true;
        return reading;
    }
    const Combined& words = combined();
    quint64 found = 0;
    for (auto match = words.pattern.globalMatch(source); match.hasNext();) {
        const QRegularExpressionMatch next = match.next();
        for (int group = 0; group < static_cast<int>(words.meanings.size()); ++group) {
            if (next.capturedStart(group + 1) >= 0) {
                found |= quint64(1) << group;
                break;
            }
        }
    }
    const auto named = [found](int group) { return (found >> group) & 1; };
    reading.other = named(words.other);
    reading.weakOther = named(words.weak);
    for (int group = 0; group < words.weak && reading.meaning == Meaning::None; ++group) {
        if (named(group) && (words.meanings[group] != Meaning::Honorific || isList))
            reading.meaning = words.meanings[group];
    }
    reading.bare = reading.meaning == Meaning::None && named(words.bare) && !reading.weakOther;
    return reading;
}

// A bare name refined by another of the field's texts ("First" under "Name").
Meaning namePart(const QStringList& sources)
{
    for (const QString& source : sources) {
        for (const Rule& part : nameParts()) {
            if (matches(part.pattern, source))
                return part.meaning;
        }
    }
    return Meaning::None;
}

// A birth date or phone number named somewhere: which part of it the texts name.
Meaning refinedPart(Meaning meaning, const QStringList& sources)
{
    if (meaning == Meaning::BirthDate)
        return onePart(sources, birthParts(), birthWords(), Meaning::BirthDate);
    if (meaning != Meaning::Phone)
        return meaning;
    QStringList plain;
    for (const QString& source : sources)
        plain << QString(source).remove(phoneFormNote()).simplified();
    return onePart(plain, phoneParts(), phoneWords(), Meaning::Phone);
}

// Meanings two texts of one field may both name: a whole and its parts, lines of one address.
bool compatible(Meaning a, Meaning b)
{
    const auto family = [](Meaning m) {
        switch (m) {
        case Meaning::BirthDate:
        case Meaning::BirthDay:
        case Meaning::BirthMonth:
        case Meaning::BirthYear:
            return 1;
        case Meaning::Phone:
        case Meaning::PhoneAreaCode:
        case Meaning::PhoneCountryCode:
        case Meaning::PhoneLocal:
        case Meaning::PhoneLocalPrefix:
        case Meaning::PhoneLocalSuffix:
        case Meaning::PhoneExtension:
            return 2;
        case Meaning::AddressLine1:
        case Meaning::StreetAddress:
        case Meaning::HouseNumber:
        case Meaning::StreetName:
            return 3;
        default:
            return 10 + static_cast<int>(m);
        }
    };
    return family(a) == family(b);
}
} // namespace

QString MeaningRules::plainWords(const QString& text)
{
    // Most page texts are plain ASCII, which has nothing to decompose.
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    const QString decomposed = ascii ? text : text.normalized(QString::NormalizationForm_KD);
    QString plain;
    plain.reserve(decomposed.size() + 2);
    bool blank = true;
    for (const QChar c : decomposed) {
        if (ascii) {
            const char latin = c.toLatin1();
            if ((latin >= 'a' && latin <= 'z') || (latin >= '0' && latin <= '9')) {
                plain += c;
                blank = false;
            } else if (latin >= 'A' && latin <= 'Z') {
                plain += QLatin1Char(static_cast<char>(latin - 'A' + 'a'));
                blank = false;
            } else if (!blank) {
                plain += QLatin1Char(' ');
                blank = true;
            }
            continue;
        }
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c == QChar(0x00DF)) { // ß
            plain += QStringLiteral("ss");
            blank = false;
        } else if (c.isLetterOrNumber()) {
            plain += c.toLower();
            blank = false;
        } else if (!blank) {
            plain += QLatin1Char(' ');
            blank = true;
        }
    }
    if (plain.endsWith(QLatin1Char(' ')))
        plain.chop(1);
    return plain;
}

MeaningRules::Texts MeaningRules::textsOf(const QString& name, const QString& id,
                                          const QStringList& humanTexts, const QString& section)
{
    Texts texts;
    for (const QString& text : humanTexts) {
        const QString plain = plainWords(text);
        if (!plain.isEmpty())
            texts.human << plain;
    }
    for (const QString& identifier : {name, id}) {
        const QString plain = identifierWords(identifier);
        if (!plain.isEmpty())
            texts.identifiers << plain;
        texts.compact += QString(plain).remove(QLatin1Char(' ')) + QLatin1Char(' ');
    }
    texts.section = plainWords(section);
    return texts;
}

bool MeaningRules::forSomeoneElse(const Texts& texts)
{
    const auto any = [&](const QStringList& in, const QRegularExpression& pattern) {
        return std::any_of(in.begin(), in.end(),
                           [&](const QString& source) { return matches(pattern, source); });
    };
    return texts.compact.contains(QLatin1String("friend")) ||
           texts.compact.contains(QLatin1String("referr")) ||
           any(texts.human, someoneElseOrQuestion()) || any(texts.identifiers, someoneElse()) ||
           (!texts.section.isEmpty() && matches(someoneElsesSection(), texts.section));
}

std::optional<Recognition> MeaningRules::fromTexts(const Texts& texts, bool isList)
{
    const QStringList sources = texts.all();
    Recognition found;
    int decidedBy = -1;
    bool bare = false;
    enum Step
    {
        Go,
        Decided,
        Vetoed,
        Stop
    };
    // Each text is read once, for the search and for the check that no other disagrees.
    std::vector<std::optional<Reading>> readings(sources.size());
    const auto readingOf = [&](int index) -> const Reading& {
        if (!readings[index])
            readings[index] = read(sources[index], isList);
        return *readings[index];
    };
    const auto step = [&](int index) {
        const Reading& reading = readingOf(index);
        if (reading.other || (reading.weakOther && !bare && reading.meaning == Meaning::None))
            return Vetoed;
        if (reading.meaning != Meaning::None) {
            found.meaning = reading.meaning;
            decidedBy = index;
            return Decided;
        }
        bare = bare || reading.bare;
        return Go;
    };
    Step outcome = Go;
    for (int index = 0; index < texts.human.size() && outcome == Go; ++index)
        outcome = step(index);
    // A bare "Name" the user reads is only refined by the rest (a "first" or "last" anywhere).
    if (bare && outcome == Go)
        outcome = Stop;
    // Identifiers run together before their words: "txtFName" reads "txt f name".
    for (auto rule = compactRules().cbegin(); outcome == Go && rule != compactRules().cend();
         ++rule) {
        if (matches(rule->pattern, texts.compact)) {
            found.meaning = rule->meaning;
            outcome = Decided;
        }
    }
    for (int index = static_cast<int>(texts.human.size()); index < sources.size() && outcome == Go;
         ++index)
        outcome = step(index);
    if (outcome == Vetoed)
        return std::nullopt;
    if (outcome == Stop || (outcome == Go && bare)) {
        // "Name" with "First" beside it is a given name; alone it is what the page makes of it.
        found.meaning = namePart(sources);
        if (found.meaning != Meaning::None)
            return Recognition{found.meaning, true};
        const bool french = std::any_of(sources.begin(), sources.end(), [](const QString& s) {
            return s == QLatin1String("nom") || s == QLatin1String("votre nom");
        });
        return Recognition{french ? Meaning::None : Meaning::FullName, false, true};
    }
    if (outcome == Go) {
        static const QRegularExpression title = words("title|titel|titre|titulo|titolo");
        if (isList && std::any_of(sources.begin(), sources.end(),
                                  [](const QString& s) { return matches(title, s); }))
            return Recognition{Meaning::Honorific, true};
        return Recognition{};
    }
    found.meaning = refinedPart(found.meaning, sources);
    // Another text the user reads naming something else leaves the field unsure.
    found.sure = true;
    for (int index = 0; index < texts.human.size(); ++index) {
        const Reading& other = readingOf(index);
        if (index != decidedBy && other.meaning != Meaning::None &&
            !compatible(other.meaning, found.meaning))
            found.sure = false;
    }
    return found;
}

bool MeaningRules::isHonorific(const QString& text)
{
    static const QRegularExpression honorific =
        words("mr|mrs|ms|miss|mx|dr|prof|sir|herr|frau|m|mme|mlle|sr|sra|srta|sig|sigra|dhr|mevr|"
              "mevrouw|meneer");
    const QString plain = plainWords(text);
    return plain.size() <= 8 && honorific.match(plain).hasMatch();
}
