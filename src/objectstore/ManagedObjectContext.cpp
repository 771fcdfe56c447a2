#include "objectstore/ManagedObjectContext.h"

#include "foundation/Check.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/ObjectGraph.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/Predicate.h"
#include "objectstore/SqliteConnection.h"
#include "objectstore/UndoManager.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

ManagedObjectContext::ManagedObjectContext(std::shared_ptr<PersistentStore> store, QObject *parent)
    : QObject(parent)
    , m_store(std::move(store))
    , m_ownUndo(std::make_unique<UndoManager>()) {
    const qsizetype count = m_store->model().entities().size();
    m_byPk.resize(count);
    m_highestKey.assign(count, 0);
    m_members.resize(count);
    m_loaded.assign(count, false);
    setUndoManager(m_ownUndo.get());
}

ManagedObjectContext::~ManagedObjectContext() {
    if (m_undo)
        m_undo->removeAllActions();
}

const ManagedObjectModel *ManagedObjectContext::model() const {
    return &m_store->model();
}

void ManagedObjectContext::setUndoManager(UndoManager *undoManager) {
    if (m_undo)
        disconnect(m_undo, nullptr, this, nullptr);
    m_undo = undoManager;
    if (!m_undo)
        return;
    auto wake = [this] {
        const SnapshotEvent event = m_undo->isUndoing() ? SnapshotEvent::Undo : SnapshotEvent::Redo;
        const QSet<ManagedObject *> touched = std::exchange(m_touchedByUndo, {});
        for (ManagedObject *object : touched)
            if (ObjectGraph::visible(object))
                object->awakeFromSnapshotEvents(event);
    };
    // Objects hear about undo once the whole step has been applied.
    connect(m_undo, &UndoManager::didUndo, this, [wake] { wake(); });
    connect(m_undo, &UndoManager::didRedo, this, [wake] { wake(); });
    connect(m_undo, &UndoManager::willUndo, this, [this] { m_touchedByUndo.clear(); });
    connect(m_undo, &UndoManager::willRedo, this, [this] { m_touchedByUndo.clear(); });
}

ManagedObject *ManagedObjectContext::registeredObject(const EntityDescription *entity, qint64 pk,
                                                      bool create) {
    PrimaryKeyIndex &table = m_byPk[entity->index()];
    if (ManagedObject *known = table.find(pk))
        return known;
    if (!create || !PersistentStore::isObjectNumber(pk))
        return nullptr;
    ManagedObject *object = entity->createInstance();
    object->m_entity = entity;
    object->m_context = this;
    object->m_id = ObjectID(entity, m_store->uuid(), pk, false);
    object->m_state = ManagedObject::State::Fault;
    object->m_hasRow = true;
    object->m_values.resize(entity->attributeCount());
    object->m_toOne.assign(entity->toOneCount(), nullptr);
    object->m_toMany.resize(entity->toManyCount());
    m_objects.emplace_back(object);
    table.insert(pk, object);
    return object;
}

void ManagedObjectContext::addMember(ManagedObject *object) {
    if (object->m_memberIndex >= 0)
        return;
    auto &members = m_members[object->m_entity->index()];
    object->m_memberIndex = int(members.size());
    members.append(object);
}

void ManagedObjectContext::removeMember(ManagedObject *object) {
    if (object->m_memberIndex < 0)
        return;
    auto &members = m_members[object->m_entity->index()];
    ManagedObject *last = members.last();
    members[object->m_memberIndex] = last;
    last->m_memberIndex = object->m_memberIndex;
    members.removeLast();
    object->m_memberIndex = -1;
}

