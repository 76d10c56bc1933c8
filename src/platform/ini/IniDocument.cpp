#include "IniDocument.h"

namespace {
const QString CrLf = QStringLiteral("\r\n");

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\v');
}

QStringView trimmedView(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}

QString trimBlanks(QStringView text)
{
    return trimmedView(text).toString();
}

// The value as a read gives it: blanks around it gone, then one pair of enclosing quotes.
QString readValue(QStringView stored)
{
    QStringView value = trimmedView(stored);
    if (value.size() >= 2 && value.front() == value.back() &&
        (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'')))
        value = value.mid(1, value.size() - 2);
    return value.toString();
}

// Calls back with each line's content and ending, in order.
template <typename Visit> void forEachLine(QStringView text, Visit visit)
{
    qsizetype start = 0;
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\r') && c != QLatin1Char('\n'))
            continue;
        const qsizetype endingLength =
            (c == QLatin1Char('\r') && i + 1 < size && text.at(i + 1) == QLatin1Char('\n')) ? 2 : 1;
        if (!visit(text.mid(start, i - start), text.mid(i, endingLength)))
            return;
        i += endingLength - 1;
        start = i + 1;
    }
    if (start < size)
        visit(text.mid(start), QStringView());
}

bool hasLineBreakOrNul(const QString& text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n')) ||
           text.contains(QChar(0));
}
} // namespace

IniDocument::IniDocument(const QString& text)
{
    forEachLine(text, [this](QStringView content, QStringView ending) {
        m_lines.push_back(parseLine(content.toString(), ending.toString()));
        return true;
    });
}

IniDocument::Shape IniDocument::shapeOf(QStringView content)
{
    const QStringView trimmed = trimmedView(content);
    if (trimmed.startsWith(QLatin1Char(';')))
        return {};
    if (trimmed.startsWith(QLatin1Char('['))) {
        const qsizetype close = trimmed.indexOf(QLatin1Char(']'));
        return {Kind::Section, trimmedView(trimmed.mid(1, close < 0 ? -1 : close - 1)), 0};
    }
    const qsizetype equals = content.indexOf(QLatin1Char('='));
    if (equals < 0)
        return {};
    return {Kind::Entry, trimmedView(content.left(equals)), equals + 1};
}

IniDocument::Line IniDocument::parseLine(QString content, QString ending)
{
    const Shape shape = shapeOf(content);
    Line line;
    line.kind = shape.kind;
    line.name = shape.name.toString();
    line.valueAt = shape.valueAt;
    line.content = std::move(content);
    line.ending = std::move(ending);
    return line;
}

std::optional<QString> IniDocument::find(QStringView text, const QString& section,
                                         const QString& key)
{
    const auto storedSection = sectionAsStored(section);
    const auto storedKey = keyAsStored(key);
    if (!storedSection || !storedKey)
        return std::nullopt;
    std::optional<QString> found;
    bool inSection = false;
    forEachLine(text, [&](QStringView content, QStringView) {
        const Shape shape = shapeOf(content);
        if (shape.kind == Kind::Section) {
            // Only the first section of a name is read, as Windows reads it.
            if (inSection)
                return false;
            inSection = shape.name.compare(*storedSection, Qt::CaseInsensitive) == 0;
        } else if (shape.kind == Kind::Entry && inSection &&
                   shape.name.compare(*storedKey, Qt::CaseInsensitive) == 0)
            found = readValue(content.mid(shape.valueAt));
        return !found;
    });
    return found;
}

std::optional<QString> IniDocument::sectionAsStored(const QString& section)
{
    if (hasLineBreakOrNul(section))
        return std::nullopt;
    QString name = trimBlanks(section);
    return name.replace(QLatin1Char(']'), QLatin1String("%5D"));
}

std::optional<QString> IniDocument::keyAsStored(const QString& key)
{
    QString name = trimBlanks(key);
    if (hasLineBreakOrNul(name))
        return std::nullopt;
    name.replace(QLatin1Char('='), QLatin1String("%3D"));
    if (name.startsWith(QLatin1Char('[')))
        name.replace(0, 1, QLatin1String("%5B"));
    else if (name.startsWith(QLatin1Char(';')))
        name.replace(0, 1, QLatin1String("%3B"));
    return name;
}

