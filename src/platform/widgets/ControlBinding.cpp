#include "ControlBinding.h"

#include "Controls.h"
#include "StateIcons.h"
#include "Twips.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>
#include <QTreeWidget>

namespace {
void showCommon(const Control& control, QWidget* widget);

// Keeps a widget showing its control when a layout takes it over, and forwards clicks on
// widgets that have no clicked signal of their own (labels, images, panels).
class ControlWatcher : public QObject
{
public:
    ControlWatcher(Control& control, QWidget* widget, bool forwardClicks)
        : QObject(widget), m_control(control), m_forwardClicks(forwardClicks)
    {
        widget->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ParentChange)
            showCommon(m_control, static_cast<QWidget*>(watched));
        else if (m_forwardClicks && event->type() == QEvent::MouseButtonRelease)
            m_control.click();
        else if (m_forwardClicks && event->type() == QEvent::MouseButtonDblClick)
            m_control.doubleClick();
        return QObject::eventFilter(watched, event);
    }

private:
    Control& m_control;
    bool m_forwardClicks;
};

void showText(QWidget* widget, const QString& text)
{
    if (auto* label = qobject_cast<QLabel*>(widget))
        label->setText(text);
    else if (auto* button = qobject_cast<QAbstractButton*>(widget))
        button->setText(text);
    else if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        // What the user typed comes back from the model unchanged: writing it again would move the
        // cursor to the end and lose the undo history.
        if (edit->text() != text)
            edit->setText(text);
    } else if (widget->isWindow())
        widget->setWindowTitle(text);
}

void showCommon(const Control& control, QWidget* widget)
{
    showText(widget, control.text());
    widget->setEnabled(control.isEnabled());
    // A window is shown and placed by the program, not by its binding.
    if (!widget->isWindow()) {
        widget->setHidden(!control.isVisible());
        const QRect twips = control.geometry();
        if (!twips.isEmpty())
            widget->setGeometry(twips.left() / TwipsPerPixel, twips.top() / TwipsPerPixel,
                                twips.width() / TwipsPerPixel, twips.height() / TwipsPerPixel);
    }
    widget->setToolTip(control.toolTip());
}

void bindCommon(Control& control, QWidget* widget, bool forwardClicks = false)
{
    widget->setObjectName(control.objectName());
    new ControlWatcher(control, widget, forwardClicks);
    showCommon(control, widget);
    QObject::connect(&control, &Control::changed, widget,
                     [&control, widget] { showCommon(control, widget); });
}
} // namespace

void ControlBinding::bind(Control& control, QWidget* widget)
{
    auto* button = qobject_cast<QAbstractButton*>(widget);
    bindCommon(control, widget, !button);
    if (button)
        QObject::connect(button, &QAbstractButton::clicked, &control, &Control::click);
    // What the user types reaches the model; the model's own changes come back unchanged.
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        QObject::connect(edit, &QLineEdit::textChanged, &control, &Control::setText);
}

void ControlBinding::bindCheckBox(CheckBoxControl& control, QCheckBox* widget)
{
    bindCommon(control, widget);
    const auto show = [&control, widget] { widget->setChecked(control.value() != 0); };
    show();
    QObject::connect(&control, &Control::changed, widget, show);
    QObject::connect(widget, &QCheckBox::clicked, &control, [&control](bool checked) {
        control.setValue(checked ? 1 : 0);
        control.click();
    });
}

void ControlBinding::bindCombo(ComboControl& control, QComboBox* widget)
{
    bindCommon(control, widget);
    const auto show = [&control, widget] {
        const QSignalBlocker quiet(widget);
        QStringList shown;
        for (int i = 0; i < widget->count(); ++i)
            shown << widget->itemText(i);
        if (shown != control.items()) {
            widget->clear();
            widget->addItems(control.items());
        }
        if (widget->currentIndex() != control.listIndex())
            widget->setCurrentIndex(control.listIndex());
    };
    show();
    QObject::connect(&control, &Control::changed, widget, show);
    QObject::connect(widget, &QComboBox::currentIndexChanged, &control,
                     [&control](int index) { control.setListIndex(index); });
}

namespace {

// Keeps the list model told of the view's size, scroll position and the user's mouse and keys.
class ListWatcher : public QObject
{
public:
    ListWatcher(ListViewControl& control, QTreeWidget* widget)
        : QObject(widget), m_control(control), m_widget(widget)
    {
        widget->installEventFilter(this);
        widget->viewport()->installEventFilter(this);
    }

