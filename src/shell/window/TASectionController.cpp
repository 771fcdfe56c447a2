#include "shell/window/TASectionController.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

TASectionController::TASectionController(TADocument *document, const QString &title,
                                         const QIcon &icon, QObject *parent)
    : TAController(document, parent)
    , m_title(title)
    , m_icon(icon) {}

void TASectionController::actionNewInvoice() {
    QApplication::beep();
}

void TASectionController::actionNewInventory() {
    QApplication::beep();
}

void TASectionController::actionNewProject() {
    QApplication::beep();
}

void TASectionController::actionNewClient() {
    QApplication::beep();
}

void TASectionController::actionRemove() {
    QApplication::beep();
}

void TASectionController::actionDuplicate() {
    QApplication::beep();
}

void TASectionController::actionPrint() {
    QApplication::beep();
}

QWidget *TASectionController::makeView() {
    auto *page = new QWidget;
    page->setObjectName(m_title);
    auto *layout = new QVBoxLayout(page);
    layout->addStretch(2);
    auto *icon = new QLabel;
    icon->setPixmap(m_icon.pixmap(64, 64, QIcon::Disabled));
    icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(icon);
    auto *title = new QLabel(m_title);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setBold(true);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);
    auto *message = new QLabel(tr("This section is not available yet."));
    message->setAlignment(Qt::AlignCenter);
    message->setEnabled(false); // the palette's muted text, in light and dark themes alike
    layout->addWidget(message);
    layout->addStretch(3);
    return page;
}
