#pragma once

#include "foundation/Result.h"
#include "foundation/ScopedOverride.h"
#include "store/TADocumentRegistry.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <utility>

class TADocument;
class TADocumentWindow;

// The open documents of the process. Every document, whoever asks for it (the window, the
// command line, a test), is made here and goes through the same opening steps.
class TADocumentController : public QObject, public TADocumentRegistry {
    Q_OBJECT
public:
    static TADocumentController &sharedDocumentController();

    // The window a new document gets before its opening steps; none by default.
    using WindowFactory = std::function<TADocumentWindow *(TADocument &)>;
    // Gives documents opened while it lives their window from the factory; the program holds
    // one for its whole run.
    class ScopedWindowFactory {
    public:
        explicit ScopedWindowFactory(WindowFactory factory)
            : m_previous(
                  std::exchange(sharedDocumentController().m_windowFactory, std::move(factory))) {}
        ~ScopedWindowFactory() {
            sharedDocumentController().m_windowFactory = std::move(m_previous);
        }
        ScopedWindowFactory(const ScopedWindowFactory &) = delete;
        ScopedWindowFactory &operator=(const ScopedWindowFactory &) = delete;

    private:
        WindowFactory m_previous;
    };

    // The document of that file if it is open already; otherwise a new one, read and opened.
    Result<TADocument *> openDocumentWithContentsOfURL(const QString &path, bool readOnly = false);
    Result<TADocument *> openUntitledDocument();
    // Runs the closing steps and forgets the document.
    void closeDocument(TADocument *document);

    QList<TADocument *> documents() const;
    TADocument *documentForURL(const QString &path) const;
    void setCurrentDocument(TADocument *document) { m_current = document; }

    // Process-wide state of the application around documents.
    static bool isReverting();
    // Marks the process as reverting a document while it lives; whatever way the revert
    // leaves, the mark goes with it.
    class ScopedReverting : public ScopedOverride<bool> {
    public:
        ScopedReverting()
            : ScopedOverride(&TADocumentController::exchangeReverting, true) {}
    };
    // There is no versions browser here: always false.
    static bool isInVersions() { return false; }

    TADocument *currentDocument() const override;
    TADocument *documentForRootContext(const ManagedObjectContext *context) const override;
    TADocument *documentOfWindow(const QObject *window) const override;
    const QObject *parentWindow(const QObject *window) const override;
    const QObject *windowOfView(const QObject *view) const override;
    int documentsCount() const override;
    ManagedObjectContext *contextOfDocument(const TADocument *document) const override;

private:
    TADocumentController();
    static bool exchangeReverting(bool reverting);
    Result<TADocument *> addOpened(std::unique_ptr<TADocument> document);

    std::vector<std::unique_ptr<TADocument>> m_documents;
    TADocument *m_current = nullptr;
    WindowFactory m_windowFactory;
};