    void reportGeometry()
    {
        m_control.setWidthTwips(m_widget->width() * TwipsPerPixel);
        const int rowHeight =
            std::max(1, m_widget->sizeHintForRow(0) > 0 ? m_widget->sizeHintForRow(0) : 16);
        m_control.setVisibleRowCount(m_widget->viewport()->height() / rowHeight);
        const QModelIndex top = m_widget->indexAt(QPoint(1, 1));
        m_control.setTopIndex(top.isValid() ? top.row() : 0);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::Resize:
            reportGeometry();
            break;
        case QEvent::KeyPress:
            if (watched == m_widget)
                m_control.keyDown(keyCode(static_cast<QKeyEvent*>(event)->key()));
            break;
        case QEvent::MouseButtonPress: {
            auto* mouse = static_cast<QMouseEvent*>(event);
            if (watched == m_widget->viewport() && mouse->button() == Qt::RightButton) {
                const QModelIndex under = m_widget->indexAt(mouse->position().toPoint());
                m_control.mouseDown(2, under.isValid() ? under.row() : -1);
                return true;
            }
            break;
        }
        case QEvent::MouseButtonRelease:
            if (watched == m_widget->viewport() &&
                static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
                m_control.mouseUp(2);
                return true;
            }
            break;
        case QEvent::MouseButtonDblClick: {
            // A double click beside the rows opens the selected one too; on a row the view
            // reports it itself.
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (watched == m_widget->viewport() &&
                !m_widget->indexAt(mouse->position().toPoint()).isValid())
                m_control.doubleClick();
            break;
        }
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static int keyCode(int qtKey)
    {
        return (qtKey == Qt::Key_Return || qtKey == Qt::Key_Enter) ? 13 : qtKey;
    }

    ListViewControl& m_control;
    QTreeWidget* m_widget;
};

void showRow(QTreeWidgetItem* item, const ListRow& row)
{
    item->setText(0, row.text);
    item->setToolTip(0, row.toolTip);
    item->setData(0, Qt::UserRole, row.tag);
    item->setIcon(0, StateIcon(row.icon));
}
} // namespace

void ControlBinding::bindList(ListViewControl& control, QTreeWidget* widget)
{
    bindCommon(control, widget);
    auto* watcher = new ListWatcher(control, widget);
    const auto showSelection = [&control, widget] {
        const QSignalBlocker quiet(widget);
        if (control.selectedIndex() >= 0)
            widget->setCurrentItem(widget->topLevelItem(control.selectedIndex()));
        else {
            widget->setCurrentItem(nullptr);
            widget->clearSelection();
        }
    };
    const auto reset = [&control, widget, showSelection] {
        const QSignalBlocker quiet(widget);
        widget->clear();
        for (int i = 0; i < control.count(); ++i)
            showRow(new QTreeWidgetItem(widget), control.row(i));
        showSelection();
    };
    reset();
    widget->setColumnWidth(0, control.columnWidthTwips() / TwipsPerPixel);
    QObject::connect(&control, &ListViewControl::rowsReset, widget, reset);
    QObject::connect(&control, &ListViewControl::rowAdded, widget, [&control, widget](int index) {
        const QSignalBlocker quiet(widget);
        auto* item = new QTreeWidgetItem;
        showRow(item, control.row(index));
        widget->insertTopLevelItem(index, item);
    });
    QObject::connect(&control, &ListViewControl::rowChanged, widget, [&control, widget](int index) {
        showRow(widget->topLevelItem(index), control.row(index));
    });
    QObject::connect(&control, &ListViewControl::selectionChanged, widget, showSelection);
    QObject::connect(
        &control, &ListViewControl::scrollRequested, widget, [widget, watcher](int index) {
            widget->scrollToItem(widget->topLevelItem(index), QAbstractItemView::EnsureVisible);
            watcher->reportGeometry();
        });
    QObject::connect(&control, &ListViewControl::columnWidthChanged, widget, [&control, widget] {
        widget->setColumnWidth(0, control.columnWidthTwips() / TwipsPerPixel);
    });
    QObject::connect(widget->verticalScrollBar(), &QScrollBar::valueChanged, widget,
                     [watcher] { watcher->reportGeometry(); });
    QObject::connect(widget, &QTreeWidget::currentItemChanged, &control, [&control, widget] {
        control.setSelectedIndex(widget->indexOfTopLevelItem(widget->currentItem()));
        control.click();
    });
    QObject::connect(widget, &QTreeWidget::itemClicked, &control, [&control, widget] {
        control.setSelectedIndex(widget->indexOfTopLevelItem(widget->currentItem()));
        control.click();
    });
    QObject::connect(widget, &QTreeWidget::itemDoubleClicked, &control, &Control::doubleClick);
}

void ControlBinding::bindDate(DateControl& control, QDateEdit* widget)
{
    bindCommon(control, widget);
    const auto show = [&control, widget] {
        const QSignalBlocker quiet(widget);
        // The user's own edit comes back unchanged: leave the section they are in.
        if (widget->date() != control.value())
            widget->setDate(control.value());
    };
    show();
    QObject::connect(&control, &Control::changed, widget, show);
    QObject::connect(widget, &QDateEdit::dateChanged, &control,
                     [&control](const QDate& date) { control.setValue(date); });
}

void ControlBinding::bindTimer(TimerControl& control, QObject* owner)
{
    auto* timer = new QTimer(owner);
    timer->setObjectName(control.objectName());
    timer->setInterval(control.interval());
    const auto apply = [&control, timer] {
        if (!control.isEnabled())
            timer->stop();
        else if (!timer->isActive())
            timer->start();
    };
    apply();
    QObject::connect(&control, &TimerControl::changed, timer, apply);
    QObject::connect(timer, &QTimer::timeout, &control, &TimerControl::fire);
}
