#include "DocumentTestSupport.h"

#include "document/TADocumentJobs.h"
#include "document/TADocumentWindow.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "foundation/TANotificationCenter.h"
#include "foundation/dates/ScopedFixedClock.h"
#include "invoicelayout/LMBuiltInTemplates.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"
#include "store/TAApplicationHooks.h"
#include "store/TAGlobal.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"

#include <QFile>
#include <QLocale>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

struct RecordingWindow : TADocumentWindow {
    QStringList steps;
    QList<bool> sidebarLocks;
    void makeSectionControllers(TADocument &) override { steps << "controllers"; }
    void fillTabs() override { steps << "tabs"; }
    void showStatusMenu() override { steps << "statusMenu"; }
    void observeCalendarStore(bool on) override { steps << (on ? "calendarOn" : "calendarOff"); }
    void reloadSidebar(bool locked) override {
        steps << "sidebar";
        sidebarLocks << locked;
    }
    void cacheReload() override { steps << "cacheReload"; }
    void removeActionMenu() override { steps << "removeActionMenu"; }
    void hideStatusMenu() override { steps << "hideStatusMenu"; }
    void cleanControllers() override {
        steps << "clean";
        revertingWhenCleaned << TADocumentController::isReverting();
    }
    QList<bool> revertingWhenCleaned;
};

struct RecordingJobs : TADocumentJobs {
    QStringList calls;
    void updateRecurringInvoices(TADocument &) override { calls << "recurring"; }
    void updateCurrencies(TADocument &) override { calls << "currencies"; }
    void deleteTimersFromContext(ManagedObjectContext *) override { calls << "poolOut"; }
};

// The file system's immutable flag on one file, as chattr +i sets it. It is cleared again when
// the guard goes, however the test ends, or the temporary folder could not be removed.
class ImmutableFlag {
public:
    explicit ImmutableFlag(QString path)
        : m_path(std::move(path)) {
        m_set = change(true);
        if (!m_set)
            m_refusal = QString::fromLocal8Bit(std::strerror(errno));
    }
    ~ImmutableFlag() { clear(); }
    ImmutableFlag(const ImmutableFlag &) = delete;
    ImmutableFlag &operator=(const ImmutableFlag &) = delete;

    bool isSet() const { return m_set; }
    // Why the flag could not be set: the file system has none, or the process lacks the right.
    std::string refusal() const {
        return "the immutable flag cannot be set on a file in the temporary folder (" +
               m_refusal.toStdString() +
               "); immutable files need a file system with the flag and CAP_LINUX_IMMUTABLE";
    }
    void clear() {
        if (m_set)
            m_set = !change(false);
    }

private:
    bool change(bool on) const {
        const int fd = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            return false;
        int flags = 0;
        bool done = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        done = done && ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
        const int error = errno;
        ::close(fd);
        errno = error;
        return done;
    }

    QString m_path;
    QString m_refusal;
    bool m_set = false;
};

QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class DocumentLifecycle : public ::testing::Test {
protected:
    void SetUp() override { ensureApplication(); }
    void TearDown() override {
        for (TADocument *document : controller().documents())
            controller().closeDocument(document);
    }
    qsizetype count(TADocument *document, const char *entity) {
        FetchRequest request{QLatin1String(entity)};
        return document->managedObjectContext()->executeFetchRequest(request)->size();
    }
    QString path(const char *name) const { return dir.filePath(QLatin1String(name)); }
    void makeLockedCandidate();
    void expectLockedBehaviour(TADocument *document);
    void expectEditsKeptForAnotherFile(TADocument *document);

    QTemporaryDir dir;
    RecordingWindow window;
    RecordingJobs jobs;
    TAApplicationHooks::ScopedTemplateSeeder seeder{&LMBuiltInTemplates::seedBuiltInTemplates};
    TADocumentJobs::ScopedInstance jobsInstalled{&jobs};
    TADocumentController::ScopedWindowFactory windows{[this](TADocument &) { return &window; }};
    ScopedFixedClock clock{QDateTime(QDate(2026, 5, 4), QTime(9, 30))};
    int appliedRecords = 0;
};

} // namespace