ManagedObject *ManagedObjectContext::insertNewObject(const QString &entityName) {
    const EntityDescription *entity = model()->entity(entityName);
    if (!entity || entity->isAbstract())
        return nullptr;
    ManagedObject *object = entity->createInstance();
    object->m_entity = entity;
    object->m_context = this;
    const qint64 number = m_nextTemporary++;
    object->m_id = ObjectID(entity, m_store->uuid(), number, true);
    object->m_state = ManagedObject::State::Loaded;
    object->m_values.resize(entity->attributeCount());
    object->m_toOne.assign(entity->toOneCount(), nullptr);
    object->m_toMany.resize(entity->toManyCount());
    const auto &attributes = entity->attributes();
    for (int i = 0; i < attributes.size(); ++i)
        object->m_values[i] =
            ObjectGraph::normalize(attributes[i].defaultValue, attributes[i].type);
    m_objects.emplace_back(object);
    m_byTemporary.insert(number, object);
    addMember(object);
    listChanged(object);
    notePending(object, PendingInserted);
    registerUndo([this, object] { undoInsert(object); });
    object->awakeFromInsert();
    return object;
}

void ManagedObjectContext::notePending(ManagedObject *object, quint8 bit) {
    if (object->m_pending & bit)
        return;
    object->m_pending |= bit;
    if (m_autoProcess && !m_processScheduled && QCoreApplication::instance()) {
        m_processScheduled = true;
        QTimer::singleShot(0, this, [this] {
            m_processScheduled = false;
            processPendingChanges();
        });
    }
    QList<ManagedObject *> &list = bit == PendingInserted  ? m_pending.inserted
                                   : bit == PendingUpdated ? m_pending.updated
                                                           : m_pending.deleted;
    list.append(object);
}

void ManagedObjectContext::notePendingRemoval(ManagedObject *object) {
    // An object inserted and removed again before anyone heard of it is not announced at all.
    const bool unannounced = object->m_pending & PendingInserted;
    object->m_pending &= ~(PendingInserted | PendingUpdated);
    if (!unannounced)
        notePending(object, PendingDeleted);
}

void ManagedObjectContext::clearPending() {
    for (const QList<ManagedObject *> *list :
         {&m_pending.inserted, &m_pending.updated, &m_pending.deleted})
        for (ManagedObject *object : *list)
            object->m_pending = 0;
    m_pending = {};
}

void ManagedObjectContext::registerUndo(std::function<void()> action) {
    if (m_undo)
        m_undo->registerUndo(std::move(action));
}

void ManagedObjectContext::noteTouchedByUndo(ManagedObject *object) {
    if (m_undo && (m_undo->isUndoing() || m_undo->isRedoing()))
        m_touchedByUndo.insert(object);
}

void ManagedObjectContext::takeSnapshot(ManagedObject *object) {
    if (object->m_snapshot || !object->m_hasRow)
        return;
    object->m_snapshot = std::make_unique<ManagedObject::Snapshot>();
    object->m_snapshot->values = object->m_values;
    object->m_snapshot->toOne = object->m_toOne;
}

void ManagedObjectContext::listChanged(ManagedObject *object) {
    if (object->m_listedChanged)
        return;
    object->m_listedChanged = true;
    m_changed.push_back(object);
}

void ManagedObjectContext::clearChangedList() {
    for (ManagedObject *object : m_changed)
        object->m_listedChanged = false;
    m_changed.clear();
}

void ManagedObjectContext::markChanged(ManagedObject *object) {
    takeSnapshot(object);
    object->m_dirty = true;
    listChanged(object);
    if (!object->m_deleted && !(object->m_pending & PendingInserted))
        notePending(object, PendingUpdated);
}

void ManagedObjectContext::changeAttribute(ManagedObject *object, int slot, const QVariant &value) {
    if (ObjectGraph::sameValue(object->m_values[slot], value))
        return;
    const QVariant old = object->m_values[slot];
    const QString &key = object->m_entity->attributes()[slot].name;
    object->willChangeValueForKey(key);
    takeSnapshot(object);
    object->m_values[slot] = value;
    markChanged(object);
    registerUndo([this, object, slot, old] {
        changeAttribute(object, slot, old);
        noteTouchedByUndo(object);
    });
    object->didChangeValueForKey(key);
}

