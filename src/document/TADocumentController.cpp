#include "document/TADocumentController.h"

#include "document/TADocument.h"
#include "document/TADocumentJobs.h"
#include "document/TADocumentWindow.h"
#include "store/TAGlobal.h"

#include <QFileInfo>

#include <utility>

namespace {
bool g_reverting = false;
TADocumentJobs *g_jobs = nullptr;
} // namespace

TADocumentJobs &TADocumentJobs::instance() {
    static TADocumentJobs nothing;
    return g_jobs ? *g_jobs : nothing;
}

TADocumentJobs *TADocumentJobs::exchangeInstance(TADocumentJobs *jobs) {
    return std::exchange(g_jobs, jobs);
}

TADocumentController::TADocumentController() {
    TAGlobal::setDocumentRegistry(this);
}

TADocumentController &TADocumentController::sharedDocumentController() {
    static TADocumentController *shared = new TADocumentController;
    return *shared;
}

bool TADocumentController::isReverting() {
    return g_reverting;
}

bool TADocumentController::exchangeReverting(bool reverting) {
    return std::exchange(g_reverting, reverting);
}

Result<TADocument *> TADocumentController::openDocumentWithContentsOfURL(const QString &path,
                                                                         bool readOnly) {
    if (TADocument *open = documentForURL(path))
        return open;
    auto document = std::make_unique<TADocument>();
    if (auto read = document->readFromURL(path, readOnly); !read)
        return read.error();
    return addOpened(std::move(document));
}

Result<TADocument *> TADocumentController::openUntitledDocument() {
    auto document = std::make_unique<TADocument>();
    if (auto made = document->initUntitled(); !made)
        return made.error();
    return addOpened(std::move(document));
}

Result<TADocument *> TADocumentController::addOpened(std::unique_ptr<TADocument> document) {
    TADocument *opened = document.get();
    m_documents.push_back(std::move(document));
    if (m_windowFactory)
        opened->setWindow(m_windowFactory(*opened));
    opened->windowControllerDidLoadNib();
    m_current = opened;
    return opened;
}

void TADocumentController::closeDocument(TADocument *document) {
    for (auto it = m_documents.begin(); it != m_documents.end(); ++it) {
        if (it->get() != document)
            continue;
        document->windowShouldClose();
        std::unique_ptr<TADocument> closing = std::move(*it);
        m_documents.erase(it);
        if (m_current == document)
            m_current = m_documents.empty() ? nullptr : m_documents.back().get();
        return;
    }
}

QList<TADocument *> TADocumentController::documents() const {
    QList<TADocument *> list;
    for (const auto &document : m_documents)
        list.append(document.get());
    return list;
}

namespace {

// Another name of the same file (a link, "..") is the same file; a path that does not exist
// yet can only be compared as written.
QString fileKey(const QString &path) {
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

} // namespace

TADocument *TADocumentController::documentForURL(const QString &path) const {
    const QString wanted = fileKey(path);
    for (const auto &document : m_documents)
        if (!document->fileURL().isEmpty() && fileKey(document->fileURL()) == wanted)
            return document.get();
    return nullptr;
}

TADocument *TADocumentController::currentDocument() const {
    return m_current;
}

TADocument *
TADocumentController::documentForRootContext(const ManagedObjectContext *context) const {
    for (const auto &document : m_documents)
        if (context && document->managedObjectContext() == context)
            return document.get();
    return nullptr;
}

TADocument *TADocumentController::documentOfWindow(const QObject *window) const {
    for (const auto &document : m_documents)
        if (window && document->window() && document->window()->windowObject() == window)
            return document.get();
    return nullptr;
}

// A dialog over a document's window is a child of it.
const QObject *TADocumentController::parentWindow(const QObject *window) const {
    return window ? window->parent() : nullptr;
}

const QObject *TADocumentController::windowOfView(const QObject *view) const {
    for (const QObject *object = view; object; object = object->parent())
        if (documentOfWindow(object))
            return object;
    return nullptr;
}

int TADocumentController::documentsCount() const {
    return int(m_documents.size());
}

ManagedObjectContext *TADocumentController::contextOfDocument(const TADocument *document) const {
    return document ? document->managedObjectContext() : nullptr;
}
