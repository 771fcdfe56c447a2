#include "billing/preferences/TAInvoiceNumbering.h"

#include "store/TAContextDatabase.h"
#include "store/entities/TAPreferences.h"

bool TAInvoiceNumbering::numberEdited(TAPreferences *preferences, const QString &text) {
    if (!preferences || text.isEmpty())
        return false;
    const QString next = preferences->nextInvoiceNumber();
    if (!next.isEmpty() && next != text)
        return false;
    ManagedObjectContext *context = preferences->managedObjectContext();
    TAContextDatabase::disableUndoRegistrationInContext(context);
    if (next.isEmpty())
        preferences->setNextInvoiceNumber(text);
    preferences->increaseNextInvoiceNumber();
    TAContextDatabase::enableUndoRegistrationInContext(context);
    return true;
}