void ManagedObjectContext::linkPrimitive(ManagedObject *object, int slot, ManagedObject *target) {
    ManagedObject *old = object->m_toOne[slot];
    if (old == target)
        return;
    const RelationshipDescription &r =
        object->m_entity->relationships()[object->m_entity->relationshipForToOneSlot(slot)];
    object->m_toOne[slot] = target;
    if (!r.inverse)
        return;
    if (r.inverse->toMany) {
        if (old)
            old->m_toMany[r.inverseSlot].remove(object);
        if (target)
            target->m_toMany[r.inverseSlot].insert(object);
    } else {
        // One-to-one: the other side follows.
        if (old)
            old->m_toOne[r.inverseSlot] = nullptr;
        if (target)
            target->m_toOne[r.inverseSlot] = object;
    }
}

void ManagedObjectContext::changeToOnePrimitive(ManagedObject *object, int slot,
                                                ManagedObject *target) {
    ManagedObject *old = object->m_toOne[slot];
    if (old == target)
        return;
    const RelationshipDescription &r =
        object->m_entity->relationships()[object->m_entity->relationshipForToOneSlot(slot)];
    if (r.inverse && !r.inverse->toMany) {
        // One-to-one: the rows of the partners change too, the target's previous one included.
        if (ManagedObject *previous = target ? target->m_toOne[r.inverseSlot] : nullptr;
            previous && previous != object) {
            previous->m_toOne[previous->m_entity->slot(r.name)->index] = nullptr;
            markChanged(previous);
        }
        if (old)
            markChanged(old);
        if (target)
            markChanged(target);
    }
    linkPrimitive(object, slot, target);
    markChanged(object);
}

void ManagedObjectContext::changeToOne(ManagedObject *object, int slot, ManagedObject *target) {
    ManagedObject *old = object->m_toOne[slot];
    if (old == target)
        return;
    const RelationshipDescription &r =
        object->m_entity->relationships()[object->m_entity->relationshipForToOneSlot(slot)];
    if (r.inverse && !r.inverse->toMany && target) {
        // The target's previous partner loses it first, as its own undoable change.
        const int back = r.inverseSlot;
        if (ManagedObject *previous = target->m_toOne[back]; previous && previous != object)
            changeToOne(previous, previous->m_entity->slot(r.name)->index, nullptr);
    }
    object->willChangeValueForKey(r.name);
    takeSnapshot(object);
    if (old && r.inverse && !r.inverse->toMany)
        takeSnapshot(old), markChanged(old);
    if (target && r.inverse && !r.inverse->toMany)
        takeSnapshot(target), markChanged(target);
    linkPrimitive(object, slot, target);
    markChanged(object);
    registerUndo([this, object, slot, old] {
        changeToOne(object, slot, old);
        noteTouchedByUndo(object);
    });
    object->didChangeValueForKey(r.name);
    if (r.inverse && r.inverse->toMany) {
        if (ManagedObject *o = ObjectGraph::visible(old))
            o->didChangeValueForKey(r.inverse->name);
        if (ManagedObject *t = ObjectGraph::visible(target))
            t->didChangeValueForKey(r.inverse->name);
    }
}

void ManagedObjectContext::deleteObject(ManagedObject *object) {
    if (!object || object->m_context != this || object->m_deleted ||
        object->m_state == ManagedObject::State::Missing)
        return;
    object->ensureLoaded();
    object->prepareForDeletion();
    const EntityDescription *entity = object->m_entity;
    QList<ManagedObject *> cascade;
    for (const RelationshipDescription &r : entity->relationships()) {
        if (r.toMany) {
            ensureToManyLoaded(r);
            const QList<ManagedObject *> members =
                object->m_toMany[entity->slot(r.name)->index].values();
            for (ManagedObject *member : members) {
                if (!ObjectGraph::visible(member))
                    continue;
                if (r.deleteRule == DeleteRule::Cascade)
                    cascade.append(member);
                else if (r.deleteRule == DeleteRule::Nullify)
                    changeToOne(member, r.inverseSlot, nullptr);
            }
        } else {
            const int slot = entity->slot(r.name)->index;
            ManagedObject *target = object->m_toOne[slot];
            if (target && r.deleteRule == DeleteRule::Cascade)
                cascade.append(target);
            if (target && r.inverse)
                changeToOne(object, slot, nullptr);
        }
    }
    takeSnapshot(object);
    object->m_deleted = true;
    removeMember(object);
    listChanged(object);
    notePendingRemoval(object);
    registerUndo([this, object] {
        undelete(object);
        noteTouchedByUndo(object);
    });
    for (ManagedObject *member : cascade)
        deleteObject(member);
}

