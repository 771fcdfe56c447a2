#include "cli/CliDocument.h"

#include "store/document/TADocument.h"
#include "store/document/TADocumentController.h"
#include "store/document/TAInvoiceCacheUpdater.h"

#include <QFileInfo>

namespace {
TADocumentController &controller() {
    return TADocumentController::sharedDocumentController();
}
} // namespace

CliDocument::~CliDocument() {
    controller().closeDocument(m_document);
}

Result<std::unique_ptr<CliDocument>> CliDocument::open(const QString &path, bool readOnly) {
    auto opened = controller().openDocumentWithContentsOfURL(path, readOnly);
    if (!opened)
        return opened.error();
    return std::unique_ptr<CliDocument>(new CliDocument(*opened));
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
