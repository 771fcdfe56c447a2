#include "shell/application/TAWelcomeWindow.h"

#include "ui_TAWelcomeWindow.h"

#include "billing/preferences/TAGlobalPreferences.h"

#include <QIcon>

namespace {
constexpr int kIconSize = 64;
constexpr qreal kTitleScale = 1.5;
} // namespace

TAWelcomeWindow::TAWelcomeWindow(TAGlobalPreferences &preferences, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::TAWelcomeWindow>())
    , m_preferences(preferences) {
    m_ui->setupUi(this);
    const QIcon icon =
        QIcon::fromTheme(QStringLiteral("com.ostrel.Billfold"), QApplication::windowIcon());
    m_ui->icon->setPixmap(icon.pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
    m_ui->icon->setVisible(!icon.isNull());
    // The title is larger than the theme's text by a ratio, not a fixed size, so it follows
    // the user's font settings.
    QFont title = m_ui->title->font();
    title.setPointSizeF(title.pointSizeF() * kTitleScale);
    title.setBold(true);
    m_ui->title->setFont(title);
    // Wrapped descriptions are measured at the window's width, or they leave gaps.
    adjustSize();
    resize(width(), heightForWidth(width()));

    connect(m_ui->newDocument, &QAbstractButton::clicked, this, &TAWelcomeWindow::welcomeNew);
    connect(m_ui->openSample, &QAbstractButton::clicked, this, &TAWelcomeWindow::welcomeOpenSample);
    connect(m_ui->openExisting, &QAbstractButton::clicked, this,
            [this] { orderOutThen(&TAWelcomeWindow::welcomeOpenExisting); });
    connect(m_ui->importLumarin3, &QAbstractButton::clicked, this,
            [this] { orderOutThen(&TAWelcomeWindow::welcomeImportLumarin3); });
    connect(m_ui->close, &QAbstractButton::clicked, this, &TAWelcomeWindow::reject);
    // The box says "don't show", the preference says "show".
    m_ui->dontShow->setChecked(!m_preferences.showWelcomeWindow());
    connect(m_ui->dontShow, &QCheckBox::toggled, this,
            [this](bool checked) { m_preferences.setShowWelcomeWindow(!checked); });
}

TAWelcomeWindow::~TAWelcomeWindow() = default;

void TAWelcomeWindow::showWelcome() {
    const QSignalBlocker quiet(m_ui->dontShow);
    m_ui->dontShow->setChecked(!m_preferences.showWelcomeWindow());
    show();
    raise();
    activateWindow();
    m_ui->newDocument->setFocus(Qt::OtherFocusReason);
}

void TAWelcomeWindow::reject() {
    orderOutThen(&TAWelcomeWindow::welcomeClose);
}

void TAWelcomeWindow::orderOutThen(void (TAWelcomeWindow::*signal)()) {
    hide();
    emit(this->*signal)();
}
