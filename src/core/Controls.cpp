#include "Controls.h"

Control::Control(const QString& name, const QString& text, QObject* parent)
    : QObject(parent), m_text(text)
{
    setObjectName(name);
}

void Control::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    notify();
}

void Control::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    notify();
}

void Control::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    notify();
}

void Control::setToolTip(const QString& toolTip)
{
    if (toolTip == m_toolTip)
        return;
    m_toolTip = toolTip;
    notify();
}

void CheckBoxControl::setValue(int value)
{
    if (value == m_value)
        return;
    m_value = value;
    notify();
}

void ComboControl::setItems(const QStringList& items)
{
    m_items = items;
    if (m_listIndex >= m_items.size())
        m_listIndex = -1;
    notify();
}

void ComboControl::setItem(int index, const QString& text)
{
    if (index < 0 || index >= m_items.size() || m_items.at(index) == text)
        return;
    m_items[index] = text;
    notify();
}

void ComboControl::setListIndex(int index)
{
    if (index < -1 || index >= m_items.size())
        index = -1;
    if (index == m_listIndex)
        return;
    m_listIndex = index;
    notify();
    click();
}

TimerControl::TimerControl(const QString& name, int intervalMs, QObject* parent)
    : QObject(parent), m_interval(intervalMs)
{
    setObjectName(name);
}

void TimerControl::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    Q_EMIT changed();
}

void ListViewControl::setRows(const QVector<ListRow>& rows)
{
    m_rows = rows;
    if (m_selected >= m_rows.size())
        m_selected = -1;
    notify();
}

void ListViewControl::setSelectedIndex(int index)
{
    if (index < -1 || index >= m_rows.size())
        index = -1;
    if (index == m_selected)
        return;
    m_selected = index;
    notify();
}
