#include "ScriptListing.h"

#include <QJsonArray>

ScriptListing::Field ScriptListing::fieldFrom(const QJsonObject& record)
{
    Field field;
    field.id = record.value(QLatin1String("id")).toInteger();
    field.group = record.value(QLatin1String("group")).toInteger();
    for (const QJsonValue& option : record.value(QLatin1String("options")).toArray())
        field.options.append(option.toString());
    field.properties = record.value(QLatin1String("properties")).toObject();
    return field;
}

void ScriptListing::wrote(int index, const QString& property, const QJsonValue& value)
{
    Field& field = m_fields[static_cast<size_t>(index)];
    const bool isList =
        field.properties.value(QLatin1String("tagName")).toString() == QLatin1String("SELECT");
    if (property == QLatin1String("checked")) {
        field.properties.insert(property, value.toBool());
        if (value.toBool() && field.group != 0) {
            for (Field& other : m_fields) {
                if (other.group == field.group && &other != &field)
                    other.properties.insert(property, false);
            }
        }
    } else if (isList &&
               (property == QLatin1String("value") || property == QLatin1String("selectedIndex"))) {
        qsizetype selected = property == QLatin1String("value")
                                 ? field.options.indexOf(value.toString())
                                 : static_cast<qsizetype>(value.toInteger(-1));
        // A value no option has leaves the selection as it was, as the page's script does.
        if (property == QLatin1String("value") && selected < 0)
            return;
        if (selected < 0 || selected >= field.options.size())
            selected = -1;
        field.properties.insert(QLatin1String("selectedIndex"), static_cast<int>(selected));
        field.properties.insert(QLatin1String("value"),
                                selected < 0 ? QString() : field.options[selected]);
    } else if (property == QLatin1String("value") || property == QLatin1String("innerText")) {
        // A text area's text is its value; the browser normalises line ends and sanitises.
        field.properties.remove(QLatin1String("value"));
        field.properties.remove(QLatin1String("innerText"));
    }
}
