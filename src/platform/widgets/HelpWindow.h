#pragma once

#include <QTextBrowser>

// Shows the program's help file.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT
public:
    explicit HelpWindow(QWidget* parent = nullptr);
    // Loads the help file and brings the window up, at the named section when one is given; a
    // missing file is said in the window.
    void showFile(const QString& helpFile, const QString& section = {});
};
