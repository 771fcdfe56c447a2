#include "HistoryFixture.h"

#include "billing/history/TAHistoryList.h"
#include "objectstore/UndoManager.h"
#include "store/entities/TAHistory.h"

#include <QCoreApplication>
#include <QTranslator>

TEST_F(HistoryFixture, ProjectRecordsCarryTypeNowAndTheSubjectsStateAtThatMoment) {
    TAProject *p = project();
    TAClient *c = client();
    c->setCompanyValue(QStringLiteral("Acme Ltd"));
    p->setClient(c);
    p->setStatus(2);
    p->setDueDate(at("2026-04-01T00:00:00Z"));

    TAHistory::addProjectHistoryRecords(p);
    p->setStatus(3);
    TAInvoice *i = invoice();
    TAHistory *created = TAHistory::addProjectInvoiceCreatedRecord(p, i);

    const QList<TAHistory *> records = TAHistoryList::projectRecords(p);
    ASSERT_EQ(records.size(), 4);
    QList<int> types;
    for (TAHistory *r : records) {
        types.append(r->type());
        EXPECT_EQ(r->date(), clock.now());
        EXPECT_EQ(r->project(), p);
        EXPECT_EQ(r->invoice(), nullptr);
    }
    EXPECT_TRUE(types.contains(TAHistory::ProjectClientChanged));
    EXPECT_TRUE(types.contains(TAHistory::ProjectStatusChanged));
    EXPECT_TRUE(types.contains(TAHistory::ProjectDueDateChanged));
    EXPECT_EQ(created->relatedInvoice(), i);
    EXPECT_EQ(created->historyText(), QStringLiteral("Invoice created"));

    for (TAHistory *r : records) {
        if (r->type() == TAHistory::ProjectStatusChanged) {
            EXPECT_EQ(r->intValue(), 2); // the status when written, not the later one
            EXPECT_EQ(r->historyText(), QStringLiteral("Status changed to Active"));
        } else if (r->type() == TAHistory::ProjectClientChanged) {
            EXPECT_EQ(r->historyText(), QStringLiteral("Assigned to client: Acme Ltd"));
        } else if (r->type() == TAHistory::ProjectDueDateChanged) {
            EXPECT_EQ(r->dateValue(), at("2026-04-01T00:00:00Z"));
            EXPECT_TRUE(r->historyText().startsWith(QStringLiteral("Due date changed to: ")));
        }
    }

    // Without a client only status and due date are written.
    TAProject *bare = project();
    TAHistory::addProjectHistoryRecords(bare);
    EXPECT_EQ(bare->history().size(), 2);
    TAHistory *odd = TAHistory::addProjectStatusChangedRecord(bare);
    odd->setIntValue(7);
    EXPECT_EQ(odd->historyText(), QStringLiteral("Status changed"));
}

TEST_F(HistoryFixture, InvoiceRecordsAndTheirWords) {
    TAInvoice *i = invoice();
    i->setDate(at("2026-03-01T12:00:00Z"));
    TAProject *p = project();
    p->setName(QStringLiteral("Roof"));

    TAHistory *created = TAHistory::addInvoiceCreatedRecord(i);
    EXPECT_EQ(created->type(), TAHistory::InvoiceCreated);
    EXPECT_EQ(created->dateValue(), i->date());
    EXPECT_EQ(created->date(), clock.now());
    EXPECT_EQ(created->invoice(), i);

    EXPECT_EQ(TAHistory::addInvoiceCreatedInProjectRecord(i, p)->historyText(),
              QStringLiteral("Created in project: Roof"));
    EXPECT_EQ(TAHistory::addInvoiceAssignedToProjectRecord(i, p)->historyText(),
              QStringLiteral("Assigned to project: Roof"));
    EXPECT_EQ(TAHistory::addInvoicePaidRecord(i)->historyText(), QStringLiteral("Paid"));

    // Sent: the e-mail, else the name, else a placeholder.
    EXPECT_EQ(TAHistory::addInvoiceSentRecord(i)->historyText(),
              QStringLiteral("Sent to client: [empty]"));
    TAClient *c = client();
    c->setCompanyValue(QStringLiteral("Acme"));
    i->setClient(c);
    TAHistory *sent = TAHistory::addInvoiceSentRecord(i);
    EXPECT_EQ(sent->relatedClient(), c);
    EXPECT_EQ(sent->historyText(), QStringLiteral("Sent to client: Acme"));
    c->setEmailValue(QStringLiteral("billing@acme.test"));
    EXPECT_EQ(sent->historyText(), QStringLiteral("Sent to client: billing@acme.test"));

    // A payment record is dated by the payment and speaks in the payment's own currency.
    TAPayment *pay = payment(i, "12.50", QStringLiteral("CHF"), at("2026-02-27T08:00:00Z"));
    TAHistory *received = TAHistory::addInvoicePaymentReceivedRecord(i, pay);
    EXPECT_EQ(received->type(), TAHistory::InvoicePaymentReceived);
    EXPECT_EQ(received->date(), pay->date());
    EXPECT_EQ(received->relatedPayment(), pay);
    EXPECT_TRUE(received->historyText().startsWith(QStringLiteral("Payment received: ")));
    EXPECT_TRUE(received->historyText().contains(QStringLiteral("CHF")));
    EXPECT_TRUE(received->historyText().contains(QStringLiteral("12")));

    // Nothing is made for an object outside any context.
    EXPECT_EQ(TAHistory::addInvoicePaidRecord(nullptr), nullptr);
}

