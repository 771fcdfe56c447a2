#include "document/TADocument.h"

#include "billing/TAInvoiceCacheRequests.h"
#include "document/OTVersionManager.h"
#include "document/TADocModelVersions.h"
#include "document/TADocumentController.h"
#include "document/TADocumentJobs.h"
#include "document/TADocumentWindow.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "foundation/Check.h"
#include "foundation/OTFunctions.h"
#include "foundation/TANotificationCenter.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/UndoManager.h"
#include "store/TADocModel.h"
#include "store/TAGlobal.h"
#include "store/entities/TAPreferences.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>
#include <QtDebug>

#include <exception>
#include <new>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

bool fileIsImmutable(const QString &path) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    int flags = 0;
    const bool known = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    ::close(fd);
    return known && (flags & FS_IMMUTABLE_FL);
}

// Timers need the application's event loop; a document used without one (a test of the data
// alone) simply has none running.
bool hasEventLoop() {
    return QCoreApplication::instance() != nullptr;
}

TADocumentWindow &noWindow() {
    static TADocumentWindow nothing;
    return nothing;
}

} // namespace

TADocument::TADocument(QObject *parent)
    : QObject(parent)
    , m_updater(std::make_unique<TAInvoiceCacheUpdater>(*this)) {
    m_database.setDocument(this);
    m_autosaveTimer.setSingleShot(true);
    connect(&m_autosaveTimer, &QTimer::timeout, this, [this] { autosaveOrLog(); });
}

TADocument::~TADocument() {
    observeMergeNotifications(false);
    stopTimers();
    m_updater->setCacheUpdaterEnabled(false);
    m_updater->stop();
    if (m_context)
        TAInvoiceCacheRequests::setQueueForContext(m_context.get(), nullptr);
    m_database.setContext(nullptr);
}

OTVersionManager &TADocument::versionManager() {
    static OTVersionManager *manager = [] {
        auto *made = new OTVersionManager;
        TADocModelVersions::registerVersions(*made);
        return made;
    }();
    return *manager;
}

const ManagedObjectModel &TADocument::managedObjectModel() {
    return TADocModel::model();
}

// --- Reading --------------------------------------------------------------------------------

namespace {

Result<std::shared_ptr<PersistentStore>> openStore(const QString &path, bool readOnly) {
    PersistentStore::Options options;
    options.readOnly = readOnly;
    // Files of earlier versions are brought up to date by the store as they open.
    options.olderModels = TADocModelVersions::olderModels();
    return PersistentStore::open(path, TADocument::managedObjectModel(), options);
}

} // namespace

Result<void> TADocument::readFromURL(const QString &path, bool readOnly) {
    auto store = openStore(path, readOnly);
    if (!store)
        return store.error();
    bindStore(*store);
    recordSavedModificationDate();
    return {};
}

Result<void> TADocument::initUntitled() {
    auto store = PersistentStore::createInMemory(managedObjectModel());
    if (!store)
        return store.error();
    bindStore(*store);
    return {};
}

void TADocument::bindStore(std::shared_ptr<PersistentStore> store) {
    m_store = std::move(store);
    setManagedObjectContext(std::make_unique<ManagedObjectContext>(m_store));
}

void TADocument::setManagedObjectContext(std::unique_ptr<ManagedObjectContext> context) {
    m_updater->setCacheUpdaterEnabled(false);
    setUndoWindowEnabled(false);
    window() ? window()->observeCalendarStore(false) : void();
    m_updater->stop();
    if (m_context)
        TAInvoiceCacheRequests::setQueueForContext(m_context.get(), nullptr);
    m_database.setContext(nullptr);
    m_context = std::move(context);
    if (!m_context)
        return;
    m_store = m_context->sharedStore();
    m_context->setProcessesPendingChangesAutomatically(true);
    TAInvoiceCacheRequests::install();
    TAInvoiceCacheRequests::setQueueForContext(m_context.get(), m_updater.get());
    m_database.setContext(m_context.get());
    connectUndoManager();
    m_updater->setCacheUpdaterEnabled(true);
    setUndoWindowEnabled(true);
    window() ? window()->observeCalendarStore(true) : void();
}

