#pragma once

#include "foundation/ScopedOverride.h"

#include <QList>
#include <QUrl>
#include <QVariant>

class ManagedObject;
class ManagedObjectContext;
class QObject;
class TADocument;
class TADocumentRegistry;

// Finds the document an object, window or view belongs to, and turns persistent objects into
// URIs that survive outside the store and back.
class TAGlobal {
public:
    // Installed once by the document controller, for the whole run.
    static void setDocumentRegistry(TADocumentRegistry *registry);
    static TADocumentRegistry *documentRegistry();
    // Answers lookups from the given registry while it lives.
    class ScopedDocumentRegistry : public ScopedOverride<TADocumentRegistry *> {
    public:
        explicit ScopedDocumentRegistry(TADocumentRegistry *registry)
            : ScopedOverride(&TAGlobal::exchangeDocumentRegistry, registry) {}
    };

    static TADocument *currentDocument();
    // The document of the root of the context's chain; null for a context of no document.
    static TADocument *documentByContext(const ManagedObjectContext *context);
    // The document of the window, else of its parent windows.
    static TADocument *documentForWindow(const QObject *window);
    static TADocument *documentForView(const QObject *view);
    static int documentsCount();

    // Asks the next document that finishes loading to mark itself as changed.
    static void setMarkAsEdited(bool markAsEdited);
    static bool markAsEdited();
    // Answers the request and clears it, so that it serves one document only.
    static bool takeMarkAsEdited();

    // The object's URI; an empty URL for null or for anything that is no persistent object.
    static QUrl encodeObject(const ManagedObject *object);
    static QUrl encodeObject(const QVariant &object);
    // URIs of the members that are persistent objects; empty for anything but a list.
    static QList<QUrl> encodeObjects(const QVariant &objects);
    static QList<QUrl> encodeObjects(const QList<ManagedObject *> &objects);

    // The object a URI names in the document's context; null when either is missing, the
    // value is no URL, or the URI names nothing there.
    static ManagedObject *decodeObjectForDocument(const TADocument *document, const QVariant &url);
    static ManagedObject *decodeObjectForDocument(ManagedObjectContext *context,
                                                  const QVariant &url);
    // The same for each member of a list, dropping members that resolve to nothing.
    static QList<ManagedObject *> decodeObjectsForDocument(const TADocument *document,
                                                           const QVariant &urls);
    static QList<ManagedObject *> decodeObjectsForDocument(ManagedObjectContext *context,
                                                           const QVariant &urls);

private:
    TAGlobal() = delete;
    static TADocumentRegistry *exchangeDocumentRegistry(TADocumentRegistry *registry);
};
