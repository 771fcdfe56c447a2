#include "store/TAEntityDeletion.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/TAApplicationHooks.h"
#include "store/TAContextFetching.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"
#include "store/TAEntityQueries.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using Fetch = TAContextFetching;

// A project's items that are on no invoice.
QList<TAItem *> notInvoicedItems(TAProject *project) {
    QList<TAItem *> items;
    for (TAItem *item : project->items())
        if (!item->invoice())
            items.append(item);
    return items;
}

// The timers among them, the most recently changed first.
QList<TATimer *> activeProjectTimers(TAProject *project) {
    QList<TATimer *> timers;
    for (TAItem *item : notInvoicedItems(project))
        if (TATimer *timer = dynamic_cast<TATimer *>(item))
            timers.append(timer);
    return Fetch::sorted(timers, {SortDescriptor(K::updateDate, false)});
}

void stopTimer(TATimer *timer) {
    TAApplicationHooks &hooks = TAApplicationHooks::instance();
    if (hooks.mainTimer() == timer)
        hooks.setMainTimer(nullptr);
    if (hooks.timerIsActive(timer))
        hooks.removeTimer(timer);
}

// The first steps of every deletion: the sidebar, the timers to stop, and the items that go
// with the object (those of a project that are on no invoice).
QList<ManagedObject *> prepareDeletion(ManagedObject *object, ManagedObjectContext *context) {
    TAProject *project = dynamic_cast<TAProject *>(object);
    if (project || dynamic_cast<TAInvoice *>(object)) {
        if (TADocumentHooks *document = TADatabase::documentForContext(context))
            document->refreshGroups();
    }
    QList<TATimer *> timers;
    QList<ManagedObject *> items;
    if (project) {
        timers = activeProjectTimers(project);
        for (TAItem *item : notInvoicedItems(project))
            items.append(item);
    } else if (TATimer *timer = dynamic_cast<TATimer *>(object)) {
        timers.append(timer);
    }
    for (TATimer *timer : timers)
        stopTimer(timer);
    return items;
}

// A template's invoices move to the first template that remains.
void deleteTemplate(LMInvoiceTemplateClass *invoiceTemplate, ManagedObjectContext *context) {
    const QList<TAInvoice *> invoices = invoiceTemplate->invoices();
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->removeTemplateFromEditorList(invoiceTemplate);
    context->deleteObject(invoiceTemplate);
    context->processPendingChanges();
    const QList<LMInvoiceTemplateClass *> templates =
        TAEntityQueries::getTemplatesInContext(context);
    LMInvoiceTemplateClass *first = templates.isEmpty() ? nullptr : templates.first();
    for (TAInvoice *invoice : invoices)
        invoice->setInvoiceTemplate(first);
}

bool belongsTo(ManagedObject *object, ManagedObjectContext *context) {
    return object && context && object->managedObjectContext() == context;
}
} // namespace

void TAEntityDeletion::deleteObject(ManagedObject *object, ManagedObjectContext *context) {
    if (!belongsTo(object, context))
        return;
    for (ManagedObject *item : prepareDeletion(object, context))
        deleteObject(item, context);
    if (auto *invoiceTemplate = dynamic_cast<LMInvoiceTemplateClass *>(object)) {
        deleteTemplate(invoiceTemplate, context);
        return;
    }
    context->deleteObject(object);
    context->processPendingChanges();
}

void TAEntityDeletion::deleteObjects(const QList<ManagedObject *> &objects,
                                     ManagedObjectContext *context) {
    if (!context)
        return;
    for (ManagedObject *object : objects) {
        if (!belongsTo(object, context))
            continue;
        const QList<ManagedObject *> items = prepareDeletion(object, context);
        if (dynamic_cast<TAProject *>(object))
            deleteObjects(items, context);
        if (auto *invoiceTemplate = dynamic_cast<LMInvoiceTemplateClass *>(object))
            deleteTemplate(invoiceTemplate, context);
        else
            context->deleteObject(object);
    }
    context->processPendingChanges();
}

// Timers on neither a project nor an invoice are left-overs and go at each opening.
void TAEntityDeletion::deleteUnassignedTimersInContext(ManagedObjectContext *context) {
    const Predicate predicate = Fetch::predicateWithFormat(
        QStringLiteral("project == %@ && invoice == %@"), {QVariant(), QVariant()});
    deleteObjects(Fetch::fetchEntity(E::Timer, predicate, context), context);
}
