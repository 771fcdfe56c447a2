#pragma once

#include "foundation/Result.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class ManagedObjectModel;
class OTVersionManager;
class PersistentStore;
class TAInvoiceCacheUpdater;
class TADocumentWindow;
class TAPreferences;

// One open document file: its store, main context, data access, background timers and
// invoice cache updater, and the rules of saving, autosaving, locking and reverting. It needs
// no window: the window's steps go through TADocumentWindow, which the shell installs.
class TADocument : public QObject, public TADocumentHooks {
    Q_OBJECT
public:
    enum ChangeType { ChangeDone = 0, ChangeUndone = 1, ChangeCleared = 2, ChangeRedone = 5 };
    static inline const QString kFileIsOpenDomain = QStringLiteral("FileIsOpen");
    static constexpr int kFileIsOpenCode = 830001;
    static constexpr int kRecurringInterval = 60 * 1000;
    static constexpr int kCurrenciesInterval = 300 * 1000;

    explicit TADocument(QObject *parent = nullptr);
    ~TADocument() override;

    // The process-wide manager of the document format's versions.
    static OTVersionManager &versionManager();

    // Before the opening steps: a store on the file (older versions are upgraded in place), or
    // a new store in memory for an untitled document.
    Result<void> readFromURL(const QString &path, bool readOnly = false);
    Result<void> initUntitled();
    // The opening steps, for every document however it was opened.
    void windowControllerDidLoadNib();

    void setWindow(TADocumentWindow *window) { m_window = window; }
    TADocumentWindow *window() const { return m_window; }

    static const ManagedObjectModel &managedObjectModel();
    ManagedObjectContext *managedObjectContext() const { return m_context.get(); }
    // Replaces the context; the updater, undo window and calendar observation pause around it.
    void setManagedObjectContext(std::unique_ptr<ManagedObjectContext> context);
    PersistentStore *persistentStore() const { return m_store.get(); }
    std::shared_ptr<PersistentStore> sharedStore() const { return m_store; }
    TADatabase &database() { return m_database; }
    TAInvoiceCacheUpdater &cacheUpdater() { return *m_updater; }
    // The file's path; empty for an untitled document.
    QString fileURL() const;

    // Drops the document's unsaved contents and copies in every object of another file, which
    // is only read: how the sample business is offered without ever opening the sample
    // itself. The reason when that file cannot be opened.
    Result<void> replaceContentsWithCopyOfURL(const QString &path);

    // Saving.
    bool isDocumentEdited() const { return m_changeCount != 0; }
    void updateChangeCount(int change) override;
    Result<void> save();
    Result<void> saveAs(const QString &path);
    // Saves a changed document that has a file, unless it is locked: true when it saved,
    // false when there was nothing it may save, the save's reason when that failed.
    Result<bool> autosaveWithImplicitCancellability();
    void scheduleAutosaving();
    bool hasAutosaveScheduled() const { return m_autosaveTimer.isActive(); }
    // How long this document, once changed, waits before it saves itself into its file.
    void setAutosaveDelay(int milliseconds) { m_autosaveDelay = milliseconds; }
    // Refuses a target that another open document has.
    Result<void> panel(const QObject *sender, const QString &validateURL) const;
    Result<void> revertToContentsOfURL();

    // The modification date the document last saw; null after saves past the regular path,
    // which keeps the check for outside changes quiet until the next regular save.
    QDateTime fileModificationDate() const { return m_fileModificationDate; }
    void setFileModificationDate(const QDateTime &date) { m_fileModificationDate = date; }
    void replaceRecordedModificationDate();
    bool fileWasChangedByAnotherProgram() const;

    bool isLockedOrInReadOnlyMode() const;
    bool isInViewingMode() const { return false; }
    bool isInVersionsBrowsing() const;

    TAPreferences *preferences();
    void resetPreferences() { m_preferences = nullptr; }
    bool isLockedWithPassword();
    void unlockWithoutReload() { m_passwordEntered = true; }
    void unlock();
    void reloadSidebar();

    bool validateMenuItem(int tag) const { return tag != 111; }
    void willPresentError(const Error &error) const;

    // Cloud merge.
    void prepareForICloudMerge();
    void iCloudChangedMerged();

    bool undoWindowEnabled() const { return m_undoWindowEnabled; }
    void setUndoWindowEnabled(bool enabled);

    void updateRecurringInvoices();
    void updateCurrencies();
    void updateInvoicesCache();
    bool timersRunning() const;

    // Closing the window: always allowed.
    bool windowShouldClose();

signals:
    // The document went from saved to changed or back: the window's title shows it.
    void documentEditedChanged(bool edited);

private:
    void bindStore(std::shared_ptr<PersistentStore> store);
    void startTimers();
    void stopTimers();
    // For the autosaves nobody waits on: the timer's and the one on closing.
    void autosaveOrLog();
    void disableDocumentStuff();
    void recordSavedModificationDate();
    Result<void> writeContext();
    Result<void> moveContextTo(const QString &path);
    void connectUndoManager();
    void observeMergeNotifications(bool observe);

    std::shared_ptr<PersistentStore> m_store;
    std::unique_ptr<ManagedObjectContext> m_context;
    TADatabase m_database;
    std::unique_ptr<TAInvoiceCacheUpdater> m_updater;
    TADocumentWindow *m_window = nullptr;
    QTimer *m_recurringInvoiceTimer = nullptr;
    QTimer *m_currenciesUpdateTimer = nullptr;
    QTimer m_autosaveTimer;
    int m_autosaveDelay = 30 * 1000;
    TAPreferences *m_preferences = nullptr;
    QList<QMetaObject::Connection> m_undoWindowConnections;
    QList<QMetaObject::Connection> m_changeCountConnections;
    int m_lastUndoCount = 0;
    QDateTime m_fileModificationDate;
    int m_changeCount = 0;
    bool m_passwordEntered = false;
    bool m_undoWindowEnabled = false;
    bool m_calendarObserved = false;
    QList<int> m_mergeObservers;
};
