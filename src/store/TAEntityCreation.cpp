#include "store/TAEntityCreation.h"

#include "foundation/dates/OTClock.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"
#include "store/TAEntityQueries.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

namespace {
namespace E = TAEntity;

// The record type of a project's "Created" history entry.
constexpr int kProjectCreatedRecord = 1;

void refreshSidebar(ManagedObjectContext *context) {
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->refreshGroups();
}

void giveFirstTemplate(TAInvoice *invoice, ManagedObjectContext *context) {
    const QList<LMInvoiceTemplateClass *> templates =
        TAEntityQueries::getTemplatesInContext(context);
    if (!templates.isEmpty())
        invoice->setInvoiceTemplate(templates.first());
}
} // namespace

TAProject *TAEntityCreation::createProjectInContext(ManagedObjectContext *context) {
    TAProject *project = insertNewObject<TAProject>(context, E::Project);
    if (!project)
        return nullptr;
    TAHistory *created = createHistoryWithCurrentDateInContext(context);
    created->setType(kProjectCreatedRecord);
    created->setProject(project);
    refreshSidebar(context);
    return project;
}

TAHistory *TAEntityCreation::createHistoryInContext(ManagedObjectContext *context) {
    if (!context) {
        qWarning("No history record without a context.");
        return nullptr;
    }
    return insertNewObject<TAHistory>(context, E::History);
}

TAHistory *TAEntityCreation::createHistoryWithCurrentDateInContext(ManagedObjectContext *context) {
    TAHistory *history = createHistoryInContext(context);
    if (history)
        history->setDate(OTClock::now());
    return history;
}

// The number is taken, not advanced: the caller advances it when the invoice is kept.
TAInvoice *TAEntityCreation::createInvoiceInContext(ManagedObjectContext *context) {
    TAInvoice *invoice = insertNewObject<TAInvoice>(context, E::Invoice);
    if (!invoice)
        return nullptr;
    giveFirstTemplate(invoice, context);
    TAPreferences *preferences = TAEntityQueries::getPreferencesInContext(context);
    const QString number = preferences ? preferences->nextInvoiceNumber() : QString();
    if (!number.isEmpty())
        invoice->setIdentification(number);
    refreshSidebar(context);
    return invoice;
}

TARecurringInvoice *
TAEntityCreation::createRecurringInvoiceInContext(ManagedObjectContext *context) {
    TARecurringInvoice *invoice = insertNewObject<TARecurringInvoice>(context, E::RecurringInvoice);
    if (!invoice)
        return nullptr;
    giveFirstTemplate(invoice, context);
    refreshSidebar(context);
    return invoice;
}

TAClient *TAEntityCreation::createClientInContext(ManagedObjectContext *context) {
    return insertNewObject<TAClient>(context, E::Client);
}

TAPayment *TAEntityCreation::createPaymentInContext(ManagedObjectContext *context) {
    return insertNewObject<TAPayment>(context, E::Payment);
}

TATimer *TAEntityCreation::createTimerInContext(ManagedObjectContext *context) {
    return insertNewObject<TATimer>(context, E::Timer);
}

TAMaterial *TAEntityCreation::createMaterialInContext(ManagedObjectContext *context) {
    return insertNewObject<TAMaterial>(context, E::Material);
}

TAInventory *TAEntityCreation::createInventoryInContext(ManagedObjectContext *context) {
    TAInventory *inventory = insertNewObject<TAInventory>(context, E::Inventory);
    if (inventory)
        inventory->setIsMaterial(true);
    return inventory;
}

TAAccount *TAEntityCreation::createAccountInContext(ManagedObjectContext *context) {
    return insertNewObject<TAAccount>(context, E::Account);
}

TACurrency *TAEntityCreation::createCurrencyInContext(ManagedObjectContext *context) {
    return insertNewObject<TACurrency>(context, E::Currency);
}

TATax *TAEntityCreation::createTaxInContext(ManagedObjectContext *context) {
    return insertNewObject<TATax>(context, E::Tax);
}

TATimerInterval *TAEntityCreation::createTimerIntervalInContext(ManagedObjectContext *context) {
    return insertNewObject<TATimerInterval>(context, E::TimerInterval);
}
