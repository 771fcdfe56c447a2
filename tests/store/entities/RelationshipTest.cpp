#include "StoreFixture.h"

#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

using RelationshipTest = StoreFixture;

TEST_F(RelationshipTest, BothSidesFollowSetClearAndReassignAndSurviveReopen) {
    auto *anna = insert<TAClient>(TAEntity::Client);
    auto *ben = insert<TAClient>(TAEntity::Client);
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    auto *recurring = insert<TARecurringInvoice>(TAEntity::RecurringInvoice);
    anna->setFullNameValue(QStringLiteral("Anna"));
    ben->setFullNameValue(QStringLiteral("Ben"));

    invoice->setClient(anna);
    EXPECT_EQ(anna->invoiceRelationships(), QList<TAInvoice *>{invoice});
    invoice->setClient(ben);
    EXPECT_TRUE(anna->invoiceRelationships().isEmpty());
    EXPECT_EQ(ben->invoiceRelationships(), QList<TAInvoice *>{invoice});

    // From the to-many side, with null ignored.
    anna->addInvoiceRelationship(invoice);
    anna->addInvoiceRelationship(nullptr);
    anna->removeInvoiceRelationship(nullptr);
    anna->addInvoiceRelationship(recurring);
    EXPECT_EQ(invoice->client(), anna);
    EXPECT_TRUE(ben->invoiceRelationships().isEmpty());
    EXPECT_EQ(anna->invoiceRelationships().size(), 2); // recurring invoices belong too
    anna->removeInvoiceRelationship(invoice);
    EXPECT_EQ(invoice->client(), nullptr);

    auto *payment = insert<TAPayment>(TAEntity::Payment);
    payment->setInvoiceRelationship(recurring);
    auto *timer = insert<TATimer>(TAEntity::Timer);
    auto *interval = insert<TATimerInterval>(TAEntity::TimerInterval);
    interval->setTimerRelationship(timer);

    saveAndReopen();
    auto clients = fetch(TAEntity::Client);
    ASSERT_EQ(clients.size(), 2);
    auto *reopenedAnna = dynamic_cast<TAClient *>(
        clients[0]->stringForKey(TAKey::fullName) == u"Anna" ? clients[0] : clients[1]);
    ASSERT_NE(reopenedAnna, nullptr);
    const auto annasInvoices = reopenedAnna->invoiceRelationships();
    ASSERT_EQ(annasInvoices.size(), 1);
    auto *reopenedRecurring = dynamic_cast<TARecurringInvoice *>(annasInvoices[0]);
    ASSERT_NE(reopenedRecurring, nullptr);
    ASSERT_EQ(reopenedRecurring->payments().size(), 1);
    EXPECT_EQ(reopenedRecurring->payments()[0]->invoiceRelationship(), reopenedRecurring);
    auto *reopenedTimer = dynamic_cast<TATimer *>(fetch(TAEntity::Timer).value(0));
    ASSERT_NE(reopenedTimer, nullptr);
    ASSERT_EQ(reopenedTimer->timerIntervals().size(), 1);
    EXPECT_EQ(reopenedTimer->timerIntervals()[0]->timerRelationship(), reopenedTimer);
    for (ManagedObject *object : fetch(TAEntity::Invoice))
        EXPECT_EQ(dynamic_cast<TAInvoice *>(object)->client(), nullptr);
}

TEST_F(RelationshipTest, SeveralHistoryRecordsMayRelateToOneObject) {
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    auto *first = insert<TAHistory>(TAEntity::History);
    auto *second = insert<TAHistory>(TAEntity::History);
    first->setRelatedInvoice(invoice);
    second->setRelatedInvoice(invoice);
    first->setInvoice(invoice);
    EXPECT_EQ(first->relatedInvoice(), invoice);
    EXPECT_EQ(second->relatedInvoice(), invoice);
    EXPECT_EQ(invoice->history(), QList<TAHistory *>{first});

    // The root's one-way link must not point at a deleted record.
    auto *client = insert<TAClient>(TAEntity::Client);
    client->setAltHistory(second);
    auto *gone = insert<TAHistory>(TAEntity::History);
    invoice->setAltHistory(gone);
    context()->deleteObject(gone);
    EXPECT_EQ(invoice->altHistory(), nullptr);

    context()->deleteObject(invoice);
    EXPECT_TRUE(first->isDeleted()); // owned history goes with the invoice
    EXPECT_FALSE(second->isDeleted());
    EXPECT_EQ(second->relatedInvoice(), nullptr);
    saveAndReopen();
    auto *reopened = dynamic_cast<TAClient *>(fetch(TAEntity::Client).value(0));
    ASSERT_NE(reopened, nullptr);
    ASSERT_NE(reopened->altHistory(), nullptr);
    EXPECT_EQ(reopened->altHistory()->relatedInvoice(), nullptr);
}

