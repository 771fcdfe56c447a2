#include "DataFixture.h"

#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"

namespace {
using DeletionTest = DataFixture;

bool gone(const ManagedObject *object) {
    return object->managedObjectContext() == nullptr;
}

struct ProjectWithItems {
    TAProject *project;
    TATimer *running;
    TAMaterial *material;
    TATimer *invoiced;
    TAInvoice *invoice;
};

ProjectWithItems makeProject(TADatabase &db) {
    ProjectWithItems p{};
    p.project = TAContextDatabase::createProjectInContext(db.context());
    p.running = TAContextDatabase::createTimerInContext(db.context());
    p.running->setProject(p.project);
    p.material = TAContextDatabase::createMaterialInContext(db.context());
    p.material->setProject(p.project);
    p.invoice = TAContextDatabase::createInvoiceInContext(db.context());
    p.invoiced = TAContextDatabase::createTimerInContext(db.context());
    p.invoiced->setProject(p.project);
    p.invoiced->setInvoice(p.invoice);
    return p;
}
} // namespace

TEST_F(DeletionTest, ProjectTakesItsUninvoicedItemsAndStopsItsTimers) {
    for (bool many : {false, true}) {
        ProjectWithItems p = makeProject(db());
        TAHistory *created = p.project->history().value(0);
        ASSERT_NE(created, nullptr);
        app.active = {p.running, p.invoiced};
        app.main = p.running;
        app.removed.clear();
        const int refreshes = doc->hooks.refreshes;

        if (many)
            TAContextDatabase::deleteObjects({p.project}, db().context());
        else
            TAContextDatabase::deleteObject(p.project, db().context());

        EXPECT_TRUE(gone(p.project));
        EXPECT_TRUE(gone(p.running));
        EXPECT_TRUE(gone(p.material));
        EXPECT_TRUE(gone(created));
        EXPECT_FALSE(gone(p.invoiced));
        EXPECT_EQ(p.invoiced->invoice(), p.invoice);
        EXPECT_EQ(p.invoiced->project(), nullptr);
        EXPECT_EQ(app.removed, QList<ManagedObject *>({p.running}));
        EXPECT_EQ(app.main, nullptr);
        EXPECT_EQ(doc->hooks.refreshes, refreshes + 1);
    }
}

TEST_F(DeletionTest, InvoiceLeavesItsItemsAndTakesItsPayments) {
    ProjectWithItems p = makeProject(db());
    TAPayment *payment = TAContextDatabase::createPaymentInContext(db().context());
    payment->setInvoiceRelationship(p.invoice);
    TAContextDatabase::deleteObject(p.invoice, db().context());
    EXPECT_TRUE(gone(p.invoice));
    EXPECT_TRUE(gone(payment));
    EXPECT_FALSE(gone(p.invoiced));
    EXPECT_EQ(p.invoiced->invoice(), nullptr);
    EXPECT_EQ(p.invoiced->project(), p.project);

    // A timer deleted by itself is stopped first; nothing happens for null. (Billing a timer
    // while the fixture was built already told the pool to forget it: start counting here.)
    app.removed.clear();
    app.active = {p.running};
    TAContextDatabase::deleteObject(p.running, db().context());
    EXPECT_EQ(app.removed, QList<ManagedObject *>({p.running}));
    TAContextDatabase::deleteObject(nullptr, db().context());
    TAContextDatabase::deleteObjects({nullptr}, db().context());
}

TEST_F(DeletionTest, TemplateHandsItsInvoicesToTheFirstRemainingOne) {
    doc->addTemplate("One");
    doc->addTemplate("Two");
    doc->addTemplate("Three");
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(db().context());
    ASSERT_EQ(templates.size(), 3);
    TAInvoice *a = TAContextDatabase::createInvoiceInContext(db().context());
    TAInvoice *b = TAContextDatabase::createInvoiceInContext(db().context());
    a->setInvoiceTemplate(templates[0]);
    b->setInvoiceTemplate(templates[0]);

    TAContextDatabase::deleteObject(templates[0], db().context());
    EXPECT_EQ(doc->hooks.templatesRemoved, QList<ManagedObject *>({templates[0]}));
    const QList<LMInvoiceTemplateClass *> left =
        TAContextDatabase::getTemplatesInContext(db().context());
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(a->invoiceTemplate(), left.first());
    EXPECT_EQ(b->invoiceTemplate(), left.first());

    TAContextDatabase::deleteObjects({left[0], left[1]}, db().context());
    EXPECT_TRUE(TAContextDatabase::getTemplatesInContext(db().context()).isEmpty());
    EXPECT_EQ(a->invoiceTemplate(), nullptr);
}

TEST_F(DeletionTest, UnassignedTimersAreRemovedAndStopped) {
    TATimer *loose = TAContextDatabase::createTimerInContext(db().context());
    TATimer *onProject = TAContextDatabase::createTimerInContext(db().context());
    onProject->setProject(TAContextDatabase::createProjectInContext(db().context()));
    TATimer *onInvoice = TAContextDatabase::createTimerInContext(db().context());
    onInvoice->setInvoice(TAContextDatabase::createInvoiceInContext(db().context()));
    app.active = {loose};
    app.removed.clear(); // putting onInvoice on an invoice already told the pool to forget it

    TAContextDatabase::deleteUnassignedTimersInContext(db().context());
    EXPECT_TRUE(gone(loose));
    EXPECT_FALSE(gone(onProject));
    EXPECT_FALSE(gone(onInvoice));
    EXPECT_EQ(app.removed, QList<ManagedObject *>({loose}));
    EXPECT_EQ(TAContextDatabase::getTimersInContext(db().context()).size(), 2);
}
