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
    Q_EMIT textChanged();
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

void Control::setGeometry(const QRect& twips)
{
    if (twips == m_geometry)
        return;
    m_geometry = twips;
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

void ListViewControl::clear()
{
    m_rows.clear();
    m_selected = -1;
    m_top = 0;
    Q_EMIT rowsReset();
}

int ListViewControl::addRow(const ListRow& row)
{
    m_rows.append(row);
    Q_EMIT rowAdded(count() - 1);
    return count() - 1;
}

void ListViewControl::setRowIcon(int index, int icon)
{
    if (m_rows[index].icon == icon)
        return;
    m_rows[index].icon = icon;
    Q_EMIT rowChanged(index);
}

void ListViewControl::setRowToolTip(int index, const QString& toolTip)
{
    if (m_rows[index].toolTip == toolTip)
        return;
    m_rows[index].toolTip = toolTip;
    Q_EMIT rowChanged(index);
}

void ListViewControl::setSelectedIndex(int index)
{
    if (index < -1 || index >= count())
        index = -1;
    if (index == m_selected)
        return;
    m_selected = index;
    Q_EMIT selectionChanged();
}

void ListViewControl::ensureVisible(int index)
{
    if (index < 0 || index >= count())
        return;
    if (index < m_top)
        m_top = index;
    else if (index >= m_top + m_visibleRows)
        m_top = index - m_visibleRows + 1;
    Q_EMIT scrollRequested(index);
}

void ListViewControl::setColumnWidthTwips(int width)
{
    if (width == m_columnWidth)
        return;
    m_columnWidth = width;
    Q_EMIT columnWidthChanged();
}

void DateControl::setValue(const QDate& value)
{
    if (value == m_value)
        return;
    m_value = value;
    notify();
}
