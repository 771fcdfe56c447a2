#pragma once

#include <QList>

class ManagedObject;
class ManagedObjectContext;

// Deletion with the side steps the business rules ask for (sidebar, timers, the items of a
// project, the invoices of a template). Objects of another context are left alone.
class TAEntityDeletion {
public:
    static void deleteObject(ManagedObject *object, ManagedObjectContext *context);
    static void deleteObjects(const QList<ManagedObject *> &objects, ManagedObjectContext *context);
    static void deleteUnassignedTimersInContext(ManagedObjectContext *context);

private:
    TAEntityDeletion() = delete;
};
