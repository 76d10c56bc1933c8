#pragma once

class CheckBoxControl;
class ComboControl;
class Control;
class ListViewControl;
class QCheckBox;
class QComboBox;
class QDateEdit;
class DateControl;
class QObject;
class QTreeWidget;
class QWidget;
class TimerControl;

// One binding per control kind: the widget shows the model, and the user's actions on the
// widget reach the model (and through it the form's handlers). The widget's object name becomes
// the control's name, so both can be found by it.
namespace ControlBinding {
void bind(Control& control, QWidget* widget);
void bindCheckBox(CheckBoxControl& control, QCheckBox* widget);
void bindCombo(ComboControl& control, QComboBox* widget);
void bindList(ListViewControl& control, QTreeWidget* widget);
void bindDate(DateControl& control, QDateEdit* widget);
// A real timer raising the model's timer() while the model is enabled.
void bindTimer(TimerControl& control, QObject* owner);
} // namespace ControlBinding
