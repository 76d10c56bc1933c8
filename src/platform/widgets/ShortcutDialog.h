#pragma once

#include "frmShortcut.h"

class QWidget;

// The shortcut editor as a real modal dialog, kept above the browser windows.
class ShortcutDialogDisplay : public ShortcutEditorDisplay
{
public:
    void setParentWindow(QWidget* parent) { m_parent = parent; }
    void setHelpFile(const QString& helpFile) { m_helpFile = helpFile; }
    void ShowModal(frmShortcut& form) override;

private:
    QWidget* m_parent = nullptr;
    QString m_helpFile;
};