void TADocument::connectUndoManager() {
    for (const auto &connection : std::as_const(m_changeCountConnections))
        disconnect(connection);
    UndoManager *undo = m_context->undoManager();
    m_lastUndoCount = undo->undoCount();
    m_changeCountConnections = {connect(undo, &UndoManager::didCloseUndoGroup, this,
                                        [this, undo] {
                                            const bool stepAdded =
                                                undo->undoCount() > m_lastUndoCount;
                                            m_lastUndoCount = undo->undoCount();
                                            if (stepAdded && undo->groupingLevel() == 0 &&
                                                !undo->isUndoing() && !undo->isRedoing())
                                                updateChangeCount(ChangeDone);
                                        }),
                                connect(undo, &UndoManager::didUndo, this,
                                        [this, undo] {
                                            m_lastUndoCount = undo->undoCount();
                                            updateChangeCount(ChangeUndone);
                                        }),
                                connect(undo, &UndoManager::didRedo, this, [this, undo] {
                                    m_lastUndoCount = undo->undoCount();
                                    updateChangeCount(ChangeRedone);
                                })};
}

// --- Opening --------------------------------------------------------------------------------

void TADocument::windowControllerDidLoadNib() {
    TADocumentWindow &shell = m_window ? *m_window : noWindow();
    // The cache queue exists from construction; the database gets the context and drops
    // timers that no longer belong to anything.
    m_database.setContext(m_context.get());
    TAContextDatabase::deleteUnassignedTimersInContext(m_database.context());
    resetPreferences();
    // The window's sections, then a change mark when the opener asked for one.
    shell.makeSectionControllers(*this);
    if (TAGlobal::takeMarkAsEdited())
        updateChangeCount(ChangeDone);
    shell.fillTabs();
    // Nothing of the opening itself can be undone.
    m_context->processPendingChanges();
    m_context->undoManager()->removeAllActions();
    m_lastUndoCount = 0;
    // Undo comes back unless a version is shown or reverted; then the menu and the timers.
    if (!TADocumentController::isInVersions() && !TADocumentController::isReverting())
        setUndoWindowEnabled(true);
    shell.showStatusMenu();
    startTimers();
    // Bring derived data up to date: recurring invoices, exchange rates, cached totals.
    updateRecurringInvoices();
    updateCurrencies();
    updateInvoicesCache();
    m_updater->setCacheUpdaterEnabled(true);
    m_updater->setNeedsUpdateCache(false);
    // Listen for changes made elsewhere: other contexts, and the calendars a little later.
    observeMergeNotifications(true);
    shell.observeCalendarStore(true);
    if (hasEventLoop())
        QTimer::singleShot(2000, this,
                           [this] { TADocumentJobs::instance().calendarsDidChange(*this); });
    // Show what was loaded, and save changes from now on.
    reloadSidebar();
    scheduleAutosaving();
    // What every document needs; a new file gets them here. Enabling undo again marks
    // the document changed, whatever was opened.
    m_database.disableUndoRegistration();
    m_database.getDefaultCurrency();
    TAContextDatabase::getTemplatesInContext(m_database.context());
    m_database.enableUndoRegistration();
}

void TADocument::startTimers() {
    stopTimers();
    if (!hasEventLoop())
        return;
    m_recurringInvoiceTimer = new QTimer(this);
    m_recurringInvoiceTimer->setInterval(kRecurringInterval);
    connect(m_recurringInvoiceTimer, &QTimer::timeout, this, &TADocument::updateRecurringInvoices);
    m_recurringInvoiceTimer->start();
    m_currenciesUpdateTimer = new QTimer(this);
    m_currenciesUpdateTimer->setInterval(kCurrenciesInterval);
    connect(m_currenciesUpdateTimer, &QTimer::timeout, this, &TADocument::updateCurrencies);
    m_currenciesUpdateTimer->start();
}

void TADocument::stopTimers() {
    delete m_recurringInvoiceTimer;
    m_recurringInvoiceTimer = nullptr;
    delete m_currenciesUpdateTimer;
    m_currenciesUpdateTimer = nullptr;
}

bool TADocument::timersRunning() const {
    return m_recurringInvoiceTimer && m_recurringInvoiceTimer->isActive() &&
           m_currenciesUpdateTimer && m_currenciesUpdateTimer->isActive();
}