TEST_F(DocumentLifecycle, NewDocumentRunsTheStepsAndHoldsTheBasics) {
    // The default currency is the user's: the totals computed earlier in the opening must
    // not make one of their own first.
    const QLocale previous;
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    auto opened = controller().openUntitledDocument();
    QLocale::setDefault(previous);
    ASSERT_TRUE(opened.ok());
    TADocument *document = *opened;
    EXPECT_EQ(window.steps, (QStringList{"controllers", "tabs", "statusMenu", "cacheReload",
                                         "calendarOn", "sidebar"}));
    EXPECT_EQ(jobs.calls, (QStringList{"recurring", "currencies"}));
    EXPECT_EQ(count(document, "Preferences"), 1);
    ASSERT_EQ(count(document, "Currency"), 1);
    EXPECT_TRUE(document->database().getDefaultCurrency()->isDefault());
    EXPECT_EQ(document->database().getDefaultCurrency()->code(), QStringLiteral("EUR"));
    EXPECT_EQ(count(document, "InvoiceTemplate"), LMBuiltInTemplates::templateNames().size());
    for (const char *none : {"Client", "Project", "Invoice", "Tax", "Inventory", "Item"})
        EXPECT_EQ(count(document, none), 0) << none;
    // Changed, with nothing to undo and no file to autosave into.
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_FALSE(document->managedObjectContext()->undoManager()->canUndo());
    EXPECT_FALSE(document->hasAutosaveScheduled());
    EXPECT_FALSE(document->isLockedOrInReadOnlyMode());
    EXPECT_TRUE(document->timersRunning());
    EXPECT_EQ(TAGlobal::documentByContext(document->managedObjectContext()), document);

    window.steps.clear();
    controller().closeDocument(document);
    EXPECT_EQ(window.steps, (QStringList{"removeActionMenu", "hideStatusMenu", "clean"}));
    EXPECT_EQ(jobs.calls.last(), QStringLiteral("poolOut"));
    EXPECT_EQ(controller().documentsCount(), 0);
}

TEST_F(DocumentLifecycle, SavedDocumentReopensLockedByItsPasswordAndChanged) {
    TADocument *document = *controller().openUntitledDocument();
    document->preferences()->setPassword(QStringLiteral("Secret"));
    TAContextDatabase::createInvoiceInContext(document->database().context())
        ->setIdentification(QStringLiteral("2026-001"));
    ASSERT_TRUE(document->saveAs(path("books.tadb")).ok());
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_TRUE(document->fileModificationDate().isValid());
    EXPECT_TRUE(document->isLockedWithPassword());
    document->unlock();
    EXPECT_FALSE(document->isLockedWithPassword());
    EXPECT_FALSE(window.sidebarLocks.last());
    controller().closeDocument(document);

    window.steps.clear();
    document = *controller().openDocumentWithContentsOfURL(path("books.tadb"));
    EXPECT_EQ(window.steps.first(), QStringLiteral("controllers"));
    // The opening leaves even an untouched file changed; nothing was added twice.
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_TRUE(document->hasAutosaveScheduled());
    EXPECT_EQ(count(document, "Currency"), 1);
    EXPECT_EQ(count(document, "InvoiceTemplate"), LMBuiltInTemplates::templateNames().size());
    EXPECT_EQ(count(document, "Invoice"), 1);
    // The password was typed in the earlier session only.
    EXPECT_TRUE(document->isLockedWithPassword());
    EXPECT_TRUE(window.sidebarLocks.last());
    EXPECT_FALSE(document->validateMenuItem(111));
    EXPECT_TRUE(document->validateMenuItem(112));

    EXPECT_TRUE(document->autosaveWithImplicitCancellability().value());
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->autosaveWithImplicitCancellability().value()); // nothing left to save

    // Revert drops unsaved edits and goes through the opening again; the process counts as
    // reverting while the old contents are taken down, and no longer once it is done.
    TAContextDatabase::createInvoiceInContext(document->database().context());
    jobs.calls.clear();
    window.revertingWhenCleaned.clear();
    ASSERT_TRUE(document->revertToContentsOfURL().ok());
    EXPECT_EQ(window.revertingWhenCleaned, (QList<bool>{true}));
    EXPECT_FALSE(TADocumentController::isReverting());
    EXPECT_TRUE(document->undoWindowEnabled());
    EXPECT_EQ(count(document, "Invoice"), 1);
    EXPECT_EQ(jobs.calls.first(), QStringLiteral("poolOut"));
    EXPECT_TRUE(document->timersRunning());
    EXPECT_TRUE(document->fileModificationDate().isNull());
    EXPECT_FALSE(document->fileWasChangedByAnotherProgram());
}