const IniDocument::Index& IniDocument::index() const
{
    if (m_index)
        return *m_index;
    Index built;
    QString section;
    bool inSection = false;
    for (size_t i = 0; i < m_lines.size(); ++i) {
        const Line& line = m_lines[i];
        if (line.kind == Kind::Section) {
            section = line.name.toCaseFolded();
            auto& headers = built.headers[section];
            headers.push_back(i);
            // Windows reads and writes the first section of a name only; a repeat is ignored.
            inSection = headers.size() == 1;
        } else if (line.kind == Kind::Entry && inSection) {
            // The first entry of a name wins.
            const QString key = section + QLatin1Char('\n') + line.name.toCaseFolded();
            if (!built.entries.contains(key))
                built.entries.insert(key, i);
        }
    }
    m_index = std::move(built);
    return *m_index;
}

std::vector<size_t> IniDocument::sectionHeaders(const QString& name) const
{
    return index().headers.value(name.toCaseFolded());
}

std::optional<size_t> IniDocument::findEntry(const QString& section, const QString& name) const
{
    const auto& entries = index().entries;
    const auto found =
        entries.constFind(section.toCaseFolded() + QLatin1Char('\n') + name.toCaseFolded());
    if (found == entries.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<QString> IniDocument::value(const QString& section, const QString& key) const
{
    const auto storedSection = sectionAsStored(section);
    const auto storedKey = keyAsStored(key);
    if (!storedSection || !storedKey)
        return std::nullopt;
    const auto entry = findEntry(*storedSection, *storedKey);
    if (!entry)
        return std::nullopt;
    const Line& line = m_lines[*entry];
    return readValue(QStringView(line.content).mid(line.valueAt));
}

void IniDocument::ensureLastLineEnded()
{
    if (!m_lines.empty() && m_lines.back().ending.isEmpty())
        m_lines.back().ending = CrLf;
}

bool IniDocument::setValue(const QString& section, const QString& key, const QString& value)
{
    const auto storedSection = sectionAsStored(section);
    const auto storedKey = keyAsStored(key);
    if (!storedSection || !storedKey || value.contains(QLatin1Char('\r')) ||
        value.contains(QLatin1Char('\n')))
        return false;
    // The classic calls took C strings: a value ends at its first NUL.
    const QString stored = value.left(value.indexOf(QChar(0)));

    if (const auto entry = findEntry(*storedSection, *storedKey)) {
        Line& line = m_lines[*entry];
        line.content = line.content.left(line.valueAt) + stored;
        return true;
    }

    const QString entryText = *storedKey + QLatin1Char('=') + stored;
    const auto headers = index().headers.value(storedSection->toCaseFolded());
    m_index.reset();
    if (headers.empty()) {
        ensureLastLineEnded();
        m_lines.push_back(parseLine(QLatin1Char('[') + *storedSection + QLatin1Char(']'), CrLf));
        m_lines.push_back(parseLine(entryText, CrLf));
        return true;
    }
    // After the section's last key, so trailing comments and blank lines stay below it.
    size_t after = headers.front();
    for (size_t i = after + 1; i < m_lines.size() && m_lines[i].kind != Kind::Section; ++i) {
        if (m_lines[i].kind == Kind::Entry)
            after = i;
    }
    if (m_lines[after].ending.isEmpty())
        m_lines[after].ending = CrLf;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(after) + 1,
                   parseLine(entryText, CrLf));
    return true;
}

bool IniDocument::removeValue(const QString& section, const QString& key)
{
    const auto storedSection = sectionAsStored(section);
    const auto storedKey = keyAsStored(key);
    const auto entry =
        storedSection && storedKey ? findEntry(*storedSection, *storedKey) : std::nullopt;
    if (!entry)
        return false;
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(*entry));
    m_index.reset();
    return true;
}

QList<std::pair<QString, QString>> IniDocument::entries(const QString& section) const
{
    QList<std::pair<QString, QString>> found;
    const auto stored = sectionAsStored(section);
    const auto headers = stored ? sectionHeaders(*stored) : std::vector<size_t>();
    if (headers.empty())
        return found;
    for (size_t i = headers.front() + 1; i < m_lines.size() && m_lines[i].kind != Kind::Section;
         ++i) {
        const Line& line = m_lines[i];
        // Only the line a read of its name finds: a repeated name is hidden behind the first.
        if (line.kind == Kind::Entry && findEntry(*stored, line.name) == i)
            found.append({line.name, readValue(QStringView(line.content).mid(line.valueAt))});
    }
    return found;
}

QStringList IniDocument::sectionNames() const
{
    QStringList names;
    for (const Line& line : m_lines) {
        if (line.kind == Kind::Section)
            names << line.name;
    }
    return names;
}

QString IniDocument::text() const
{
    QString text;
    qsizetype size = 0;
    for (const Line& line : m_lines)
        size += line.content.size() + line.ending.size();
    text.reserve(size);
    for (const Line& line : m_lines)
        text += line.content + line.ending;
    return text;
}