void TADocument::updateRecurringInvoices() {
    // A locked file gets no invoices it did not ask for.
    if (!isLockedOrInReadOnlyMode())
        TADocumentJobs::instance().updateRecurringInvoices(*this);
}

void TADocument::updateCurrencies() {
    TADocumentJobs::instance().updateCurrencies(*this);
}

void TADocument::updateInvoicesCache() {
    m_updater->updateInvoicesCache();
}

Result<void> TADocument::replaceContentsWithCopyOfURL(const QString &path) {
    // Documents get their context when they are made.
    BF_CHECK(m_context,
             return Error{ErrorCode::Generic, QStringLiteral("The document is not open.")});
    Result<std::unique_ptr<ManagedObjectContext>> source =
        versionManager().managedObjectContextForURL(path);
    if (!source)
        return source.error();
    m_database.disableUndoRegistration();
    m_updater->resetCacheUpdater();
    m_context->reset();
    OTVersionManager::copyAllObjectsFromContext(source->get(), m_context.get());
    resetPreferences();
    m_database.enableUndoRegistration();
    return {};
}

// --- Saving ---------------------------------------------------------------------------------

QString TADocument::fileURL() const {
    return m_store ? m_store->path() : QString();
}

void TADocument::updateChangeCount(int change) {
    const bool wasEdited = isDocumentEdited();
    switch (change) {
    case ChangeDone:
    case ChangeRedone:
        ++m_changeCount;
        break;
    case ChangeUndone:
        --m_changeCount;
        break;
    case ChangeCleared:
        m_changeCount = 0;
        break;
    }
    if (m_changeCount != 0)
        scheduleAutosaving();
    if (wasEdited != isDocumentEdited())
        emit documentEditedChanged(isDocumentEdited());
}

void TADocument::scheduleAutosaving() {
    // Cheap checks first: this runs on every change.
    if (m_autosaveTimer.isActive() || !isDocumentEdited() || fileURL().isEmpty() ||
        !hasEventLoop() || isLockedOrInReadOnlyMode())
        return;
    m_autosaveTimer.start(m_autosaveDelay);
}

Result<bool> TADocument::autosaveWithImplicitCancellability() {
    if (isLockedOrInReadOnlyMode() || fileURL().isEmpty() || !isDocumentEdited())
        return false;
    if (auto saved = save(); !saved)
        return saved.error();
    return true;
}

void TADocument::autosaveOrLog() {
    // Nobody waits on an autosave to show its failure; the edits stay in the document and
    // the next save, by hand or by timer, tries again.
    if (auto saved = autosaveWithImplicitCancellability(); !saved)
        willPresentError(saved.error());
}

namespace {

// The one place where an exception is caught: a write that runs out of memory (Qt's
// containers throw then) fails like any other, with a reason, and the document stays as it
// was.
template <typename Write> Result<void> guardedWrite(Write write) {
    try {
        return write();
    } catch (const std::bad_alloc &) {
        return Error{ErrorCode::WriteFailed,
                     TADocument::tr("The document could not be saved (out of memory).")};
    } catch (const std::exception &e) {
        return Error{ErrorCode::WriteFailed, TADocument::tr("The document could not be saved (%1).")
                                                 .arg(QString::fromLocal8Bit(e.what()))};
    }
}

} // namespace

Result<void> TADocument::writeContext() {
    return guardedWrite([this] { return m_context->save(); });
}

Result<void> TADocument::moveContextTo(const QString &path) {
    return guardedWrite([this, &path] { return m_context->saveAs(path); });
}

Result<void> TADocument::save() {
    if (!m_context)
        return Error{ErrorCode::WriteFailed, tr("The document has nothing to save.")};
    if (fileURL().isEmpty())
        return Error{ErrorCode::WriteFailed, tr("The document has no file yet.")};
    // A file made immutable after it was opened still takes commits into its write-ahead log,
    // which would then sit beside a file that must not change: refuse before writing.
    if (isLockedOrInReadOnlyMode())
        return Error{ErrorCode::FileReadOnly,
                     tr("“%1” is locked or read-only, so your changes were not saved. They are "
                        "still in the document: use Save As to keep them in another file.")
                         .arg(QFileInfo(fileURL()).fileName())};
    // Writing now would silently undo what the other program wrote.
    if (fileWasChangedByAnotherProgram())
        return Error{ErrorCode::FileChangedElsewhere,
                     tr("“%1” was changed by another program since you opened or saved it. "
                        "Revert to see those changes, or save your document under another name.")
                         .arg(QFileInfo(fileURL()).fileName())};
    if (auto saved = writeContext(); !saved)
        return saved;
    recordSavedModificationDate();
    updateChangeCount(ChangeCleared);
    m_autosaveTimer.stop();
    return {};
}