TEST_F(DocumentLifecycle, SaveAsOntoAnotherOpenDocumentIsRefused) {
    TADocument *first = *controller().openUntitledDocument();
    ASSERT_TRUE(first->saveAs(path("first.tadb")).ok());
    TADocument *second = *controller().openUntitledDocument();
    auto refused = second->saveAs(path("first.tadb"));
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, TADocument::kFileIsOpenCode);
    EXPECT_EQ(refused.error().domain, TADocument::kFileIsOpenDomain);
    // Another name of the same file is the same file.
    ASSERT_TRUE(QFile::link(path("first.tadb"), path("link.tadb")));
    EXPECT_EQ(second->saveAs(path("link.tadb")).error().code, TADocument::kFileIsOpenCode);
    EXPECT_EQ(refused.error().message,
              QStringLiteral("Another file saved in this location is already opened. Please close "
                             "it and try again."));
    EXPECT_TRUE(second->fileURL().isEmpty());
    // The document may save over its own file, and anywhere else.
    EXPECT_TRUE(first->panel(nullptr, path("first.tadb")).ok());
    EXPECT_TRUE(second->saveAs(path("second.tadb")).ok());
    // A copy of a file's contents goes into an untitled document, with nothing to undo.
    TAContextDatabase::createInvoiceInContext(first->database().context())
        ->setIdentification(QStringLiteral("S-1"));
    ASSERT_TRUE(first->save().ok());
    TADocument *third = *controller().openUntitledDocument();
    ASSERT_TRUE(third->replaceContentsWithCopyOfURL(path("first.tadb")).ok());
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(third->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("S-1"));
    EXPECT_EQ(count(third, "Currency"), 1);
    EXPECT_FALSE(third->managedObjectContext()->undoManager()->canUndo());
    EXPECT_TRUE(third->fileURL().isEmpty());
    const Result<void> missing = third->replaceContentsWithCopyOfURL(path("missing.tadb"));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().message,
              QStringLiteral("“missing.tadb” is missing or not a document this version can open."));
    // Opening an open file again answers the same document.
    EXPECT_EQ(*controller().openDocumentWithContentsOfURL(path("first.tadb")), first);
}

// A file with a stale total on it, to show whether anything recomputes it.
void DocumentLifecycle::makeLockedCandidate() {
    TADocument *maker = *controller().openUntitledDocument();
    TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(maker->database().context());
    invoice->setIdentification(QStringLiteral("R-7"));
    TAMaterial *material = TAContextDatabase::createMaterialInContext(maker->database().context());
    material->setQuantity(dec("2"));
    material->setPrice(dec("10"));
    material->setInvoice(invoice);
    maker->managedObjectContext()->processPendingChanges();
    invoice->setPrimitiveValueForKey(QVariant::fromValue(dec("999")), QStringLiteral("total"));
    ASSERT_TRUE(maker->saveAs(path("locked.tadb")).ok());
    controller().closeDocument(maker);
    jobs.calls.clear();
}

