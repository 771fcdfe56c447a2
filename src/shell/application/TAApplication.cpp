#include "shell/application/TAApplication.h"

#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "toolkit/OTIcons.h"

#include <QIcon>
#include <QWidget>

// BILLFOLD_VERSION and BILLFOLD_BUILD_VERSION come from the build files.

TAApplication::TAApplication(int &argc, char **argv)
    : QApplication(argc, argv) {
    // These names place the settings file (~/.config/Ostrel/Billfold.ini) and must match
    // the desktop file and the bus name, or the desktop cannot tie windows to the program.
    setOrganizationName(QStringLiteral("Ostrel"));
    setApplicationName(QStringLiteral("Billfold"));
    setApplicationVersion(QStringLiteral(BILLFOLD_VERSION));
    setDesktopFileName(QStringLiteral("com.ostrel.Billfold"));
    setWindowIcon(OTIcons::applicationIcon());
    // The program lives on with no window: the welcome window or the recent list bring
    // documents back.
    setQuitOnLastWindowClosed(false);
}

TAApplication *TAApplication::instance() {
    return qobject_cast<TAApplication *>(QCoreApplication::instance());
}

void TAApplication::setReverting(bool reverting) {
    m_reverting = reverting;
    updateDocumentsUndoWindow();
}

void TAApplication::setInVersions(bool inVersions) {
    m_inVersions = inVersions;
    updateDocumentsUndoWindow();
}

void TAApplication::updateDocumentsUndoWindow() {
    if (!m_reverting && !m_inVersions)
        enableDocumentsUndoWindow();
    else
        disableDocumentsUndoWindow();
}

void TAApplication::enableDocumentsUndoWindow() {
    for (TADocument *document : TADocumentController::sharedDocumentController().documents())
        document->setUndoWindowEnabled(true);
}

void TAApplication::disableDocumentsUndoWindow() {
    for (TADocument *document : TADocumentController::sharedDocumentController().documents())
        document->setUndoWindowEnabled(false);
}

QString TAApplication::aboutBoxVersion() {
    return tr("Version") + QLatin1Char(' ') + QStringLiteral(BILLFOLD_VERSION) +
           QStringLiteral(" (") + buildVersion() + QLatin1Char(')');
}

QString TAApplication::buildVersion() {
    return QStringLiteral(BILLFOLD_BUILD_VERSION);
}

void TAApplication::closeKeyWindow() {
    if (QWidget *window = activeWindow())
        window->close();
}