Result<void> TADocument::saveAs(const QString &path) {
    if (!m_context)
        return Error{ErrorCode::WriteFailed, tr("The document has nothing to save.")};
    if (auto allowed = panel(nullptr, path); !allowed)
        return allowed;
    // The store moves to the new file first and the changes are written there: the old file
    // keeps its last saved state, and a locked file's edits can still go somewhere new.
    if (auto written = moveContextTo(path); !written)
        return written;
    recordSavedModificationDate();
    updateChangeCount(ChangeCleared);
    m_autosaveTimer.stop();
    return {};
}

Result<void> TADocument::panel(const QObject *sender, const QString &validateURL) const {
    (void)sender;
    const TADocument *holder =
        TADocumentController::sharedDocumentController().documentForURL(validateURL);
    if (holder && holder != this)
        return Error{kFileIsOpenCode,
                     tr("Another file saved in this location is already opened. Please close "
                        "it and try again."),
                     kFileIsOpenDomain};
    return {};
}

namespace {

// Commits land in the write-ahead log first, and a checkpoint moves them into the file later:
// either may be the newer trace of a write.
QDateTime lastWritten(const QString &path) {
    const QDateTime file = QFileInfo(path).lastModified();
    const QFileInfo log(path + QStringLiteral("-wal"));
    return log.exists() && log.lastModified() > file ? log.lastModified() : file;
}

} // namespace

void TADocument::recordSavedModificationDate() {
    const QString path = fileURL();
    m_fileModificationDate = path.isEmpty() ? QDateTime() : lastWritten(path);
}

void TADocument::replaceRecordedModificationDate() {
    // A save past the regular path: the date is looked up where nothing is found, so it
    // becomes null and the check for changes by other programs stays quiet until the next
    // regular save, instead of warning about our own write.
    m_fileModificationDate = QFileInfo(QUrl::fromLocalFile(fileURL()).toString()).lastModified();
}

bool TADocument::fileWasChangedByAnotherProgram() const {
    if (m_fileModificationDate.isNull() || fileURL().isEmpty())
        return false;
    return lastWritten(fileURL()) > m_fileModificationDate;
}

bool TADocument::isLockedOrInReadOnlyMode() const {
    if (!m_store || m_store->isInMemory())
        return false;
    return m_store->isReadOnly() || isInViewingMode() || fileIsImmutable(m_store->path());
}

bool TADocument::isInVersionsBrowsing() const {
    return TADocumentController::isInVersions();
}

void TADocument::willPresentError(const Error &error) const {
    qWarning().noquote() << QStringLiteral("ERROR: %1").arg(error.message);
}

// --- Password and preferences ---------------------------------------------------------------

TAPreferences *TADocument::preferences() {
    if (!m_preferences)
        m_preferences = TAContextDatabase::getPreferencesInContext(m_database.context());
    return m_preferences;
}

bool TADocument::isLockedWithPassword() {
    const TAPreferences *prefs = preferences();
    if (!prefs || OTFunctions::isEmptyString(prefs->password()))
        return false;
    return !m_passwordEntered;
}

void TADocument::unlock() {
    unlockWithoutReload();
    reloadSidebar();
}

void TADocument::reloadSidebar() {
    if (m_window)
        m_window->reloadSidebar(isLockedWithPassword());
}

// --- Undo window ----------------------------------------------------------------------------

