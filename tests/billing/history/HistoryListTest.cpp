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
    EXPECT_TRUE(TAHistoryList::deleteRow(rows, row));

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

    // A plain record goes alone; the last one leaves no rows.
    TAProject *p = project();
    TAHistory::addProjectCreatedRecord(p);
    QList<TAHistory *> projectRows = TAHistoryList::projectRecords(p);
    EXPECT_FALSE(TAHistoryList::deleteRow(projectRows, 0));
    EXPECT_TRUE(p->history().isEmpty());
}
