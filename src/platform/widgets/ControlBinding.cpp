#include "ControlBinding.h"

#include "Controls.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
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
    else if (auto* edit = qobject_cast<QLineEdit*>(widget))
        edit->setText(text);
    else if (widget->isWindow())
        widget->setWindowTitle(text);
}

void showCommon(const Control& control, QWidget* widget)
{
    showText(widget, control.text());
    widget->setEnabled(control.isEnabled());
    // A window is shown when the program is ready, not when it is bound.
    if (!widget->isWindow())
        widget->setHidden(!control.isVisible());
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
}

void ControlBinding::bindCheckBox(CheckBoxControl& control, QCheckBox* widget)
{
    bindCommon(control, widget);
    const auto show = [&control, widget] {
        widget->setChecked(control.value() != 0);
    };
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
        widget->setCurrentIndex(control.listIndex());
    };
    show();
    QObject::connect(&control, &Control::changed, widget, show);
    QObject::connect(widget, &QComboBox::activated, &control,
                     [&control](int index) { control.setListIndex(index); });
}

void ControlBinding::bindList(ListViewControl& control, QTreeWidget* widget)
{
    bindCommon(control, widget);
    const auto show = [&control, widget] {
        const QSignalBlocker quiet(widget);
        widget->clear();
        for (const ListRow& row : control.rows()) {
            auto* item = new QTreeWidgetItem(widget, {row.text});
            item->setToolTip(0, row.toolTip);
            item->setData(0, Qt::UserRole, row.tag);
        }
        if (control.selectedIndex() >= 0)
            widget->setCurrentItem(widget->topLevelItem(control.selectedIndex()));
    };
    show();
    QObject::connect(&control, &Control::changed, widget, show);
    QObject::connect(widget, &QTreeWidget::itemClicked, &control, [&control, widget] {
        control.setSelectedIndex(widget->indexOfTopLevelItem(widget->currentItem()));
        control.click();
    });
    QObject::connect(widget, &QTreeWidget::itemDoubleClicked, &control, &Control::doubleClick);
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