TEST_F(RelationshipTest, DeletingAnInvoiceTakesPaymentsAndHistoryAndLeavesItems) {
    auto *project = insert<TAProject>(TAEntity::Project);
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    auto *item = insert<TAMaterial>(TAEntity::Material);
    auto *payment = insert<TAPayment>(TAEntity::Payment);
    auto *currency = insert<TACurrency>(TAEntity::Currency);
    auto *euro = insert<TACurrency>(TAEntity::Currency);
    auto *rate = insert<TACurrencyRate>(TAEntity::CurrencyRate);
    item->setProject(project);
    item->setInvoice(invoice);
    payment->setInvoiceRelationship(invoice);
    payment->setCurrencyCode(QStringLiteral("GBP"));
    payment->setAmount(Decimal::fromString(u"12.50"));
    rate->setCurrFrom(currency);
    rate->setCurrTo(euro);

    context()->deleteObject(invoice);
    EXPECT_TRUE(payment->isDeleted());
    EXPECT_FALSE(item->isDeleted());
    EXPECT_EQ(item->invoice(), nullptr);
    EXPECT_EQ(project->items().size(), 1);

    // A payment keeps only a code: a currency's deletion does not reach it, but its rates go.
    auto *kept = insert<TAPayment>(TAEntity::Payment);
    kept->setCurrencyCode(QStringLiteral("GBP"));
    context()->deleteObject(currency);
    EXPECT_TRUE(rate->isDeleted());
    EXPECT_EQ(kept->currencyCode(), QStringLiteral("GBP"));
    saveAndReopen();
    EXPECT_EQ(fetch(TAEntity::CurrencyRate).size(), 0);
    EXPECT_EQ(fetch(TAEntity::Material).size(), 1);
}

TEST_F(RelationshipTest, DeletingATemplateTakesItsWholeTreeAndFreesItsInvoices) {
    auto *tmpl = insert<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
    auto *page = insert<LMInvoiceTemplatePageClass>(TAEntity::InvoiceTemplatePage);
    auto *element = insert<LMInvoiceElementClass>(TAEntity::InvoiceElement);
    auto *column = insert<LMInvoiceTemplateColumnClass>(TAEntity::InvoiceTemplateColumn);
    auto *row = insert<LMInvoiceTemplateColumnClass>(TAEntity::InvoiceTemplateColumn);
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    page->setInvoiceTemplate(tmpl);
    element->setPage(page);
    column->setElement(element);
    element->addObjectForKey(row, TAKey::rows);
    invoice->setInvoiceTemplate(tmpl);
    EXPECT_EQ(element->columns(), QList<LMInvoiceTemplateColumnClass *>{column});
    EXPECT_EQ(element->rows(), QList<LMInvoiceTemplateColumnClass *>{row});
    EXPECT_EQ(row->rowElement(), element);
    EXPECT_EQ(tmpl->invoices(), QList<TAInvoice *>{invoice});

    auto *timer = insert<TATimer>(TAEntity::Timer);
    auto *interval = insert<TATimerInterval>(TAEntity::TimerInterval);
    interval->setTimerRelationship(timer);
    context()->deleteObject(timer);
    EXPECT_TRUE(interval->isDeleted());

    context()->deleteObject(tmpl);
    for (ManagedObject *gone : QList<ManagedObject *>{page, element, column, row})
        EXPECT_TRUE(gone->isDeleted());
    EXPECT_FALSE(invoice->isDeleted());
    EXPECT_EQ(invoice->invoiceTemplate(), nullptr);
}

// Typed reads of links cast each member once per entity and class and then trust the entity:
// a cast learnt on one entity must not answer for a sibling of another class.
TEST_F(RelationshipTest, TypedLinkReadsKeepSiblingClassesApart) {
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    auto *recurring = insert<TARecurringInvoice>(TAEntity::RecurringInvoice);
    auto *material = insert<TAMaterial>(TAEntity::Material);
    auto *timer = insert<TATimer>(TAEntity::Timer);
    material->setObjectForKey(invoice, TAKey::invoice);
    timer->setObjectForKey(invoice, TAKey::invoice);
    for (int round = 0; round < 2; ++round) { // the second round reads what the first learnt
        EXPECT_EQ(invoice->objectsForKeyAs<TAItem>(TAKey::items).size(), 2);
        EXPECT_EQ(invoice->objectsForKeyAs<TAMaterial>(TAKey::items),
                  QList<TAMaterial *>{material});
        EXPECT_EQ(invoice->objectsForKeyAs<TATimer>(TAKey::items), QList<TATimer *>{timer});
        EXPECT_EQ(ManagedObject::objectAs<TARecurringInvoice>(invoice), nullptr);
        EXPECT_EQ(ManagedObject::objectAs<TARecurringInvoice>(recurring), recurring);
        EXPECT_EQ(ManagedObject::objectAs<TAInvoice>(recurring), recurring);
        EXPECT_EQ(timer->objectForKeyAs<TARecurringInvoice>(TAKey::invoice), nullptr);
        EXPECT_EQ(timer->objectForKeyAs<TAInvoice>(TAKey::invoice), invoice);
    }
}
