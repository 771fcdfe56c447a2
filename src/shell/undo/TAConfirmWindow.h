#pragma once

#include "toolkit/OTActionList.h"

#include <QDialog>
#include <QVariantMap>

class QDialogButtonBox;
class QLabel;
class QPushButton;

// A question with up to three answers, asked over a main window without blocking the others.
// The owner clears clickActions, adds itself, calls show(over), and reads confirmWindowCode()
// when informed: 1, 2 or 3 for the first, second or third option. Escape and closing the
// window answer 3, the cancel the third option stands for.
class TAConfirmWindow : public QDialog {
    Q_OBJECT
public:
    enum Code { NoAnswer = 0, Option1 = 1, Option2 = 2, Option3 = 3 };

    explicit TAConfirmWindow(QWidget *parent = nullptr);
    ~TAConfirmWindow() override;

    QString message() const;
    void setMessage(const QString &message);
    // Keys "option1", "option2", "option3"; an option without a title has no button.
    void setButtonsTitles(const QVariantMap &titles);

    OTActionList &clickActions() { return m_clickActions; }
    int confirmWindowCode() const { return m_code; }

    // Clears the answer and opens the question over the window of `over`, modal for that
    // window only. Returns at once; the answer comes through clickActions.
    using QDialog::show;
    void show(QWidget *over);
    // The same, but waits for the answer and returns it, for a caller that cannot go on
    // without one.
    int showAndWait(QWidget *over);

    QPushButton *optionButton(int code) const;

    // Answers for a button of this window; any other sender answers 0.
    void confirmButtonClicked(QObject *sender);

public slots:
    void reject() override;

private:
    void prepare(QWidget *over);
    void answer(int code);
    void updateHeight();

    QLabel *m_icon = nullptr;
    QLabel *m_messageField = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QPushButton *m_option1Button = nullptr;
    QPushButton *m_option2Button = nullptr;
    QPushButton *m_option3Button = nullptr;
    OTActionList m_clickActions;
    int m_code = NoAnswer;
};
