#include "document/OTVersionManager.h"

#include "objectstore/DocumentFileWriter.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/SqliteConnection.h"
#include "objectstore/StoreSideFiles.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace {

Error failure(const char *text) {
    return Error{ErrorCode::Generic, QCoreApplication::translate("OTVersionManager", text)};
}

bool sameStoreType(const QString &type) {
    return type == OTVersionManager::kSQLiteStoreType;
}

} // namespace

void OTVersionManager::addVersion(const QString &version, const QString &model, const QString &type,
                                  Step step) {
    m_versions.append(Version{version, model, type, std::move(step)});
    std::stable_sort(m_versions.begin(), m_versions.end(),
                     [](const Version &a, const Version &b) { return a.version < b.version; });
}

QString OTVersionManager::latestVersion() const {
    return m_versions.isEmpty() ? QString() : m_versions.last().version;
}

QString OTVersionManager::latestModel() const {
    return m_versions.isEmpty() ? QString() : m_versions.last().model;
}

const ManagedObjectModel *OTVersionManager::loadModel(const QString &name) const {
    return m_loader ? m_loader(name) : nullptr;
}

std::optional<OTVersionManager::Version>
OTVersionManager::versionInformationForURL(const QString &path) const {
    if (path.isEmpty())
        return std::nullopt;
    // The identity is read without opening the file as a store, so recognising a file never
    // changes it.
    const auto metadata = PersistentStore::metadataForFile(path);
    if (!metadata)
        return std::nullopt;
    for (const Version &version : m_versions) {
        const ManagedObjectModel *model = loadModel(version.model);
        if (model && sameStoreType(version.type) && model->versionHash() == metadata->modelHash)
            return version;
    }
    return std::nullopt;
}

QString OTVersionManager::modelForURL(const QString &path) const {
    const auto version = versionInformationForURL(path);
    return version ? version->model : QString();
}

Result<std::unique_ptr<ManagedObjectContext>>
OTVersionManager::managedObjectContextForURL(const QString &path) const {
    const auto version = versionInformationForURL(path);
    const ManagedObjectModel *model = version ? loadModel(version->model) : nullptr;
    if (!model)
        return Error{ErrorCode::FileNotADocument,
                     QStringLiteral("“%1” is missing or not a document this version can open.")
                         .arg(QFileInfo(path).fileName())};
    auto store = PersistentStore::open(path, *model);
    if (!store)
        return store.error();
    return std::make_unique<ManagedObjectContext>(*store);
}

namespace {

// One consistent state of the file, its write-ahead log included, under the locks any reader
// takes.
bool copyStoreFile(const QString &from, const QString &to) {
    const StoreSideFiles sideFiles(from); // goes after the connections below
    auto source = SqliteConnection::open(from, SqliteConnection::Mode::ReadOnly);
    auto target = SqliteConnection::open(to, SqliteConnection::Mode::Create);
    return source && target && (*source)->copyInto(**target);
}

} // namespace

// The steps work on copies in a private temporary folder; the file is replaced only by the
// finished result, written whole beside it before it takes its name.
std::optional<Error> OTVersionManager::upgradeToTheLatestVersionURL(const QString &path) const {
    const auto found = versionInformationForURL(path);
    if (!found)
        return failure("Can't retrieve file information.");
    if (found->version == latestVersion())
        return std::nullopt;
    QTemporaryDir folder;
    if (!folder.isValid())
        return failure("Can't copy data file.");
    int made = 0;
    auto nextFile = [&folder, &made] {
        return folder.filePath(QStringLiteral("step-%1.tadb").arg(made++));
    };
    QString current = nextFile();
    if (!copyStoreFile(path, current))
        return failure("Can't copy data file.");
    qsizetype index = 0;
    while (m_versions.at(index).version != found->version)
        ++index;
    for (++index; index < m_versions.size(); ++index) {
        const QString next = nextFile();
        if (auto error = runStep(m_versions.at(index - 1), m_versions.at(index), current, next))
            return error;
        current = next;
    }
    auto result = SqliteConnection::open(current, SqliteConnection::Mode::ReadOnly);
    if (!result || !DocumentFileWriter::write(**result, QFileInfo(path).absoluteFilePath()))
        return failure("Can't replace data file.");
    return std::nullopt;
}