void ManagedObjectContext::undelete(ManagedObject *object) {
    if (!object->m_deleted)
        return;
    object->m_deleted = false;
    addMember(object);
    listChanged(object);
    object->m_pending &= ~PendingDeleted;
    if (object->m_hasRow)
        markChanged(object);
    else
        notePending(object, PendingInserted);
    registerUndo([this, object] {
        // Links were restored by their own undo actions; only the deletion itself is redone.
        takeSnapshot(object);
        object->m_deleted = true;
        removeMember(object);
        listChanged(object);
        notePendingRemoval(object);
        registerUndo([this, object] { undelete(object); });
    });
}

void ManagedObjectContext::undoInsert(ManagedObject *object) {
    // Links made after the insertion were undone before this; clear what is left anyway.
    for (int slot = 0; slot < object->m_entity->toOneCount(); ++slot)
        linkPrimitive(object, slot, nullptr);
    object->m_deleted = true;
    removeMember(object);
    listChanged(object);
    notePendingRemoval(object);
    registerUndo([this, object] { redoInsert(object); });
}

void ManagedObjectContext::redoInsert(ManagedObject *object) {
    object->m_deleted = false;
    addMember(object);
    listChanged(object);
    object->m_pending &= ~PendingDeleted;
    notePending(object, PendingInserted);
    registerUndo([this, object] { undoInsert(object); });
}

void ManagedObjectContext::ensureToManyLoaded(const RelationshipDescription &relationship) {
    // Only resolved to-many links of the model are passed here.
    BF_CHECK(relationship.toMany && relationship.destination, return);
    ensureEntityLoaded(relationship.destination);
    for (const EntityDescription *sub : relationship.destination->subentities())
        ensureEntityLoaded(sub);
}

Result<void> ManagedObjectContext::loadEntity(const QString &entityName, bool includeSubentities) {
    const EntityDescription *entity = model()->entity(entityName);
    if (!entity)
        return Error{ErrorCode::UnknownEntity,
                     QStringLiteral("There is no entity named “%1”.").arg(entityName)};
    m_lastLoadError = m_damage;
    ensureEntityLoaded(entity);
    if (includeSubentities)
        for (const EntityDescription *sub : entity->subentities())
            ensureEntityLoaded(sub);
    if (m_lastLoadError)
        return *m_lastLoadError;
    return {};
}

ManagedObject *ManagedObjectContext::existingObjectWithID(const ObjectID &id) {
    if (!id.isValid() || id.storeUuid() != m_store->uuid() || id.entity()->model() != model())
        return nullptr;
    ManagedObject *object = nullptr;
    if (id.isTemporaryID()) {
        object = m_byTemporary.value(id.number());
    } else {
        ensureEntityLoaded(id.entity());
        object = registeredObject(id.entity(), id.number(), false);
    }
    return ObjectGraph::visible(object);
}

