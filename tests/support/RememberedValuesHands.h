#pragma once

// The user's hands in "Remembered values": a row picked as a click picks it, the dialog the next
// key brings up answered.
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <gtest/gtest.h>

namespace RememberedValuesHands {
// The row showing that text in that column, selected and focused; false when none does.
inline bool pick(QTableWidget* table, int column, const QString& text)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, column)->text() == text) {
            table->setFocus();
            table->selectRow(row);
            return true;
        }
    }
    return false;
}
// Types the text into the value editor, or says Yes to the question.
inline void answer(const QString& typed = {})
{
    QTimer::singleShot(0, [typed] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        if (auto* input = dialog->findChild<QPlainTextEdit*>()) {
            input->setPlainText(typed);
            qobject_cast<QInputDialog*>(dialog)->accept();
        } else {
            qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::Yes)->click();
        }
    });
}
} // namespace RememberedValuesHands
