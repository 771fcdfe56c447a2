#pragma once

#include "objectstore/SortDescriptor.h"

#include <QList>
#include <QString>

#include <memory>

class Predicate;

// What to fetch: objects of one entity (and its subentities unless told otherwise) that
// satisfy a predicate, in the order of the sort descriptors, with an optional window.
struct FetchRequest {
    QString entityName;
    std::shared_ptr<const Predicate> predicate; // null: every object
    QList<SortDescriptor> sortDescriptors;
    qsizetype fetchLimit = 0; // 0: no limit
    qsizetype fetchOffset = 0;
    bool includesSubentities = true;

    FetchRequest() = default;
    explicit FetchRequest(QString entity)
        : entityName(std::move(entity)) {}
};