void DocumentLifecycle::expectLockedBehaviour(TADocument *document) {
    QObject::connect(&document->cacheUpdater(), &TAInvoiceCacheUpdater::cachedValuesApplied,
                     &document->cacheUpdater(), [this] { ++appliedRecords; });
    EXPECT_TRUE(document->isLockedOrInReadOnlyMode());
    EXPECT_FALSE(jobs.calls.contains(QStringLiteral("recurring")));
    auto *invoice =
        TAContextDatabase::getInvoicesInContext(document->database().context()).value(0);
    ASSERT_NE(invoice, nullptr);
    EXPECT_EQ(invoice->identification(), QStringLiteral("R-7"));
    // Anything the opening handed the worker has run and come back before the totals are read.
    ASSERT_TRUE(waitForCacheWorker(document));
    EXPECT_EQ(invoice->total(), dec("999"));
    EXPECT_EQ(appliedRecords, 0);
    EXPECT_FALSE(document->hasAutosaveScheduled());
    EXPECT_FALSE(document->autosaveWithImplicitCancellability().value());
    // An edit in memory is still totalled, on the spot.
    invoice->items().value(0)->setPrice(dec("4"));
    EXPECT_EQ(invoice->total(), dec("8"));
    EXPECT_FALSE(document->hasAutosaveScheduled());
    document->updateRecurringInvoices();
    EXPECT_FALSE(jobs.calls.contains(QStringLiteral("recurring")));
}

// A locked document refuses to save in place, with a message that names the file and the way
// out; the edits stay in the document and go into another file whole.
void DocumentLifecycle::expectEditsKeptForAnotherFile(TADocument *document) {
    TAInvoice *invoice =
        TAContextDatabase::getInvoicesInContext(document->database().context()).value(0);
    ASSERT_NE(invoice, nullptr);
    document->database().beginUndoGroupingWithName(QStringLiteral("Invoice edit"));
    invoice->setIdentification(QStringLiteral("R-8"));
    invoice->items().value(0)->setPrice(dec("4"));
    document->database().endUndoGrouping();
    // On the spot: a background run reads the file, which cannot take the edit.
    EXPECT_EQ(invoice->total(), dec("8"));
    EXPECT_FALSE(document->autosaveWithImplicitCancellability().value());
    auto refused = document->save();
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::FileReadOnly);
    EXPECT_EQ(refused.error().message,
              QStringLiteral("“locked.tadb” is locked or read-only, so your changes were not "
                             "saved. They are still in the document: use Save As to keep them in "
                             "another file."));
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_EQ(invoice->identification(), QStringLiteral("R-8"));

    auto savedAs = document->saveAs(path("rescued.tadb"));
    ASSERT_TRUE(savedAs.ok()) << savedAs.error().message.toStdString();
    EXPECT_FALSE(document->isLockedOrInReadOnlyMode());
    controller().closeDocument(document);
    TADocument *rescued = *controller().openDocumentWithContentsOfURL(path("rescued.tadb"));
    TAInvoice *copy =
        TAContextDatabase::getInvoicesInContext(rescued->database().context()).value(0);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->identification(), QStringLiteral("R-8"));
    EXPECT_EQ(copy->total(), dec("8"));
}

TEST_F(DocumentLifecycle, ReadOnlyFileOpensShowsDataAndChangesNothingInTheBackground) {
    makeLockedCandidate();
    ASSERT_TRUE(QFile::setPermissions(path("locked.tadb"), QFile::ReadOwner | QFile::ReadGroup));
    auto opened = controller().openDocumentWithContentsOfURL(path("locked.tadb"));
    ASSERT_TRUE(opened.ok()) << opened.error().message.toStdString();
    expectLockedBehaviour(*opened);
}

