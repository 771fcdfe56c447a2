#pragma once

#include <QDialog>

#include <memory>

class TAGlobalPreferences;

namespace Ui {
class TAWelcomeWindow;
}

// The window a user without open documents starts from: a new document, the sample business,
// an existing file or (later) an import. Each command is a signal for the application to act
// on; the window hides itself first for the commands that show a file dialog or a new window
// in its place, and stays for a new document so that it is still there should that fail.
class TAWelcomeWindow : public QDialog {
    Q_OBJECT
public:
    explicit TAWelcomeWindow(TAGlobalPreferences &preferences, QWidget *parent = nullptr);
    ~TAWelcomeWindow() override;

    // Brings the window to the front, with the check box showing the current preference.
    void showWelcome();

signals:
    void welcomeNew();
    void welcomeOpenSample();
    void welcomeOpenExisting();
    void welcomeImportLumarin3();
    void welcomeClose();

protected:
    // Escape, the window's close button and "Close" all end here.
    void reject() override;

private:
    void orderOutThen(void (TAWelcomeWindow::*signal)());

    std::unique_ptr<Ui::TAWelcomeWindow> m_ui;
    TAGlobalPreferences &m_preferences;
};
