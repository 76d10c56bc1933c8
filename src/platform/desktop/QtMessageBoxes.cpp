#include "QtMessageBoxes.h"

#include <QMessageBox>

namespace {
QMessageBox::Icon qtIcon(MsgIcon icon)
{
    switch (icon) {
    case MsgIcon::Exclamation:
        return QMessageBox::Warning;
    case MsgIcon::Critical:
        return QMessageBox::Critical;
    case MsgIcon::Question:
        return QMessageBox::Question;
    case MsgIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}
} // namespace

MsgAnswer QtMessageBoxes::show(const QString& text, MsgButtons buttons, MsgIcon icon,
                               const QString& title)
{
    QMessageBox box(qtIcon(icon), title, text, QMessageBox::NoButton, m_parent);
    switch (buttons) {
    case MsgButtons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MsgButtons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Cancel:
        return MsgAnswer::Cancel;
    case QMessageBox::Yes:
        return MsgAnswer::Yes;
    case QMessageBox::No:
        return MsgAnswer::No;
    default:
        return MsgAnswer::Ok;
    }
}
