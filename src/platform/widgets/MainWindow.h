#pragma once

#include <QWidget>

class frmMain;
class HelpWindow;
class RememberedValuesWindow;

// The bar on screen: a real widget for every control of frmMain, placed where the form says.
class MainWindow : public QWidget
{
    Q_OBJECT
public:
    explicit MainWindow(frmMain& form, QWidget* parent = nullptr);

    void openHelp(const QString& section = {});
    HelpWindow* helpWindow() const { return m_help; }
    // "Remembered values", beside the bar (F2, or the link in the bottom panel).
    void openRememberedValues();
    RememberedValuesWindow* rememberedValues() const { return m_remembered; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildBottomPanel();
    QWidget* separator(int index, QWidget* parent);
    QWidget* label(int index);
    // The panel and the status line stay at the bottom, as wide as the window.
    void alignBottom();
    void stretchValues();

    frmMain& m_form;
    HelpWindow* m_help = nullptr;
    RememberedValuesWindow* m_remembered = nullptr;
    QWidget* m_bottom = nullptr;
    bool m_unloaded = false;
};