void TADocument::setUndoWindowEnabled(bool enabled) {
    for (const auto &connection : std::as_const(m_undoWindowConnections))
        disconnect(connection);
    m_undoWindowConnections.clear();
    m_undoWindowEnabled = enabled && m_context;
    if (!m_undoWindowEnabled)
        return;
    UndoManager *undo = m_context->undoManager();
    auto shell = [this]() -> TADocumentWindow & { return m_window ? *m_window : noWindow(); };
    m_undoWindowConnections = {connect(undo, &UndoManager::willUndo, this,
                                       [shell] { shell().undoManagerWillUndoOrRedo(); }),
                               connect(undo, &UndoManager::willRedo, this,
                                       [shell] { shell().undoManagerWillUndoOrRedo(); }),
                               connect(undo, &UndoManager::didUndo, this,
                                       [this, shell, undo] {
                                           m_context->processPendingChanges();
                                           shell().undoManagerDidUndo(undo->redoActionName());
                                           reloadSidebar();
                                       }),
                               connect(undo, &UndoManager::didRedo, this, [this, shell, undo] {
                                   m_context->processPendingChanges();
                                   shell().undoManagerDidRedo(undo->undoActionName());
                                   reloadSidebar();
                               })};
}

// --- Cloud merge ----------------------------------------------------------------------------

void TADocument::prepareForICloudMerge() {
    m_database.disableUndoRegistration();
}

void TADocument::iCloudChangedMerged() {
    resetPreferences();
    reloadSidebar();
    TADocumentJobs::instance().reloadTimersPool();
    replaceRecordedModificationDate();
    m_database.enableUndoRegistration();
}

void TADocument::observeMergeNotifications(bool observe) {
    TANotificationCenter &center = TANotificationCenter::defaultCenter();
    for (int token : std::exchange(m_mergeObservers, {}))
        center.removeObserver(token);
    if (!observe)
        return;
    // From any object: a merge touches every document of the store.
    QPointer<TADocument> self(this);
    m_mergeObservers = {center.addObserver(QStringLiteral("prepareForMerge"),
                                           [self](const QString &, ManagedObject *) {
                                               if (self)
                                                   self->prepareForICloudMerge();
                                           }),
                        center.addObserver(QStringLiteral("changesMerged"),
                                           [self](const QString &, ManagedObject *) {
                                               if (self)
                                                   self->iCloudChangedMerged();
                                           })};
}

// --- Revert and close -----------------------------------------------------------------------

void TADocument::disableDocumentStuff() {
    m_updater->setCacheUpdaterEnabled(false);
    setUndoWindowEnabled(false);
    if (m_window)
        m_window->detachTemplateList();
    stopTimers();
    if (m_window)
        m_window->observeCalendarStore(false);
    TADocumentJobs::instance().deleteTimersFromContext(m_context.get());
}

Result<void> TADocument::revertToContentsOfURL() {
    const QString path = fileURL();
    if (path.isEmpty())
        return Error{ErrorCode::FileMissing, tr("The document has no file to revert to.")};
    {
        // Ends before the opening steps, which then give undo back as for any opened file.
        const TADocumentController::ScopedReverting reverting;
        // The file is opened before anything of the open document is taken down: a file that
        // cannot be read any more leaves the document as it was, unsaved changes and all.
        auto store = openStore(path, m_store && m_store->isReadOnly());
        if (!store)
            return store.error();
        disableDocumentStuff();
        if (m_window) {
            m_window->detachTemplateList();
            m_window->cleanControllers();
        }
        m_updater->stop();
        m_updater->resetCacheUpdater();
        setManagedObjectContext(nullptr);
        m_store.reset();
        bindStore(*store);
        recordSavedModificationDate();
    }
    updateChangeCount(ChangeCleared);
    windowControllerDidLoadNib();
    replaceRecordedModificationDate();
    return {};
}

bool TADocument::windowShouldClose() {
    TADocumentJobs::instance().deleteTimersFromContext(m_context.get());
    if (m_window) {
        TADocumentController &controller = TADocumentController::sharedDocumentController();
        if (controller.currentDocument() == this || controller.documentsCount() <= 1)
            m_window->removeActionMenu();
        if (controller.documentsCount() <= 1)
            m_window->hideStatusMenu();
        m_window->detachPreferencesWindow();
        m_window->cleanControllers();
    }
    setUndoWindowEnabled(false);
    m_updater->setCacheUpdaterEnabled(false);
    m_updater->stop();
    stopTimers();
    m_autosaveTimer.stop();
    observeMergeNotifications(false);
    // The document saves itself as it goes, so closing never asks: what the last autosave
    // has not caught yet is saved now rather than lost.
    autosaveOrLog();
    return true;
}
