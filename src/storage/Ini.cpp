#include "Ini.h"

#include "IniBackend.h"
#include "VbText.h"

#include <algorithm>

namespace {
// The profile read buffer held 256 characters including its terminator.
constexpr qsizetype MaxValueLength = 255;

// What a read gives of the text stored: at most 255 characters, trimmed.
QString asRead(const QString& value)
{
    qsizetype length = std::min(value.size(), MaxValueLength);
    // A character outside the basic plane is not cut in half.
    if (length < value.size() && length > 0 && value.at(length - 1).isHighSurrogate())
        --length;
    return TrimSpaces(value.left(length));
}
} // namespace

QString Ini::ReadINI(const QString& section, const QString& key, const QString& defaultValue,
                     const QString& file) const
{
    return asRead(m_backend.readEntry(file, section, key).value_or(defaultValue));
}

int Ini::WriteINI(const QString& section, const QString& key, const QString& value,
                  const QString& file) const
{
    return m_backend.writeEntry(file, section, key, value) ? 1 : 0;
}

QStringList Ini::SectionNames(const QString& file) const
{
    return m_backend.sectionNames(file);
}

QList<std::pair<QString, QString>> Ini::Entries(const QString& section, const QString& file) const
{
    auto entries = m_backend.entries(file, section);
    for (auto& entry : entries)
        entry.second = asRead(entry.second);
    return entries;
}

QList<std::pair<QString, QString>> Ini::StoredEntries(const QString& section,
                                                      const QString& file) const
{
    return m_backend.entries(file, section);
}

bool Ini::RemoveINI(const QString& section, const QString& key, const QString& file) const
{
    return m_backend.removeEntry(file, section, key);
}