std::optional<Error> OTVersionManager::runStep(const Version &oldVersion, const Version &newVersion,
                                               const QString &current, const QString &next) const {
    const ManagedObjectModel *oldModel = loadModel(oldVersion.model);
    if (!oldModel)
        return failure("Can't open old data model.");
    const ManagedObjectModel *newModel = loadModel(newVersion.model);
    if (!newModel)
        return failure("Can't open new data model.");
    if (!sameStoreType(oldVersion.type))
        return failure("Can't create old database coordinator.");
    if (!sameStoreType(newVersion.type))
        return failure("Can't create new database coordinator.");
    auto oldStore = PersistentStore::open(current, *oldModel);
    if (!oldStore)
        return failure("Can't create old database.");
    auto newStore = PersistentStore::create(next, *newModel);
    if (!newStore)
        return failure("Can't create new database.");
    // Contexts close their connections before the stores go, leaving whole files behind.
    auto oldContext = std::make_unique<ManagedObjectContext>(*oldStore);
    auto newContext = std::make_unique<ManagedObjectContext>(*newStore);
    oldContext->setUndoManager(nullptr);
    newContext->setUndoManager(nullptr);
    if (newVersion.step)
        newVersion.step(oldContext.get(), newContext.get());
    if (!newContext->save())
        return failure("Can't save data file.");
    return std::nullopt;
}

ManagedObject *OTVersionManager::copyObject(ManagedObject *object, ManagedObjectContext *context) {
    if (!object || !context)
        return nullptr;
    const EntityDescription *target = context->model()->entity(object->entity()->name());
    if (!target || target->isAbstract())
        return nullptr;
    ManagedObject *copy = context->insertNewObject(target->name());
    // Stored values travel as they are: a copy is no edit, so no change rule may run on it.
    for (const AttributeDescription &attribute : object->entity()->attributes()) {
        const AttributeDescription *other = target->attribute(attribute.name);
        if (attribute.transient || !other || other->transient)
            continue;
        copy->setPrimitiveValueForKey(object->primitiveValueForKey(attribute.name), attribute.name);
    }
    return copy;
}

namespace {

QList<const EntityDescription *> entitiesToCopy(const std::optional<QStringList> &names,
                                                const ManagedObjectModel *model) {
    QList<const EntityDescription *> entities;
    if (!names)
        return model->entities();
    for (const QString &name : *names)
        if (const EntityDescription *entity = model->entity(name))
            entities.append(entity);
    return entities;
}

QList<ManagedObject *> ownObjects(const EntityDescription *entity, ManagedObjectContext *context) {
    FetchRequest request(entity->name());
    request.includesSubentities = false;
    auto fetched = context->executeFetchRequest(request);
    return fetched ? *fetched : QList<ManagedObject *>();
}

void linkCopy(ManagedObject *source, ManagedObject *copy,
              const QHash<QString, ManagedObject *> &copies) {
    for (const RelationshipDescription &relationship : source->entity()->relationships()) {
        const RelationshipDescription *other = copy->entity()->relationship(relationship.name);
        if (!other || other->toMany != relationship.toMany)
            continue;
        if (relationship.toMany) {
            for (ManagedObject *related : source->objectsForKey(relationship.name))
                if (ManagedObject *relatedCopy = copies.value(related->uriText()))
                    copy->addObjectForKey(relatedCopy, relationship.name);
        } else if (ManagedObject *related = source->objectForKey(relationship.name)) {
            if (ManagedObject *relatedCopy = copies.value(related->uriText()))
                copy->setObjectForKey(relatedCopy, relationship.name);
        }
    }
}

} // namespace

QHash<QString, ManagedObject *>
OTVersionManager::copyObjectsWithEntities(const std::optional<QStringList> &entities,
                                          ManagedObjectContext *fromContext,
                                          ManagedObjectContext *toContext) {
    QHash<QString, ManagedObject *> copies;
    if (!fromContext || !toContext)
        return copies;
    const QList<const EntityDescription *> list = entitiesToCopy(entities, fromContext->model());
    QHash<const EntityDescription *, QList<ManagedObject *>> sources;
    for (const EntityDescription *entity : list) {
        if (entity->isAbstract())
            continue;
        sources.insert(entity, ownObjects(entity, fromContext));
        for (ManagedObject *object : sources.value(entity))
            if (ManagedObject *copy = copyObject(object, toContext))
                copies.insert(object->uriText(), copy);
    }
    for (const EntityDescription *entity : list)
        for (ManagedObject *object : sources.value(entity))
            if (ManagedObject *copy = copies.value(object->uriText()))
                linkCopy(object, copy, copies);
    return copies;
}

QHash<QString, ManagedObject *>
OTVersionManager::copyAllObjectsFromContext(ManagedObjectContext *from, ManagedObjectContext *to) {
    return copyObjectsWithEntities(std::nullopt, from, to);
}

void OTVersionManager::removeAllObjectsFromContext(ManagedObjectContext *context) {
    if (!context)
        return;
    for (const EntityDescription *entity : context->model()->entities())
        if (!entity->isAbstract())
            for (ManagedObject *object : ownObjects(entity, context))
                if (!object->isDeleted())
                    context->deleteObject(object);
}
