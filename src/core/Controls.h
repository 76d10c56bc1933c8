#pragma once

#include <QDate>
#include <QList>
#include <QObject>
#include <QRect>
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
    // Position and size in twips inside the parent; an empty rectangle means "placed by the view".
    QRect geometry() const { return m_geometry; }
    void setGeometry(const QRect& twips);
    void setHeight(int twips)
    {
        setGeometry(QRect(m_geometry.topLeft(), QSize(m_geometry.width(), twips)));
    }

    // The user's actions, raised by the widget binding (or a test).
    void click() { Q_EMIT clicked(); }
    void doubleClick() { Q_EMIT doubleClicked(); }

Q_SIGNALS:
    void changed();
    // The text changed (the classic Change event); raised after changed().
    void textChanged();
    void clicked();
    void doubleClicked();

protected:
    void notify() { Q_EMIT changed(); }

private:
    QString m_text;
    bool m_enabled = true;
    bool m_visible = true;
    QString m_toolTip;
    QRect m_geometry;
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
    void addItem(const QString& text) { setItems(m_items + QStringList{text}); }
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

// A row of a list view: its text, its number (tag), tool tip and state icon (1 to 6).
struct ListRow
{
    QString text;
    int tag = 0;
    QString toolTip;
    int icon = 1;
};

// A list view with one column of rows, one selected row (-1 for none) and a scroll position.
// Changes are signalled row by row so that a view can follow a long list cheaply. Widths are
// in twips, the unit of the forms.
class ListViewControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;

    int count() const { return static_cast<int>(m_rows.size()); }
    const ListRow& row(int index) const { return m_rows.at(index); }
    void clear();
    int addRow(const ListRow& row);
    void setRowIcon(int index, int icon);
    void setRowToolTip(int index, const QString& toolTip);

    int selectedIndex() const { return m_selected; }
    void setSelectedIndex(int index);

    // The first row in view; ensureVisible scrolls as little as possible.
    int topIndex() const { return m_top; }
    void ensureVisible(int index);
    int widthTwips() const { return m_width; }
    int columnWidthTwips() const { return m_columnWidth; }
    void setColumnWidthTwips(int width);

    // What the view reports of itself.
    void setTopIndex(int index) { m_top = index; }
    void setVisibleRowCount(int rows) { m_visibleRows = rows > 0 ? rows : 1; }
    void setWidthTwips(int width) { m_width = width; }

    // The user's input, raised by the view (or a test). row is the row under the pointer.
    void mouseDown(int button, int row) { Q_EMIT mouseDownRaised(button, row); }
    void mouseUp(int button) { Q_EMIT mouseUpRaised(button); }
    void keyDown(int keyCode) { Q_EMIT keyDownRaised(keyCode); }

Q_SIGNALS:
    void rowsReset();
    void rowAdded(int index);
    void rowChanged(int index);
    void selectionChanged();
    void scrollRequested(int index);
    void columnWidthChanged();
    void mouseDownRaised(int button, int row);
    void mouseUpRaised(int button);
    void keyDownRaised(int keyCode);

private:
    QVector<ListRow> m_rows;
    int m_selected = -1;
    int m_top = 0;
    int m_visibleRows = 20;
    int m_width = 2400;
    int m_columnWidth = 1200;
};

// A date picker.
class DateControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;
    QDate value() const { return m_value; }
    void setValue(const QDate& value);

private:
    QDate m_value;
};

// A menu: its caption is the text, its items are commands ("-" for a separator) or submenus.
class MenuControl : public Control
{
    Q_OBJECT
public:
    using Control::Control;
    void addItem(Control* item) { m_items.append(item); }
    const QList<Control*>& items() const { return m_items; }

private:
    QList<Control*> m_items;
};
