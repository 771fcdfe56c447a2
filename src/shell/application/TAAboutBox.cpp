#include "shell/application/TAAboutBox.h"

#include "shell/application/TAApplication.h"

#include <QIcon>

namespace {
constexpr int kIconSize = 64;
}

TAAboutBox::TAAboutBox(QWidget *parent)
    : QMessageBox(parent) {
    setWindowTitle(tr("About Billfold"));
    const QIcon icon =
        QIcon::fromTheme(QStringLiteral("com.ostrel.Billfold"), QApplication::windowIcon());
    // The pixmap is drawn for the screen's scale, so the icon stays sharp at 200%.
    if (!icon.isNull())
        setIconPixmap(icon.pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
    setTextFormat(Qt::RichText);
    setText(QStringLiteral("<h3>%1</h3>").arg(tr("Billfold")));
    setInformativeText(QStringLiteral("<p>%1</p><p>%2</p><p>%3</p>")
                           .arg(TAApplication::aboutBoxVersion().toHtmlEscaped(),
                                tr("Invoices and billable time for freelancers and small firms."),
                                tr("Copyright \u00a9 Ostrel")));
    setStandardButtons(QMessageBox::Ok);
}