TEST_F(HistoryFixture, UnknownTypesReadAsNoInfoAndAreCorrectedInTheStore) {
    TAProject *p = project();
    TAHistory *r = TAHistory::addProjectCreatedRecord(p);

    // 2 and 3 are invoice-only numbers; the project side does not know them.
    for (int stored : {2, 3, 10, -1}) {
        r->setProjectHistoryType(stored);
        EXPECT_EQ(r->projectHistoryType(), 0) << stored;
        EXPECT_EQ(r->type(), 0) << stored;
        EXPECT_EQ(r->historyText(), QStringLiteral("No info"));
    }
    r->setProjectHistoryType(9);
    EXPECT_EQ(r->projectHistoryType(), 9);

    TAHistory *ir = TAHistory::addInvoicePaidRecord(invoice());
    for (int stored : {7, 8, 9, 42}) {
        ir->setInvoiceHistoryType(stored);
        EXPECT_EQ(ir->invoiceHistoryType(), 0) << stored;
        EXPECT_EQ(ir->type(), 0) << stored;
    }
    ir->setInvoiceHistoryType(0);
    EXPECT_EQ(ir->invoiceHistoryType(), 0);
    EXPECT_EQ(ir->historyText(), QStringLiteral("No info"));
    ir->setInvoiceHistoryType(6);
    EXPECT_EQ(ir->invoiceHistoryType(), 6);
}

namespace {
// Stands for a language file: every word of the history's own context comes back marked.
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char *context, const char *sourceText, const char *,
                      int) const override {
        if (qstrcmp(context, "TAHistory") != 0)
            return {};
        return QStringLiteral("<%1>").arg(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return false; }
};
} // namespace

TEST_F(HistoryFixture, WordsGoThroughTheTranslationAndTheSeparatorStaysWithoutADetail) {
    TAProject *p = project();
    TAInvoice *i = invoice();
    // The separator is part of the text even when the detail is empty.
    EXPECT_EQ(TAHistory::addInvoiceCreatedInProjectRecord(i, p)->historyText(),
              QStringLiteral("Created in project: "));
    EXPECT_EQ(TAHistory::addInvoiceAssignedToProjectRecord(i, nullptr)->historyText(),
              QStringLiteral("Assigned to project: "));
    TAHistory *assigned = TAHistory::addProjectClientChangedRecord(p);
    EXPECT_EQ(assigned->historyText(), QStringLiteral("Assigned to client: "));

    int argc = 1;
    char name[] = "history";
    char *argv[] = {name, nullptr};
    std::unique_ptr<QCoreApplication> ownApp;
    if (!QCoreApplication::instance())
        ownApp = std::make_unique<QCoreApplication>(argc, argv);
    MarkingTranslator marking;
    ASSERT_TRUE(QCoreApplication::installTranslator(&marking));
    p->setName(QStringLiteral("Roof"));
    EXPECT_EQ(TAHistory::addInvoiceCreatedInProjectRecord(i, p)->historyText(),
              QStringLiteral("<Created in project>: Roof"));
    EXPECT_EQ(TAHistory::addInvoiceSentRecord(i)->historyText(),
              QStringLiteral("<Sent to client>: <[empty]>"));
    EXPECT_EQ(TAHistory::addInvoicePaidRecord(i)->historyText(), QStringLiteral("<Paid>"));
    TAHistory *status = TAHistory::addProjectStatusChangedRecord(p);
    status->setIntValue(3);
    EXPECT_EQ(status->historyText(), QStringLiteral("<Status changed to Closed>"));
    assigned->setType(42);
    EXPECT_EQ(assigned->historyText(), QStringLiteral("<No info>"));
    QCoreApplication::removeTranslator(&marking);
}
