#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

// One INI file's text, parsed the way the Windows profile calls read it, and edited so that
// every line a write does not touch stays as it was.
class IniDocument
{
public:
    explicit IniDocument(const QString& text = {});

    // The value with surrounding blanks and one pair of enclosing quotes removed.
    std::optional<QString> value(const QString& section, const QString& key) const;
    // False, and nothing changed, for names or values holding a line break or NUL.
    bool setValue(const QString& section, const QString& key, const QString& value);

    // Removes the entry value() reads; false, and nothing changed, when there is none.
    bool removeValue(const QString& section, const QString& key);

    QString text() const;
    QStringList sectionNames() const;
    // The entries of the section as reads see them: keys as stored, in file order, the first of
    // each name, values as value() gives them.
    QList<std::pair<QString, QString>> entries(const QString& section) const;

    // The value as value() reads it, found in one pass over the text without keeping it: for
    // files too large to hold parsed.
    static std::optional<QString> find(QStringView text, const QString& section,
                                       const QString& key);

    // How a name is written in the file. Characters that would end the name early or turn the
    // line into something else are written as %XX: "]" in a section; "=" and a leading "[" or
    // ";" in a key. Names with a line break or NUL have no written form.
    static std::optional<QString> sectionAsStored(const QString& section);
    static std::optional<QString> keyAsStored(const QString& key);

private:
    enum class Kind
    {
        Other,
        Section,
        Entry
    };
    struct Line
    {
        QString content;
        QString ending; // "\r\n", "\n", "\r" or empty for a last line without one
        Kind kind = Kind::Other;
        QString name;          // section name or key, trimmed
        qsizetype valueAt = 0; // for entries: where the value starts (after "=")
    };

    // What a line is, by the rules of the profile calls; the name is a view into the content.
    struct Shape
    {
        Kind kind = Kind::Other;
        QStringView name;
        qsizetype valueAt = 0;
    };
    static Shape shapeOf(QStringView content);
    static Line parseLine(QString content, QString ending);
    // Index of the first line of each section body with that name, in file order.
    // Both take names as stored.
    std::vector<size_t> sectionHeaders(const QString& section) const;
    std::optional<size_t> findEntry(const QString& section, const QString& key) const;
    void ensureLastLineEnded();
    // Lookups by name, built on first use and dropped at every change.
    struct Index
    {
        QHash<QString, std::vector<size_t>> headers; // folded section name -> header lines
        QHash<QString, size_t> entries;              // folded section + "\n" + key -> line
    };
    const Index& index() const;

    std::vector<Line> m_lines;
    mutable std::optional<Index> m_index;
};
