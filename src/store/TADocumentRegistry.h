#pragma once

class ManagedObjectContext;
class QObject;
class TADocument;

// What the open documents tell about themselves. The document controller installs one with
// TAGlobal::setDocumentRegistry; until then every lookup answers null or 0.
class TADocumentRegistry {
public:
    virtual ~TADocumentRegistry() = default;

    // The document of the preferences window if it has one, else the current document.
    virtual TADocument *currentDocument() const = 0;
    // The open document whose main context is exactly this root context.
    virtual TADocument *documentForRootContext(const ManagedObjectContext *context) const = 0;
    // The document of a window's controller, without walking to parent windows.
    virtual TADocument *documentOfWindow(const QObject *window) const = 0;
    virtual const QObject *parentWindow(const QObject *window) const = 0;
    virtual const QObject *windowOfView(const QObject *view) const = 0;
    virtual int documentsCount() const = 0;
    virtual ManagedObjectContext *contextOfDocument(const TADocument *document) const = 0;
};
