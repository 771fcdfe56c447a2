#pragma once

#include "foundation/Result.h"

#include <QList>

class TAHistory;
class TAInvoice;
class TAProject;

// What the history pop-up does with the records, without its widgets: the rows it shows and
// the one edit it allows.
class TAHistoryList {
public:
    // An invoice's records by date. Payment records first take their payment's date again,
    // since that may have been edited; the refresh is not an undoable change.
    static QList<TAHistory *> invoiceRecords(TAInvoice *invoice);
    // A project's records by date.
    static QList<TAHistory *> projectRecords(TAProject *project);
    static void sortByDate(QList<TAHistory *> &records);

    // Deletes a record in one undo group. A payment record takes its payment along and puts
    // the invoice back to sent: this is the only way to remove a payment. Answers whether the
    // record held a payment, so that the caller reloads the invoices; an error when the record
    // was deleted already, say by an undo while the list was open.
    static Result<bool> deleteRecord(TAHistory *record);
    // Deletes the row's record and drops it from the rows; answers whether rows remain. The row
    // leaves the list even when its record was already gone, and the error says so.
    static Result<bool> deleteRow(QList<TAHistory *> &rows, qsizetype row);

private:
    TAHistoryList() = delete;
};
