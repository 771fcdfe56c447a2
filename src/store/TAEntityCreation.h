#pragma once

#include "objectstore/ManagedObjectContext.h"

#include <QString>

class TAAccount;
class TAClient;
class TACurrency;
class TAHistory;
class TAInventory;
class TAInvoice;
class TAMaterial;
class TAPayment;
class TAProject;
class TARecurringInvoice;
class TATax;
class TATimer;
class TATimerInterval;

// Creation for code that holds a context; each answers null for a null context. The project,
// invoice and recurring forms refresh the owning document's sidebar and belong to the main
// thread.
class TAEntityCreation {
public:
    static TAProject *createProjectInContext(ManagedObjectContext *context);
    static TAHistory *createHistoryInContext(ManagedObjectContext *context);
    static TAHistory *createHistoryWithCurrentDateInContext(ManagedObjectContext *context);
    static TAInvoice *createInvoiceInContext(ManagedObjectContext *context);
    static TARecurringInvoice *createRecurringInvoiceInContext(ManagedObjectContext *context);
    static TAClient *createClientInContext(ManagedObjectContext *context);
    static TAPayment *createPaymentInContext(ManagedObjectContext *context);
    static TATimer *createTimerInContext(ManagedObjectContext *context);
    static TAMaterial *createMaterialInContext(ManagedObjectContext *context);
    static TAInventory *createInventoryInContext(ManagedObjectContext *context);
    static TAAccount *createAccountInContext(ManagedObjectContext *context);
    static TACurrency *createCurrencyInContext(ManagedObjectContext *context);
    static TATax *createTaxInContext(ManagedObjectContext *context);
    static TATimerInterval *createTimerIntervalInContext(ManagedObjectContext *context);

    // A bare new object of the entity, without the steps above.
    template <class T>
    static T *insertNewObject(ManagedObjectContext *context, const QString &entity) {
        return context ? context->insertNewObjectAs<T>(entity) : nullptr;
    }

private:
    TAEntityCreation() = delete;
};
