#include "HistoryFixture.h"

#include "billing/history/TAHistoryList.h"
#include "objectstore/UndoManager.h"
#include "store/entities/TAHistory.h"

TEST_F(HistoryFixture, InvoiceListTakesEditedPaymentDatesAndSortsByDate) {
    TAInvoice *i = invoice();
    TAHistory *created = TAHistory::addInvoiceCreatedRecord(i);
    TAPayment *pay = payment(i, "5", QStringLiteral("EUR"), at("2026-03-20T00:00:00Z"));
    TAHistory *received = TAHistory::addInvoicePaymentReceivedRecord(i, pay);
    clock.advance(3600);
    TAHistory *sent = TAHistory::addInvoiceSentRecord(i);
    context->undoManager()->removeAllActions();

    // The payment is moved back before the invoice was made.
    pay->setDate(at("2026-03-01T00:00:00Z"));
    const QList<TAHistory *> rows = TAHistoryList::invoiceRecords(i);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows.at(0), received);
    EXPECT_EQ(rows.at(1), created);
    EXPECT_EQ(rows.at(2), sent);
    EXPECT_EQ(received->date(), pay->date());

    // Undo takes back the payment's edit, not the list's refresh.
    context->undoManager()->undo();
    EXPECT_EQ(pay->date(), at("2026-03-20T00:00:00Z"));
    EXPECT_EQ(received->date(), at("2026-03-01T00:00:00Z"));
}

TEST_F(HistoryFixture, DeletingAPaymentRecordTakesThePaymentAndReopensTheInvoice) {
    TAInvoice *i = invoice();
    i->setTotal(Decimal(100));
    TAPayment *pay = payment(i, "100", QStringLiteral("EUR"), clock.now());
    TAHistory *received = TAHistory::addInvoicePaymentReceivedRecord(i, pay);
    TAHistory *paid = TAHistory::addInvoicePaidRecord(i);
    i->setStatus(3);
    ASSERT_EQ(i->paid(), Decimal(100));
    context->undoManager()->removeAllActions();

    QList<TAHistory *> rows = TAHistoryList::invoiceRecords(i);
    ASSERT_EQ(rows.size(), 2);
    const qsizetype row = rows.indexOf(received);
    const Result<bool> rowsLeft = TAHistoryList::deleteRow(rows, row);
    ASSERT_TRUE(rowsLeft);
    EXPECT_TRUE(rowsLeft.value());

    EXPECT_EQ(i->status(), 2);
    EXPECT_TRUE(i->payments().isEmpty());
    EXPECT_EQ(i->paid(), Decimal(0));
    EXPECT_EQ(i->unpaid(), Decimal(100));
    EXPECT_FALSE(i->isPaid());
    EXPECT_EQ(rows, QList<TAHistory *>{paid});
    EXPECT_EQ(i->history(), QList<TAHistory *>{paid}); // "Paid" stays
    EXPECT_EQ(context->undoManager()->undoActionName(), QStringLiteral("Delete History Record"));

    // One undo brings back record, payment and status together.
    context->undoManager()->undo();
    EXPECT_EQ(i->status(), 3);
    EXPECT_EQ(i->payments().size(), 1);
    EXPECT_EQ(i->history().size(), 2);

    // A plain record goes alone and holds no payment; the last one leaves no rows.
    TAProject *p = project();
    TAHistory *createdRecord = TAHistory::addProjectCreatedRecord(p);
    QList<TAHistory *> projectRows = TAHistoryList::projectRecords(p);
    const QList<TAHistory *> stale = projectRows;
    const Result<bool> noneLeft = TAHistoryList::deleteRow(projectRows, 0);
    ASSERT_TRUE(noneLeft);
    EXPECT_FALSE(noneLeft.value());
    EXPECT_TRUE(p->history().isEmpty());

    // A list opened before the deletion still shows the record: deleting it again is refused
    // with a reason, and the row goes.
    QList<TAHistory *> staleRows = stale;
    const Result<bool> again = TAHistoryList::deleteRow(staleRows, 0);
    ASSERT_FALSE(again);
    EXPECT_TRUE(again.error().message.contains(QStringLiteral("already deleted")));
    EXPECT_TRUE(staleRows.isEmpty());
    EXPECT_FALSE(TAHistoryList::deleteRecord(createdRecord));
}
