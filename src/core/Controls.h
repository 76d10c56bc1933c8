#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

// Control models: the forms' logic holds these; platform/ binds each to a real widget and
// forwards the user's actions back as clicked()/doubleClicked(). Tests drive them directly.
class Control : public QObject
{
    Q_OBJECT
public:
    explicit Control(const QString& name, const QString& text = {}, QObject* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);
    QString toolTip() const { return m_toolTip; }
    void setToolTip(const QString& toolTip);

    // The user's actions, raised by the widget binding (or a test).
    void click() { Q_EMIT clicked(); }
    void doubleClick() { Q_EMIT doubleClicked(); }

Q_SIGNALS:
    void changed();
    void clicked();
    void doubleClicked();

protected:
    void notify() { Q_EMIT changed(); }

private:
    QString m_text;
    bool m_enabled = true;
    bool m_visible = true;
    QString m_toolTip;
};

// A check box: value 0 unchecked, 1 checked.
class CheckBoxControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;
    int value() const { return m_value; }
    void setValue(int value);

private:
    int m_value = 0;
};

// A drop-down list; listIndex -1 means nothing selected. Changing the selection, by code or by
// the user, raises clicked() as the classic combo box did.
class ComboControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;
    QStringList items() const { return m_items; }
    void setItems(const QStringList& items);
    void setItem(int index, const QString& text);
    int listIndex() const { return m_listIndex; }
    void setListIndex(int index);

private:
    QStringList m_items;
    int m_listIndex = -1;
};

// A timer: while enabled, the platform raises timer() every interval.
class TimerControl : public QObject
{
    Q_OBJECT
public:
    TimerControl(const QString& name, int intervalMs, QObject* parent = nullptr);
    int interval() const { return m_interval; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    QString tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }
    void fire() { Q_EMIT timer(); }

Q_SIGNALS:
    void changed();
    void timer();

private:
    int m_interval;
    bool m_enabled = false;
    QString m_tag;
};

// A row of a list view: its text, tag, tool tip and icon number.
struct ListRow
{
    QString text;
    QString tag;
    QString toolTip;
    int icon = 0;
};

// A list view with one column of rows and one selected row (-1 for none).
class ListViewControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;
    const QVector<ListRow>& rows() const { return m_rows; }
    void setRows(const QVector<ListRow>& rows);
    int selectedIndex() const { return m_selected; }
    void setSelectedIndex(int index);

private:
    QVector<ListRow> m_rows;
    int m_selected = -1;
};
