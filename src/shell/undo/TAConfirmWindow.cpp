#include "shell/undo/TAConfirmWindow.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {
// Wide enough for two lines of a typical question, narrow enough to read without moving the
// eyes far; the text wraps and the window grows in height instead.
constexpr int MessageWidth = 380;
} // namespace

// The options take the roles GNOME and KDE order their dialog buttons by: the first is the
// default and sits where accepting does, the third where cancelling does, the second between.
TAConfirmWindow::TAConfirmWindow(QWidget *parent)
    : QDialog(parent)
    , m_icon(new QLabel(this))
    , m_messageField(new QLabel(this))
    , m_buttons(new QDialogButtonBox(this)) {
    setWindowModality(Qt::WindowModal);
    m_messageField->setWordWrap(true);
    m_messageField->setTextFormat(Qt::PlainText);
    m_messageField->setFixedWidth(MessageWidth);
    m_messageField->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    m_icon->setPixmap(style()
                          ->standardIcon(QStyle::SP_MessageBoxQuestion, nullptr, this)
                          .pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    m_icon->setAlignment(Qt::AlignTop);

    m_option1Button = m_buttons->addButton(QString(), QDialogButtonBox::AcceptRole);
    m_option2Button = m_buttons->addButton(QString(), QDialogButtonBox::DestructiveRole);
    m_option3Button = m_buttons->addButton(QString(), QDialogButtonBox::RejectRole);
    m_option1Button->setObjectName(QStringLiteral("option1Button"));
    m_option2Button->setObjectName(QStringLiteral("option2Button"));
    m_option3Button->setObjectName(QStringLiteral("option3Button"));
    m_option1Button->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::clicked, this,
            [this](QAbstractButton *button) { confirmButtonClicked(button); });

    auto *text = new QHBoxLayout;
    text->addWidget(m_icon, 0, Qt::AlignTop);
    text->addWidget(m_messageField, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(text);
    // The answers stand apart from the question, as in the desktop's own message boxes.
    layout->addSpacing(
        qMax(0, style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, this)));
    layout->addWidget(m_buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setButtonsTitles({});
}

TAConfirmWindow::~TAConfirmWindow() = default;

QString TAConfirmWindow::message() const {
    return m_messageField->text();
}

void TAConfirmWindow::setMessage(const QString &message) {
    m_messageField->setText(message);
    m_messageField->setAccessibleName(message);
    updateHeight();
}

void TAConfirmWindow::setButtonsTitles(const QVariantMap &titles) {
    const std::pair<QPushButton *, QString> options[] = {
        {m_option1Button, QStringLiteral("option1")},
        {m_option2Button, QStringLiteral("option2")},
        {m_option3Button, QStringLiteral("option3")},
    };
    for (const auto &[button, key] : options) {
        const QString title = titles.value(key).toString();
        button->setText(title);
        button->setVisible(!title.isEmpty());
    }
    updateHeight();
}

QPushButton *TAConfirmWindow::optionButton(int code) const {
    switch (code) {
    case Option1:
        return m_option1Button;
    case Option2:
        return m_option2Button;
    case Option3:
        return m_option3Button;
    default:
        return nullptr;
    }
}

void TAConfirmWindow::updateHeight() {
    adjustSize();
}

void TAConfirmWindow::prepare(QWidget *over) {
    m_code = NoAnswer;
    QWidget *window = over ? over->window() : nullptr;
    if (window && parentWidget() != window)
        setParent(window, windowFlags()); // window-modal needs the window as parent
}

void TAConfirmWindow::show(QWidget *over) {
    prepare(over);
    open();
}

int TAConfirmWindow::showAndWait(QWidget *over) {
    prepare(over);
    exec();
    return m_code;
}

void TAConfirmWindow::confirmButtonClicked(QObject *sender) {
    int code = NoAnswer;
    for (int candidate : {Option1, Option2, Option3})
        if (sender && sender == optionButton(candidate))
            code = candidate;
    answer(code);
}

// Escape and the window's close button land here.
void TAConfirmWindow::reject() {
    answer(Option3);
}

// The window closes before the owner hears, so that the owner may ask again at once.
void TAConfirmWindow::answer(int code) {
    m_code = code;
    done(code == Option3 ? QDialog::Rejected : QDialog::Accepted);
    m_clickActions.inform(this);
}
