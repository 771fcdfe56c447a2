#include "store/TAGlobal.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocumentRegistry.h"

#include <atomic>

namespace {
std::atomic<TADocumentRegistry *> g_registry{nullptr};
std::atomic<bool> g_markAsEdited{false};

const ManagedObject *objectIn(const QVariant &value) {
    return dynamic_cast<const ManagedObject *>(KeyValueCoding::fromVariant(value));
}

// URLs fold their host to lower case, and the host is the store's identity: give it back the
// spelling of the store it names.
QString uriTextOf(const QUrl &url, const ManagedObjectContext *context) {
    QString text = url.toString();
    const PersistentStore *store = context->persistentStore();
    if (store && url.host().compare(store->uuid(), Qt::CaseInsensitive) == 0) {
        const qsizetype at = text.indexOf(url.host(), 0, Qt::CaseInsensitive);
        if (at >= 0)
            text.replace(at, url.host().size(), store->uuid());
    }
    return text;
}

ManagedObjectContext *contextOf(const TADocument *document) {
    TADocumentRegistry *registry = g_registry.load();
    return document && registry ? registry->contextOfDocument(document) : nullptr;
}
} // namespace

void TAGlobal::setDocumentRegistry(TADocumentRegistry *registry) {
    g_registry.store(registry);
}

TADocumentRegistry *TAGlobal::exchangeDocumentRegistry(TADocumentRegistry *registry) {
    return g_registry.exchange(registry);
}

TADocumentRegistry *TAGlobal::documentRegistry() {
    return g_registry.load();
}

TADocument *TAGlobal::currentDocument() {
    TADocumentRegistry *registry = g_registry.load();
    return registry ? registry->currentDocument() : nullptr;
}

TADocument *TAGlobal::documentByContext(const ManagedObjectContext *context) {
    TADocumentRegistry *registry = g_registry.load();
    if (!context || !registry)
        return nullptr;
    while (const ManagedObjectContext *parent = context->parentContext())
        context = parent;
    return registry->documentForRootContext(context);
}

TADocument *TAGlobal::documentForWindow(const QObject *window) {
    TADocumentRegistry *registry = g_registry.load();
    if (!registry)
        return nullptr;
    for (; window; window = registry->parentWindow(window))
        if (TADocument *document = registry->documentOfWindow(window))
            return document;
    return nullptr;
}

TADocument *TAGlobal::documentForView(const QObject *view) {
    TADocumentRegistry *registry = g_registry.load();
    if (!view || !registry)
        return nullptr;
    return documentForWindow(registry->windowOfView(view));
}

int TAGlobal::documentsCount() {
    TADocumentRegistry *registry = g_registry.load();
    return registry ? registry->documentsCount() : 0;
}

void TAGlobal::setMarkAsEdited(bool markAsEdited) {
    g_markAsEdited.store(markAsEdited);
}

bool TAGlobal::markAsEdited() {
    return g_markAsEdited.load();
}

bool TAGlobal::takeMarkAsEdited() {
    return g_markAsEdited.exchange(false);
}

QUrl TAGlobal::encodeObject(const ManagedObject *object) {
    if (!object || !object->objectID().isValid())
        return {};
    return QUrl(object->uriText());
}

QUrl TAGlobal::encodeObject(const QVariant &object) {
    return encodeObject(objectIn(object));
}

QList<QUrl> TAGlobal::encodeObjects(const QVariant &objects) {
    QList<QUrl> urls;
    if (objects.metaType() == QMetaType::fromType<QList<ManagedObject *>>())
        return encodeObjects(objects.value<QList<ManagedObject *>>());
    if (objects.metaType() != QMetaType::fromType<QVariantList>())
        return urls;
    for (const QVariant &member : objects.toList())
        if (const QUrl url = encodeObject(member); !url.isEmpty())
            urls.append(url);
    return urls;
}

QList<QUrl> TAGlobal::encodeObjects(const QList<ManagedObject *> &objects) {
    QList<QUrl> urls;
    for (const ManagedObject *object : objects)
        if (const QUrl url = encodeObject(object); !url.isEmpty())
            urls.append(url);
    return urls;
}

ManagedObject *TAGlobal::decodeObjectForDocument(const TADocument *document, const QVariant &url) {
    return decodeObjectForDocument(contextOf(document), url);
}

ManagedObject *TAGlobal::decodeObjectForDocument(ManagedObjectContext *context,
                                                 const QVariant &url) {
    if (!context || url.metaType() != QMetaType::fromType<QUrl>())
        return nullptr;
    const QUrl value = url.toUrl();
    if (value.isEmpty())
        return nullptr;
    return context->objectWithURI(uriTextOf(value, context));
}

QList<ManagedObject *> TAGlobal::decodeObjectsForDocument(const TADocument *document,
                                                          const QVariant &urls) {
    return decodeObjectsForDocument(contextOf(document), urls);
}

QList<ManagedObject *> TAGlobal::decodeObjectsForDocument(ManagedObjectContext *context,
                                                          const QVariant &urls) {
    QList<ManagedObject *> objects;
    if (!context)
        return objects;
    QVariantList members;
    if (urls.metaType() == QMetaType::fromType<QList<QUrl>>()) {
        for (const QUrl &url : urls.value<QList<QUrl>>())
            members.append(url);
    } else if (urls.metaType() == QMetaType::fromType<QVariantList>()) {
        members = urls.toList();
    }
    for (const QVariant &member : members)
        if (ManagedObject *object = decodeObjectForDocument(context, member))
            objects.append(object);
    return objects;
}
