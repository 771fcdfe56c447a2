#include "cli/CliDocument.h"

#include "document/TADocModelVersions.h"
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/SqliteConnection.h"
#include "objectstore/StoreSideFiles.h"

#include <QFileInfo>

#include <utility>

#include <sqlite3.h>

namespace {

int g_busyTimeoutMs = 5000;

TADocumentController &controller() {
    return TADocumentController::sharedDocumentController();
}

bool isOlderModel(const QByteArray &hash) {
    for (const ManagedObjectModel *model : TADocModelVersions::olderModels())
        if (model && model->versionHash() == hash)
            return true;
    return false;
}

Error inUse(const QString &path) {
    return Error{ErrorCode::FileLocked, QStringLiteral("The document “%1” is in use by another "
                                                       "program.")
                                            .arg(QFileInfo(path).fileName())};
}

// Copies one consistent state of the file, its write-ahead log included, under the locks any
// reader takes.
Result<void> backUp(const QString &from, const QString &to) {
    auto source = SqliteConnection::open(from, SqliteConnection::Mode::ReadOnly);
    if (!source)
        return source.error();
    auto target = SqliteConnection::open(to, SqliteConnection::Mode::Create);
    if (!target)
        return target.error();
    sqlite3_busy_timeout((*source)->handle(), g_busyTimeoutMs);
    auto copied = (*source)->copyInto(**target);
    if (!copied && copied.error().code == int(ErrorCode::FileLocked))
        return inUse(from);
    if (!copied)
        return Error{ErrorCode::FileNotReadable,
                     QStringLiteral("The document “%1” cannot be read (%2).")
                         .arg(QFileInfo(from).fileName(), copied.error().message)};
    return {};
}

} // namespace

CliDocument::CliDocument(TADocument *document)
    : m_document(document) {}

CliDocument::~CliDocument() {
    if (m_owned) {
        m_owned->windowShouldClose();
        m_owned.reset();
    } else if (m_document) {
        controller().closeDocument(m_document);
    }
}

int CliDocument::exchangeBusyTimeout(int milliseconds) {
    return std::exchange(g_busyTimeoutMs, milliseconds);
}

Result<std::unique_ptr<CliDocument>> CliDocument::open(const QString &path, bool readOnly) {
    auto opened = controller().openDocumentWithContentsOfURL(path, readOnly);
    if (!opened)
        return opened.error();
    return std::unique_ptr<CliDocument>(new CliDocument(*opened));
}

// Reading goes past the document controller, whose opening steps repair a document in memory
// (timers that belong to nothing go, a missing default currency is made): what a command
// reports or exports has to be what the file holds. Commands that write a document keep to
// the desktop's steps.
Result<std::unique_ptr<CliDocument>> CliDocument::read(const QString &path, View view) {
    auto sideFiles = std::make_unique<StoreSideFiles>(path);
    auto metadata = PersistentStore::metadataForFile(path);
    if (!metadata)
        return metadata.error();
    std::unique_ptr<CliDocument> document(new CliDocument);
    document->m_sideFiles = std::move(sideFiles);
    document->m_fileModelVersion = metadata->modelVersion;
    QString source = path;
    if (isOlderModel(metadata->modelHash)) {
        auto copy = document->upgradedCopy(path);
        if (!copy)
            return copy.error();
        source = *copy;
    }
    if (auto bound = document->bindStore(source); !bound)
        return bound.error();
    if (auto whole = document->readRows(); !whole)
        return whole.error();
    if (view == View::Opened)
        document->m_document->windowControllerDidLoadNib();
    return document;
}

// The file stays as it is: the copy is upgraded in place the way the desktop upgrades a
// document it opens, and then read like any current file.
Result<QString> CliDocument::upgradedCopy(const QString &path) {
    m_scratch = std::make_unique<QTemporaryDir>();
    if (!m_scratch->isValid())
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("No temporary folder for reading a document of an older "
                                    "version (%1).")
                         .arg(m_scratch->errorString())};
    const QString copy = m_scratch->filePath(QFileInfo(path).fileName());
    if (auto copied = backUp(path, copy); !copied)
        return copied.error();
    PersistentStore::Options options;
    options.olderModels = TADocModelVersions::olderModels();
    if (auto upgraded = PersistentStore::open(copy, TADocument::managedObjectModel(), options);
        !upgraded)
        return upgraded.error();
    return copy;
}

Result<void> CliDocument::bindStore(const QString &path) {
    PersistentStore::Options options;
    options.readOnly = true;
    options.busyTimeoutMs = g_busyTimeoutMs;
    auto store = PersistentStore::open(path, TADocument::managedObjectModel(), options);
    if (!store)
        return store.error();
    m_owned = std::make_unique<TADocument>();
    m_owned->setManagedObjectContext(std::make_unique<ManagedObjectContext>(*store));
    m_document = m_owned.get();
    return {};
}

// Every row is read before a command acts, so that damage anywhere in the file fails the
// command instead of leaving it a part of the document to report, list or export.
Result<void> CliDocument::readRows() {
    ManagedObjectContext &ctx = context();
    for (const EntityDescription *entity : ctx.model()->entities())
        if (!entity->isAbstract())
            if (auto loaded = ctx.loadEntity(entity->name(), false); !loaded)
                return loaded;
    return {};
}

Result<std::unique_ptr<CliDocument>> CliDocument::create(const QString &path) {
    if (QFileInfo::exists(path))
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("“%1” already exists; a new document is not written over it.")
                         .arg(QFileInfo(path).fileName())};
    auto document = createInMemory();
    if (!document)
        return document;
    if (auto saved = (*document)->saveAs(path); !saved)
        return saved.error();
    return document;
}

Result<std::unique_ptr<CliDocument>> CliDocument::createInMemory() {
    auto opened = controller().openUntitledDocument();
    if (!opened)
        return opened.error();
    std::unique_ptr<CliDocument> document(new CliDocument(*opened));
    document->clearContents();
    return document;
}

// The commands fill a new document themselves, from scratch: what the opening put in is
// dropped before anything was saved, as when the sample business is copied into a window.
void CliDocument::clearContents() {
    m_document->database().disableUndoRegistration();
    m_document->cacheUpdater().resetCacheUpdater();
    m_document->managedObjectContext()->reset();
    m_document->resetPreferences();
    m_document->database().enableUndoRegistration();
}

// Without the desktop's making of the preferences and default currency first: a document
// without them is shown and written without them.
void CliDocument::refreshCachedTotals() {
    TAInvoiceCacheUpdater::updateAllCachedValuesInContext(&context());
}

QString CliDocument::fileModelVersion() const {
    return m_fileModelVersion.isEmpty() ? m_document->persistentStore()->originalModelVersion()
                                        : m_fileModelVersion;
}

PersistentStore &CliDocument::store() {
    return *m_document->persistentStore();
}

ManagedObjectContext &CliDocument::context() {
    return *m_document->managedObjectContext();
}

TADatabase &CliDocument::database() {
    return m_document->database();
}

Result<void> CliDocument::save() {
    return m_document->save();
}

Result<void> CliDocument::saveAs(const QString &path) {
    return m_document->saveAs(path);
}
