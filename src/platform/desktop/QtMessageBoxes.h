#pragma once

#include "MessageBoxes.h"

class QWidget;

// Message boxes as real modal Qt dialogs.
class QtMessageBoxes : public MessageBoxes
{
public:
    void setParentWindow(QWidget* parent) { m_parent = parent; }
    MsgAnswer show(const QString& text, MsgButtons buttons, MsgIcon icon,
                   const QString& title) override;

private:
    QWidget* m_parent = nullptr;
};
