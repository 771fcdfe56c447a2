#pragma once

#include "objectstore/Predicate.h"
#include "objectstore/SortDescriptor.h"

#include <QList>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

class ManagedObject;
class ManagedObjectContext;

// Fetching for code that holds a context: every operation takes the context last. A failed
// fetch is an empty list (the reason goes to the log), and a null context answers nothing.
class TAContextFetching {
public:
    using ObjectList = QList<ManagedObject *>;

    // Named fetch templates; the template's own entity is replaced by the one given.
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  const QVariantMap &dictionary, bool subEntities,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  const QVariantMap &dictionary, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request, bool subEntities,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  ManagedObjectContext *context);

    // Plain fetches, sub-entities included. An empty sort list and a limit or offset of 0
    // mean "not given", as does an empty predicate.
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                  qsizetype fetchOffset, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, qsizetype fetchLimit,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                  qsizetype fetchLimit, ManagedObjectContext *context);

    // The typed members of a fetched list.
    template <class T> static QList<T *> objectsAs(const ObjectList &objects) {
        QList<T *> out;
        out.reserve(objects.size());
        for (ManagedObject *object : objects)
            if (T *typed = dynamic_cast<T *>(object))
                out.append(typed);
        return out;
    }

    // A named template's result, typed.
    template <class T>
    static QList<T *> fetchAll(const QString &entity, const QString &request,
                               ManagedObjectContext *context) {
        return objectsAs<T>(fetchEntity(entity, request, context));
    }

    template <class T>
    static QList<T *> sorted(QList<T *> objects, const QList<SortDescriptor> &sort) {
        SortDescriptor::sort(objects, sort);
        return objects;
    }

    // A predicate argument for an object; null stands for nil.
    static QVariant objectArgument(ManagedObject *object);
    // A predicate of our own fixed texts; one that does not parse selects nothing.
    static Predicate predicateWithFormat(const QString &format, const QVariantList &arguments);

private:
    TAContextFetching() = delete;
};