TEST_F(DocumentLifecycle, DocumentOnAReadOnlyStoreIsLockedToo) {
    makeLockedCandidate();
    auto opened = controller().openDocumentWithContentsOfURL(path("locked.tadb"), true);
    ASSERT_TRUE(opened.ok()) << opened.error().message.toStdString();
    expectLockedBehaviour(*opened);
}

TEST_F(DocumentLifecycle, LockedDocumentSavesItsEditsUnderANewNameAndLeavesItsFile) {
    makeLockedCandidate();
    const QByteArray before = fileBytes(path("locked.tadb"));
    TADocument *document = *controller().openDocumentWithContentsOfURL(path("locked.tadb"), true);
    TAContextDatabase::getInvoicesInContext(document->database().context())
        .value(0)
        ->setIdentification(QStringLiteral("R-8"));
    ASSERT_TRUE(document->saveAs(path("copy.tadb")).ok());
    EXPECT_FALSE(document->isLockedOrInReadOnlyMode());
    EXPECT_EQ(document->fileURL(), QFileInfo(path("copy.tadb")).absoluteFilePath());
    controller().closeDocument(document);
    EXPECT_EQ(fileBytes(path("locked.tadb")), before);
    document = *controller().openDocumentWithContentsOfURL(path("copy.tadb"));
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(document->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("R-8"));
}

TEST_F(DocumentLifecycle, SaveRefusesToOverwriteAnotherProgramsWrite) {
    TADocument *document = *controller().openUntitledDocument();
    ASSERT_TRUE(document->saveAs(path("shared.tadb")).ok());
    TAContextDatabase::createInvoiceInContext(document->database().context())
        ->setIdentification(QStringLiteral("ours"));
    // Another program commits: only the write-ahead log shows it.
    QFile log(path("shared.tadb") + QStringLiteral("-wal"));
    ASSERT_TRUE(log.open(QIODevice::ReadWrite));
    ASSERT_TRUE(log.setFileTime(QDateTime::currentDateTimeUtc().addSecs(60),
                                QFileDevice::FileModificationTime));
    log.close();
    EXPECT_TRUE(document->fileWasChangedByAnotherProgram());
    auto refused = document->save();
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::FileChangedElsewhere);
    // The autosave gives the same reason rather than a bare refusal.
    document->updateChangeCount(TADocument::ChangeDone);
    auto autosaved = document->autosaveWithImplicitCancellability();
    ASSERT_FALSE(autosaved.ok());
    EXPECT_EQ(autosaved.error().code, ErrorCode::FileChangedElsewhere);
    // Our own saves past the regular path never count as another program's.
    document->replaceRecordedModificationDate();
    EXPECT_TRUE(document->save().ok());
    EXPECT_FALSE(document->fileWasChangedByAnotherProgram());
}

TEST_F(DocumentLifecycle, MergeNotificationsBracketUndoForOpenDocumentsOnly) {
    TADocument *document = *controller().openUntitledDocument();
    ASSERT_TRUE(document->saveAs(path("merged.tadb")).ok());
    UndoManager *undo = document->managedObjectContext()->undoManager();
    TANotificationCenter &center = TANotificationCenter::defaultCenter();
    center.postNotificationName(QStringLiteral("prepareForMerge"), nullptr);
    EXPECT_FALSE(undo->isUndoRegistrationEnabled());
    center.postNotificationName(QStringLiteral("changesMerged"), nullptr);
    EXPECT_TRUE(undo->isUndoRegistrationEnabled());
    EXPECT_TRUE(document->fileModificationDate().isNull());
    controller().closeDocument(document);
    // A closed document no longer listens.
    center.postNotificationName(QStringLiteral("prepareForMerge"), nullptr);
    center.postNotificationName(QStringLiteral("changesMerged"), nullptr);
}

