#include "billing/history/TAHistoryList.h"

#include "foundation/Check.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TACodes.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"

#include <algorithm>

namespace {
const QString kDeleteGroupName = QStringLiteral("Delete History Record");

Error alreadyDeleted() {
    return Error{ErrorCode::Generic,
                 QStringLiteral("This history record was already deleted; the list now shows "
                                "what is left.")};
}
} // namespace

QList<TAHistory *> TAHistoryList::invoiceRecords(TAInvoice *invoice) {
    if (!invoice)
        return {};
    QList<TAHistory *> records = invoice->history();
    ManagedObjectContext *context = invoice->managedObjectContext();
    TAContextDatabase::disableUndoRegistrationInContext(context);
    for (TAHistory *record : records) {
        TAPayment *payment = record->relatedPayment();
        if (payment && record->date() != payment->date())
            record->setDate(payment->date());
    }
    TAContextDatabase::enableUndoRegistrationInContext(context);
    sortByDate(records);
    return records;
}

QList<TAHistory *> TAHistoryList::projectRecords(TAProject *project) {
    if (!project)
        return {};
    QList<TAHistory *> records = project->history();
    sortByDate(records);
    return records;
}

// Stable, so records made in the same instant keep the order the store gave them.
void TAHistoryList::sortByDate(QList<TAHistory *> &records) {
    std::stable_sort(records.begin(), records.end(), [](TAHistory *a, TAHistory *b) {
        return a->date().toMSecsSinceEpoch() < b->date().toMSecsSinceEpoch();
    });
}

Result<bool> TAHistoryList::deleteRecord(TAHistory *record) {
    BF_CHECK(record, return alreadyDeleted());
    ManagedObjectContext *context = record->managedObjectContext();
    if (!context || record->isDeleted())
        return alreadyDeleted();
    TAContextDatabase::beginUndoGroupingWithName(kDeleteGroupName, context);
    TAPayment *payment = record->relatedPayment();
    if (payment) {
        TAInvoice *invoice = record->invoice() ? record->invoice() : payment->invoiceRelationship();
        if (invoice)
            invoice->setStatus(TACodes::InvoiceSent);
        TAContextDatabase::deleteObject(payment, context);
    }
    TAContextDatabase::deleteObject(record, context);
    TAContextDatabase::endUndoGroupingInContext(context);
    return payment != nullptr;
}

Result<bool> TAHistoryList::deleteRow(QList<TAHistory *> &rows, qsizetype row) {
    // The list deletes only rows it shows.
    BF_CHECK(row >= 0 && row < rows.size(), return !rows.isEmpty());
    const Result<bool> deleted = deleteRecord(rows.at(row));
    rows.removeAt(row);
    if (!deleted)
        return deleted.error();
    return !rows.isEmpty();
}
