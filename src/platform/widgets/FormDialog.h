#pragma once

#include <QDialog>

class Control;
class QGridLayout;
class QLineEdit;

// The frame every dialog of the program shares: Tahoma, a grid of labelled fields, and a last
// row with "Help - Press F1", OK (default) and Cancel; F1 opens the help file.
class FormDialog : public QDialog
{
    Q_OBJECT
public:
    FormDialog(Control& window, QWidget* parent, const QString& helpFile, bool topmost);

    // Adds a captioned row; the caption's access key moves to the field.
    void addRow(Control& caption, QWidget* field);
    QLineEdit* textBox(Control& control, bool readOnly = false);
    // The last row; Escape and the window's close button run the cancel button's click.
    void addButtons(Control& help, Control& ok, Control& cancel);
    // Closes the dialog when the form asks for it (a signal of the form).
    template <class Form, class Signal> void closeOn(Form* form, Signal signal)
    {
        connect(form, signal, this, &QDialog::accept);
    }

private:
    QGridLayout* m_grid;
    int m_rows = 0;
    QString m_helpFile;
};
