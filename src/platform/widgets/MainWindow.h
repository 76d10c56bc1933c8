#pragma once

#include <QWidget>

class frmMain;
class HelpWindow;

// The bar on screen: a real widget for every control of frmMain, bound to it.
class MainWindow : public QWidget
{
    Q_OBJECT
public:
    explicit MainWindow(frmMain& form, QWidget* parent = nullptr);

    void openHelp();
    HelpWindow* helpWindow() const { return m_help; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* buildProfileGroup();
    QWidget* buildActivePageGroup();
    QWidget* buildBottomPanel();
    QWidget* separator(int index);
    QWidget* label(int index);

    frmMain& m_form;
    HelpWindow* m_help = nullptr;
    bool m_unloaded = false;
};
