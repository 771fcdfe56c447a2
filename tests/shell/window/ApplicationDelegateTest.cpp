#include "billing/preferences/TAGlobalPreferences.h"
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "objectstore/ManagedObjectContext.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAWelcomeWindow.h"
#include "shell/window/TAMainWindow.h"
#include "store/TAEntityCreation.h"
#include "store/TAEntityQueries.h"
#include "store/entities/TAClient.h"

#include <QAbstractButton>
#include <QCryptographicHash>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QByteArray sampleResourceHash() {
    QFile file(QStringLiteral(":/sample/Sample.tadb"));
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
               : QByteArray();
}

class ApplicationDelegateTest : public ::testing::Test {
protected:
    void SetUp() override {
        QStandardPaths::setTestModeEnabled(true);
        TAGlobalPreferences::sharedInstance().settings().clear();
        TAGlobalPreferences::sharedInstance().setShowWelcomeWindow(true);
    }
    void TearDown() override {
        TADocumentController &controller = TADocumentController::sharedDocumentController();
        for (TADocument *document : controller.documents())
            controller.closeDocument(document);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        TAGlobalPreferences::sharedInstance().settings().clear();
    }
    static bool welcomeShown(const TAApplicationDelegate &delegate) {
        return delegate.welcomeWindow() && delegate.welcomeWindow()->isVisible();
    }
    static QList<TADocument *> documents() {
        return TADocumentController::sharedDocumentController().documents();
    }
};

} // namespace

TEST_F(ApplicationDelegateTest, TheSampleOpensAsAnUntitledCopyThatNeverTouchesTheShippedOne) {
    const QByteArray shipped = sampleResourceHash();
    ASSERT_FALSE(shipped.isEmpty());
    TAApplicationDelegate delegate;
    delegate.showWelcome();
    auto *openSample = delegate.welcomeWindow()->findChild<QAbstractButton *>("openSample");
    ASSERT_TRUE(openSample);
    QTest::mouseClick(openSample, Qt::LeftButton);
    QTest::mouseClick(openSample, Qt::LeftButton);

    ASSERT_EQ(documents().size(), 2);
    TADocument *first = documents().at(0);
    TADocument *second = documents().at(1);
    for (TADocument *copy : {first, second}) {
        EXPECT_TRUE(copy->fileURL().isEmpty());
        ASSERT_TRUE(TAMainWindow::forDocument(copy));
        EXPECT_TRUE(TAMainWindow::forDocument(copy)->isVisible());
    }
    const QList<TAClient *> clients =
        TAEntityQueries::getClientsSortedByDisplayNameInContext(first->managedObjectContext());
    ASSERT_FALSE(clients.isEmpty());
    // Two copies, not one shared business: a change to one leaves the other.
    const int before =
        int(TAEntityQueries::getClientsInContext(second->managedObjectContext()).size());
    TAEntityCreation::createClientInContext(first->managedObjectContext());
    first->managedObjectContext()->processPendingChanges();
    EXPECT_EQ(TAEntityQueries::getClientsInContext(second->managedObjectContext()).size(), before);
    EXPECT_EQ(sampleResourceHash(), shipped);
}

TEST_F(ApplicationDelegateTest, WelcomeAtStartFollowsWhatWasOpenAtTheLastQuit) {
    QTemporaryDir dir;
    const QString path = dir.filePath("Business.tadb");
    {
        TAApplicationDelegate delegate;
        delegate.applicationDidFinishLaunching({});
        EXPECT_TRUE(welcomeShown(delegate));
        EXPECT_TRUE(documents().isEmpty()); // no untitled document of its own
        delegate.applicationShouldTerminate();
    }
    {
        // Quit with nothing open: the welcome window again.
        TAApplicationDelegate delegate;
        delegate.applicationDidFinishLaunching({});
        EXPECT_TRUE(welcomeShown(delegate));
        delegate.newDocument();
        ASSERT_EQ(documents().size(), 1);
        ASSERT_TRUE(documents().constFirst()->saveAs(path).ok());
        delegate.applicationShouldTerminate();
        EXPECT_TRUE(documents().isEmpty());
    }
    {
        // Quit with a document open: it comes back, and no welcome window.
        TAApplicationDelegate delegate;
        delegate.applicationDidFinishLaunching({});
        EXPECT_FALSE(welcomeShown(delegate));
        ASSERT_EQ(documents().size(), 1);
        EXPECT_EQ(QFileInfo(documents().constFirst()->fileURL()).fileName(), "Business.tadb");
        delegate.applicationShouldTerminate();
    }
    {
        // The user turned the welcome window off: nothing open brings back the last document.
        TAGlobalPreferences::sharedInstance().setShowWelcomeWindow(false);
        TAGlobalPreferences::sharedInstance().settings().setValue("openDocuments", QStringList());
        TAApplicationDelegate delegate;
        delegate.recentDocuments().note(path);
        delegate.applicationDidFinishLaunching({});
        EXPECT_FALSE(welcomeShown(delegate));
        EXPECT_EQ(documents().size(), 1);
    }
}
