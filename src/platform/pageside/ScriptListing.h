#pragma once

#include <QJsonObject>
#include <QStringList>
#include <vector>

// The elements one listing found, with their properties as they were, taken in one call during
// a batch. Writes through the listed elements keep it true the way the DOM would: a checked
// radio button unchecks its group, a list's value or index picks its option. A property the
// browser may have changed on its own terms (a sanitised value) is forgotten and read again.
class ScriptListing
{
public:
    struct Field
    {
        qint64 id = 0;
        // Known properties; null means the element has no such property.
        QJsonObject properties;
        QStringList options; // a list's option values
        qint64 group = 0;    // radio buttons of one group share it; 0 for none
    };

    ScriptListing(std::vector<Field> fields, quint64 batch)
        : m_fields(std::move(fields)), m_batch(batch)
    {
    }

    // Reads one listing record of the document's script.
    static Field fieldFrom(const QJsonObject& record);

    const Field& field(int index) const { return m_fields[static_cast<size_t>(index)]; }
    int size() const { return static_cast<int>(m_fields.size()); }
    quint64 batch() const { return m_batch; }
    void wrote(int index, const QString& property, const QJsonValue& value);

private:
    std::vector<Field> m_fields;
    quint64 m_batch;
};