std::optional<ObjectID>
ManagedObjectContext::managedObjectIDForURIRepresentation(const QString &uriText) const {
    const auto parts = ObjectID::parseUri(uriText);
    if (!parts || parts->storeUuid.compare(m_store->uuid(), Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const EntityDescription *entity = model()->entity(parts->entityName);
    if (!entity || entity->isAbstract())
        return std::nullopt;
    return ObjectID(entity, m_store->uuid(), parts->number, parts->temporary);
}

ManagedObject *ManagedObjectContext::objectWithURI(const QString &uriText) {
    const auto id = managedObjectIDForURIRepresentation(uriText);
    return id ? existingObjectWithID(*id) : nullptr;
}

Result<QList<ManagedObject *>>
ManagedObjectContext::executeFetchRequest(const FetchRequest &request) {
    const EntityDescription *entity = model()->entity(request.entityName);
    if (!entity)
        return Error{ErrorCode::UnknownEntity,
                     QStringLiteral("There is no entity named “%1”.").arg(request.entityName)};
    QList<const EntityDescription *> entities{entity};
    if (request.includesSubentities)
        entities += entity->subentities();
    m_lastLoadError = m_damage;
    // A condition that wants links empty reads only such rows of a table not read yet (the
    // unassigned timers of a decade among all of them): the others cannot match.
    const QStringList nullKeys =
        request.predicate ? request.predicate->keysRequiredNull() : QStringList();
    for (const EntityDescription *e : entities)
        if (nullKeys.isEmpty() || !loadRowsWithNullLinks(e, nullKeys))
            ensureEntityLoaded(e);
    if (m_lastLoadError)
        return *m_lastLoadError;
    QList<ManagedObject *> results;
    for (const EntityDescription *e : entities) {
        const QList<ManagedObject *> &members = m_members[e->index()];
        const qsizetype count = members.size();
        for (qsizetype i = 0; i < count; ++i) {
            // A scan is bound by memory latency: fetch the objects and their values ahead.
            if (i + 8 < count)
                __builtin_prefetch(members[i + 8]);
            if (i + 4 < count)
                members[i + 4]->prefetchValues();
            ManagedObject *object = members[i];
            if (!request.predicate || request.predicate->evaluate(*object))
                results.append(object);
        }
    }
    if (!request.sortDescriptors.isEmpty())
        SortDescriptor::sort(results, request.sortDescriptors);
    if (request.fetchOffset > 0)
        results = results.mid(request.fetchOffset);
    if (request.fetchLimit > 0 && results.size() > request.fetchLimit)
        results.resize(request.fetchLimit);
    return results;
}

Result<FetchRequest>
ManagedObjectContext::fetchRequestFromTemplate(const QString &name,
                                               const QVariantMap &variables) const {
    const FetchRequestTemplate *fetchTemplate = model()->fetchRequestTemplate(name);
    if (!fetchTemplate)
        return Error{ErrorCode::UnknownEntity,
                     QStringLiteral("There is no fetch request named “%1”.").arg(name)};
    FetchRequest request(fetchTemplate->entityName);
    if (auto parsed = model()->fetchRequestTemplatePredicate(name)) {
        // Without variables the parsed form is the answer; the rules ask for such templates
        // once per object they compute.
        request.predicate =
            variables.isEmpty()
                ? std::move(parsed)
                : std::make_shared<const Predicate>(parsed->withSubstitutionVariables(variables));
    } else if (!fetchTemplate->predicateFormat.isEmpty()) {
        auto parsed = Predicate::parse(fetchTemplate->predicateFormat);
        if (!parsed)
            return Error{ErrorCode::InvalidPredicate, parsed.error().message};
        request.predicate =
            std::make_shared<const Predicate>(parsed->withSubstitutionVariables(variables));
    }
    return request;
}

void ManagedObjectContext::processPendingChanges() {
    if (m_undo)
        m_undo->closeAutomaticGroup();
    if (m_pending.inserted.isEmpty() && m_pending.updated.isEmpty() && m_pending.deleted.isEmpty())
        return;
    // The lists may hold entries whose flag was withdrawn later (an insertion undone before
    // anyone heard of it): the flags decide.
    const ObjectsDidChange raw = std::exchange(m_pending, {});
    ObjectsDidChange changes;
    for (ManagedObject *object : raw.inserted)
        if (object->m_pending & PendingInserted)
            changes.inserted.append(object), object->m_pending &= ~PendingInserted;
    for (ManagedObject *object : raw.updated)
        if (object->m_pending & PendingUpdated)
            changes.updated.append(object), object->m_pending &= ~PendingUpdated;
    for (ManagedObject *object : raw.deleted)
        if (object->m_pending & PendingDeleted)
            changes.deleted.append(object), object->m_pending &= ~PendingDeleted;
    if (!changes.inserted.isEmpty() || !changes.updated.isEmpty() || !changes.deleted.isEmpty())
        emit objectsDidChange(changes);
}

bool ManagedObjectContext::hasChanges() const {
    for (ManagedObject *object : m_changed)
        if (object->hasChanges())
            return true;
    return false;
}

QList<ManagedObject *> ManagedObjectContext::insertedObjects() const {
    QList<ManagedObject *> list;
    for (ManagedObject *object : m_changed)
        if (object->isInserted())
            list.append(object);
    return list;
}

QList<ManagedObject *> ManagedObjectContext::updatedObjects() const {
    QList<ManagedObject *> list;
    for (ManagedObject *object : m_changed)
        if (object->isUpdated())
            list.append(object);
    return list;
}

QList<ManagedObject *> ManagedObjectContext::deletedObjects() const {
    QList<ManagedObject *> list;
    for (ManagedObject *object : m_changed)
        if (object->m_deleted && object->m_hasRow)
            list.append(object);
    return list;
}

void ManagedObjectContext::obtainPermanentIDs(const QList<ManagedObject *> &objects) {
    for (ManagedObject *object : objects) {
        if (!object || object->m_context != this || !object->m_id.isTemporaryID())
            continue;
        const qint64 pk = m_store->allocatePrimaryKey(object->m_entity);
        if (pk == 0)
            continue; // no number left: the save refuses to write it
        m_byTemporary.remove(object->m_id.number());
        object->m_id = ObjectID(object->m_entity, m_store->uuid(), pk, false);
        m_byPk[object->m_entity->index()].insert(pk, object);
    }
}

QList<ManagedObject *> ManagedObjectContext::changesToWrite() {
    processPendingChanges();
    QList<ManagedObject *> changed;
    for (ManagedObject *object : std::as_const(m_changed))
        if (object->hasChanges())
            changed.append(object);
    return changed;
}

void ManagedObjectContext::prepareForWriting(QList<ManagedObject *> &changed) {
    QList<ManagedObject *> fresh;
    for (ManagedObject *object : changed)
        if (!object->m_deleted)
            fresh.append(object);
    obtainPermanentIDs(fresh);
    // Rows go out table by table in key order: the tables' trees then grow at their ends
    // instead of splitting pages all over.
    std::sort(changed.begin(), changed.end(), [](ManagedObject *a, ManagedObject *b) {
        const int x = a->m_entity->index(), y = b->m_entity->index();
        return x != y ? x < y : a->m_id.number() < b->m_id.number();
    });
}

Result<void> ManagedObjectContext::writeTransaction(SqliteConnection &db,
                                                    const QList<ManagedObject *> &changed) {
    if (auto r = db.exec(QStringLiteral("BEGIN IMMEDIATE")); !r) {
        const bool busy = (db.lastErrorCode() & 0xff) == 5; // SQLITE_BUSY: another writer
        return Error{
            busy ? int(ErrorCode::FileLocked) : int(ErrorCode::WriteFailed),
            busy ? QStringLiteral(
                       "The document could not be saved: another program is writing to it.")
                 : QStringLiteral("The document could not be saved (%1).").arg(r.error().message)};
    }
    Result<void> written = writeChanges(db, changed);
    if (written)
        written = db.exec(QStringLiteral("COMMIT"));
    if (!written) {
        // The save's own error is what the caller shows; a failed rollback only leaves the
        // transaction for SQLite to end when the connection closes.
        if (auto rolledBack = db.exec(QStringLiteral("ROLLBACK")); !rolledBack)
            qWarning("Rollback after a failed save failed: %s",
                     qUtf8Printable(rolledBack.error().message));
        return Error{
            ErrorCode::WriteFailed,
            QStringLiteral("The document could not be saved (%1).").arg(written.error().message)};
    }
    return {};
}

void ManagedObjectContext::markSaved() {
    for (ManagedObject *object : std::as_const(m_changed)) {
        object->m_hasRow = !object->m_deleted;
        object->m_dirty = false;
        object->m_snapshot.reset();
    }
    clearChangedList();
    emit didSave();
}

Result<void> ManagedObjectContext::save() {
    QList<ManagedObject *> changed = changesToWrite();
    if (changed.isEmpty()) {
        clearChangedList();
        return {};
    }
    if (m_store->isReadOnly())
        return Error{ErrorCode::FileReadOnly,
                     QStringLiteral("The document is read-only; changes cannot be saved.")};
    prepareForWriting(changed);
    SqliteConnection *db = connection();
    if (!db)
        return Error{ErrorCode::WriteFailed,
                     m_lastLoadError ? m_lastLoadError->message : QString()};
    if (auto written = writeTransaction(*db, changed); !written)
        return written;
    markSaved();
    return {};
}

// The new file is assembled in memory from the saved state and the changes, and appears at
// the path only when whole: the old file keeps its last saved state, and a failure anywhere
// leaves the store, the path and the changes as they were.
Result<void> ManagedObjectContext::saveAs(const QString &path) {
    QList<ManagedObject *> changed = changesToWrite();
    prepareForWriting(changed);
    const bool current = m_connection && m_connectionGeneration == m_store->generation();
    auto contents = m_store->copyOfSavedState(current ? m_connection.get() : nullptr);
    if (!contents)
        return Error{ErrorCode::WriteFailed,
                     QStringLiteral("The document could not be saved as “%1” (%2).")
                         .arg(QFileInfo(path).fileName(), contents.error().message)};
    if (!changed.isEmpty())
        if (auto written = writeTransaction(**contents, changed); !written)
            return written;
    if (auto moved = m_store->moveTo(path, **contents); !moved)
        return moved;
    // Held from now on: the file stays readable through it even if it is moved or deleted.
    (void)connection();
    markSaved();
    return {};
}

void ManagedObjectContext::rollback() {
    processPendingChanges();
    const QList<ManagedObject *> changed(m_changed.cbegin(), m_changed.cend());
    QList<ManagedObject *> restored;
    // Unlink the new objects first, then put the saved links and values back.
    for (ManagedObject *object : changed) {
        if (object->m_hasRow)
            continue;
        for (int slot = 0; slot < object->m_entity->toOneCount(); ++slot)
            linkPrimitive(object, slot, nullptr);
        object->m_deleted = true;
        removeMember(object);
    }
    for (ManagedObject *object : changed) {
        if (!object->m_hasRow)
            continue;
        if (object->m_snapshot) {
            for (int slot = 0; slot < object->m_entity->toOneCount(); ++slot)
                linkPrimitive(object, slot, object->m_snapshot->toOne[slot]);
            object->m_values = object->m_snapshot->values;
        }
        object->m_deleted = false;
        addMember(object);
        restored.append(object);
    }
    for (ManagedObject *object : changed) {
        object->m_dirty = false;
        object->m_snapshot.reset();
    }
    clearChangedList();
    clearPending();
    if (m_undo)
        m_undo->removeAllActions();
    for (ManagedObject *object : restored)
        object->awakeFromSnapshotEvents(SnapshotEvent::Rollback);
}

void ManagedObjectContext::reset() {
    if (m_undo)
        m_undo->removeAllActions();
    forgetObjects();
}

void ManagedObjectContext::forgetObjects() {
    clearPending();
    clearChangedList();
    m_touchedByUndo.clear();
    m_byTemporary.clear();
    for (PrimaryKeyIndex &table : m_byPk)
        table.clear();
    m_highestKey.assign(m_highestKey.size(), 0);
    m_damage.reset();
    for (auto &members : m_members)
        members.clear();
    m_loaded.assign(m_loaded.size(), false);
    m_objects.clear();
}