TEST_F(DocumentLifecycle, ClosingSavesWhatTheLastAutosaveMissed) {
    TADocument *document = *controller().openUntitledDocument();
    ASSERT_TRUE(document->saveAs(path("late.tadb")).ok());
    TAContextDatabase::createInvoiceInContext(document->database().context())
        ->setIdentification(QStringLiteral("late edit"));
    document->updateChangeCount(TADocument::ChangeDone);
    controller().closeDocument(document);
    document = *controller().openDocumentWithContentsOfURL(path("late.tadb"));
    ASSERT_EQ(TAContextDatabase::getInvoicesInContext(document->database().context()).size(), 1);
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(document->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("late edit"));
}

TEST_F(DocumentLifecycle, RevertThatCannotReadTheFileLeavesTheDocumentAsItWas) {
    TADocument *document = *controller().openUntitledDocument();
    ASSERT_TRUE(document->saveAs(path("gone.tadb")).ok());
    ASSERT_TRUE(TAContextDatabase::getInvoicesInContext(document->database().context())
                    .isEmpty()); // reads the file
    TAContextDatabase::createInvoiceInContext(document->database().context())
        ->setIdentification(QStringLiteral("unsaved"));
    ASSERT_TRUE(QFile::remove(path("gone.tadb")));
    EXPECT_FALSE(document->revertToContentsOfURL().ok());
    EXPECT_FALSE(TADocumentController::isReverting());
    ASSERT_NE(document->managedObjectContext(), nullptr);
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(document->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("unsaved"));
    EXPECT_TRUE(document->timersRunning());
    EXPECT_TRUE(document->undoWindowEnabled());
    // The deleted file is still reached through the open document: saved elsewhere, nothing
    // is lost.
    ASSERT_TRUE(document->saveAs(path("rescued.tadb")).ok());
    controller().closeDocument(document);
    document = *controller().openDocumentWithContentsOfURL(path("rescued.tadb"));
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext(document->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("unsaved"));
    EXPECT_EQ(count(document, "InvoiceTemplate"), LMBuiltInTemplates::templateNames().size());
}

TEST_F(DocumentLifecycle, ImmutableFileOpensReadOnlyAndItsEditsGoElsewhere) {
    makeLockedCandidate();
    ImmutableFlag flag(path("locked.tadb"));
    if (!flag.isSet())
        GTEST_SKIP() << flag.refusal();
    auto opened = controller().openDocumentWithContentsOfURL(path("locked.tadb"));
    ASSERT_TRUE(opened.ok()) << opened.error().message.toStdString();
    // The store itself knows, not only the document's look at the file.
    EXPECT_TRUE((*opened)->persistentStore()->isReadOnly());
    ASSERT_NO_FATAL_FAILURE(expectLockedBehaviour(*opened));
    expectEditsKeptForAnotherFile(*opened);
}

TEST_F(DocumentLifecycle, FileMadeImmutableWhileOpenRefusesToSaveInPlace) {
    makeLockedCandidate();
    TADocument *document = *controller().openDocumentWithContentsOfURL(path("locked.tadb"));
    ASSERT_TRUE(waitForCacheWorker(document));
    ASSERT_FALSE(document->isLockedOrInReadOnlyMode());
    ASSERT_TRUE(document->save().ok());
    ImmutableFlag flag(path("locked.tadb"));
    if (!flag.isSet())
        GTEST_SKIP() << flag.refusal();
    EXPECT_TRUE(document->isLockedOrInReadOnlyMode());
    ASSERT_NO_FATAL_FAILURE(expectEditsKeptForAnotherFile(document));
    flag.clear();
    // The refused save left nothing behind, not even in the log beside the file.
    auto original = controller().openDocumentWithContentsOfURL(path("locked.tadb"), true);
    ASSERT_TRUE(original.ok()) << original.error().message.toStdString();
    ASSERT_EQ(TAContextDatabase::getInvoicesInContext((*original)->database().context()).size(), 1);
    EXPECT_EQ(TAContextDatabase::getInvoicesInContext((*original)->database().context())
                  .value(0)
                  ->identification(),
              QStringLiteral("R-7"));
}
