#include "InvoiceFixture.h"

#include "billing/items/TAItemRowEditing.h"
#include "store/entities/TAInventory.h"

namespace {
bool isGone(const ManagedObject *object) {
    return !object->managedObjectContext() || object->isDeleted();
}
} // namespace

class ItemRowEditingTest : public InvoiceFixture {
protected:
    // A catalogue entry for hours at 80 with a rate of its own.
    TAInventory *hourEntry() {
        TAInventory *entry = TAContextDatabase::createInventoryInContext(db.context());
        entry->setSku(QStringLiteral("H1"));
        entry->setName(QStringLiteral("Hour"));
        entry->setPrice(dec("80"));
        entry->setCustomTax(dec("0.05"));
        entry->setIsMaterial(false);
        return entry;
    }
    QString lastUndoName() {
        context->processPendingChanges();
        return context->undoManager()->undoActionName();
    }
};

TEST_F(ItemRowEditingTest, ACataloguePickOnAnInvoiceRowReplacesTheRowsItem) {
    TAInvoice *invoice = invoiceIn(usd);
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    invoice->setProject(project);
    TAMaterial *old = material(invoice, "2", "10");
    TAInventory *entry = hourEntry();
    context->processPendingChanges();
    context->undoManager()->removeAllActions();

    // Only a catalogue entry is taken.
    EXPECT_EQ(TAItemRowEditing::createFromObject(
                  TAContextDatabase::createClientInContext(db.context()), invoice, old),
              nullptr);
    EXPECT_FALSE(isGone(old));

    auto *made = dynamic_cast<TATimer *>(TAItemRowEditing::createFromObject(entry, invoice, old));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->seconds(), 0);
    EXPECT_EQ(made->sku(), QStringLiteral("H1"));
    EXPECT_EQ(made->name(), QStringLiteral("Hour"));
    EXPECT_EQ(made->price(), dec("80"));
    EXPECT_EQ(made->tax(), dec("0.05"));
    EXPECT_EQ(made->invoice(), invoice);
    EXPECT_EQ(made->project(), project);
    EXPECT_TRUE(isGone(old));
    EXPECT_EQ(invoice->items(), (QList<TAItem *>{made}));
    EXPECT_EQ(invoice->total(), Decimal(0));
    EXPECT_EQ(lastUndoName(), QStringLiteral("Add Item"));

    // One undo brings the old row back and takes the new item away.
    context->undoManager()->undo();
    ASSERT_EQ(invoice->items().size(), 1);
    EXPECT_EQ(invoice->items().first()->name(), old->name());
    EXPECT_EQ(invoice->total(), dec("20"));
}

TEST_F(ItemRowEditingTest, ACataloguePickOnAProjectRowFillsAnEmptyRowOrReplacesItsItem) {
    TAProject *project = TAContextDatabase::createProjectInContext(db.context());
    TAInventory *entry = hourEntry();
    entry->setIsMaterial(true);

    auto *first =
        dynamic_cast<TAMaterial *>(TAItemRowEditing::addFromItem(entry, project, nullptr));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->quantity(), Decimal(1));
    EXPECT_EQ(first->project(), project);
    EXPECT_EQ(first->invoice(), nullptr);
    EXPECT_EQ(lastUndoName(), QStringLiteral("Create Item From Template / Add Existing Timer "));

    TAItem *second = TAItemRowEditing::addFromItem(entry, project, first);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(isGone(first));
    EXPECT_EQ(project->items(), (QList<TAItem *>{second}));
    EXPECT_EQ(TAItemRowEditing::addFromItem(entry, nullptr, second), nullptr);
}

TEST_F(ItemRowEditingTest, SavingARowWhoseOnlyChangeIsTheDiscountRefreshesTheInvoice) {
    TAInvoice *invoice = invoiceIn(usd);
    TAMaterial *m = material(invoice, "2", "10");
    ASSERT_EQ(invoice->total(), dec("20"));
    const TAItemRowInput row{"", "", "50", "10", "0", "2", nullptr};
    TAItemRowEditing::saveItemRow(m, row, TAItemRowEditing::Row::Invoice);
    EXPECT_EQ(m->discount(), dec("0.5"));
    EXPECT_EQ(invoice->subTotal(), dec("10"));
    EXPECT_EQ(invoice->total(), dec("10"));
}
