#include "store/TAContextFetching.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"

namespace {
using ObjectList = TAContextFetching::ObjectList;

// A failed fetch answers nothing; the reason goes to the log.
ObjectList execute(const FetchRequest &request, ManagedObjectContext *context) {
    Result<ObjectList> result = context->executeFetchRequest(request);
    if (!result) {
        qWarning("Fetching %s: %s", qUtf8Printable(request.entityName),
                 qUtf8Printable(result.error().message));
        return {};
    }
    return result.value();
}

bool knowsEntity(ManagedObjectContext *context, const QString &entity) {
    return context && context->model() && context->model()->entity(entity);
}
} // namespace

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QString &request,
                                          const QVariantMap &dictionary, bool subEntities,
                                          ManagedObjectContext *context) {
    if (!knowsEntity(context, entity))
        return {};
    Result<FetchRequest> fetch = context->fetchRequestFromTemplate(request, dictionary);
    if (!fetch) {
        qWarning("Fetch request %s for %s: %s", qUtf8Printable(request), qUtf8Printable(entity),
                 qUtf8Printable(fetch.error().message));
        return {};
    }
    fetch->includesSubentities = subEntities;
    fetch->entityName = entity;
    return execute(fetch.value(), context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QString &request,
                                          const QVariantMap &dictionary,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, request, dictionary, false, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QString &request,
                                          bool subEntities, ManagedObjectContext *context) {
    return fetchEntity(entity, request, QVariantMap{}, subEntities, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QString &request,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, request, QVariantMap{}, false, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                          qsizetype fetchOffset, ManagedObjectContext *context) {
    if (!knowsEntity(context, entity))
        return {};
    FetchRequest fetch(entity);
    if (predicate)
        fetch.predicate = std::make_shared<const Predicate>(*predicate);
    fetch.sortDescriptors = sort;
    fetch.fetchLimit = fetchLimit;
    fetch.fetchOffset = fetchOffset;
    return execute(fetch, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, sort, fetchLimit, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, sort, 0, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, {}, 0, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, {}, 0, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, qsizetype fetchLimit,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, {}, fetchLimit, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, sort, 0, 0, context);
}

ObjectList TAContextFetching::fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                          qsizetype fetchLimit, ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, sort, fetchLimit, 0, context);
}

QVariant TAContextFetching::objectArgument(ManagedObject *object) {
    return object ? QVariant::fromValue(object) : QVariant();
}

Predicate TAContextFetching::predicateWithFormat(const QString &format,
                                                 const QVariantList &arguments) {
    Result<Predicate> parsed = Predicate::parse(format, arguments);
    if (!parsed) {
        qWarning("Predicate \"%s\": %s", qUtf8Printable(format),
                 qUtf8Printable(parsed.error().message));
        return Predicate::falsePredicate();
    }
    return parsed.value();
}
