#include "LayoutFixture.h"

#include "foundation/TANotificationCenter.h"
#include "layoutvalues/LMNotifications.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAPreferences.h"

namespace {

LMTextAlignment alignmentOf(LMInvoiceTemplateColumnClass *column) {
    return column->getColumnAttributes().paragraph.value_or(LMParagraphStyle{}).alignment;
}

LMInvoiceTemplateColumnClass *byID(const QList<LMInvoiceTemplateColumnClass *> &list,
                                   const QString &id) {
    for (LMInvoiceTemplateColumnClass *column : list)
        if (column->colID() == id)
            return column;
    return nullptr;
}

} // namespace

class TemplateColumnsTest : public LayoutFixture {
protected:
    void setTaxes(bool on) {
        TAContextDatabase::getPreferencesInContext(context())->setTaxesEnabled(on);
    }
};

TEST_F(TemplateColumnsTest, ItemColumnsFollowTheTaxSettingAndKeepTheUsersChanges) {
    setTaxes(true);
    LMInvoiceElementClass *table = newElement(13);
    QList<LMInvoiceTemplateColumnClass *> columns = table->getColsArray();
    ASSERT_EQ(colIDs(columns), LMInvoiceElementClass::columnIdentifiers(true));
    for (qsizetype i = 0; i < columns.size(); ++i) {
        EXPECT_EQ(columns[i]->nr(), i);
        EXPECT_EQ(alignmentOf(columns[i]), i == 0 ? LMTextAlignment::Left : LMTextAlignment::Right);
    }
    EXPECT_EQ(columns[2]->name(), QStringLiteral("Units/Hours"));
    EXPECT_FALSE(byID(columns, QStringLiteral("_discount_"))->visible());
    EXPECT_FALSE(byID(columns, QStringLiteral("_unitprice_with_discount_"))->visible());
    EXPECT_TRUE(byID(columns, QStringLiteral("_cost_"))->visible());

    byID(columns, QStringLiteral("_cost_"))->setName(QStringLiteral("Amount"));
    byID(columns, QStringLiteral("_description_"))->setWidth(200);
    byID(columns, QStringLiteral("_sku_"))->setVisible(false);
    byID(columns, QStringLiteral("_tax_"))->setName(QStringLiteral("VAT"));
    byID(columns, QStringLiteral("_tax_"))
        ->setColumnAttributes(LMTextAttributes::withAlignment(LMTextAlignment::Center));

    setTaxes(false);
    columns = table->getColsArray();
    EXPECT_EQ(colIDs(columns), LMInvoiceElementClass::columnIdentifiers(false));
    for (qsizetype i = 0; i < columns.size(); ++i)
        EXPECT_EQ(columns[i]->nr(), i);
    EXPECT_EQ(byID(columns, QStringLiteral("_cost_"))->name(), QStringLiteral("Amount"));
    EXPECT_EQ(byID(columns, QStringLiteral("_description_"))->width(), 200);
    EXPECT_FALSE(byID(columns, QStringLiteral("_sku_"))->visible());

    // Back on: a new tax column with the standard title, the others behind it move up.
    setTaxes(true);
    columns = table->getColsArray();
    ASSERT_EQ(colIDs(columns), LMInvoiceElementClass::columnIdentifiers(true));
    LMInvoiceTemplateColumnClass *tax = byID(columns, QStringLiteral("_tax_"));
    EXPECT_EQ(tax->nr(), 3);
    EXPECT_EQ(tax->name(), QStringLiteral("Tax"));
    EXPECT_TRUE(tax->visible());
    EXPECT_NE(alignmentOf(tax), LMTextAlignment::Center);
    EXPECT_EQ(byID(columns, QStringLiteral("_cost_"))->nr(), 8);
    EXPECT_EQ(table->columns().size(), 9);

    // Any other element gets the two columns of a totals table.
    LMInvoiceElementClass *totals = newElement(2, table->page());
    const QList<LMInvoiceTemplateColumnClass *> two = totals->getColsArray();
    ASSERT_EQ(colIDs(two), (QStringList{QStringLiteral("name"), QStringLiteral("value")}));
    EXPECT_EQ(alignmentOf(two[0]), LMTextAlignment::Left);
    EXPECT_EQ(alignmentOf(two[1]), LMTextAlignment::Right);
}

TEST_F(TemplateColumnsTest, TotalsRowsAreRebuiltWhenOneIsUnknown) {
    LMInvoiceElementClass *totals = newElement(2);
    QList<LMInvoiceTemplateColumnClass *> rows = totals->getRowsArray();
    ASSERT_EQ(colIDs(rows), LMInvoiceElementClass::totalTableRowsIdentifiers());
    EXPECT_EQ(rows[2]->name(), QStringLiteral("Tax 2"));
    EXPECT_EQ(alignmentOf(rows[0]), LMTextAlignment::Left);
    EXPECT_EQ(alignmentOf(rows[1]), LMTextAlignment::Right);

    // Known identifiers keep the user's titles.
    rows[4]->setName(QStringLiteral("Amount Due"));
    EXPECT_EQ(totals->getRowsArray()[4]->name(), QStringLiteral("Amount Due"));

    // One stray identifier: all rows go, seven new ones carry the last old row's attributes.
    const QList<LMInvoiceTemplateColumnClass *> stored = totals->rows();
    stored.first()->setColID(QStringLiteral("_total_table_bogus_"));
    stored.last()->setColumnAttributes(LMTextAttributes::withAlignment(LMTextAlignment::Center));
    rows = totals->getRowsArray();
    ASSERT_EQ(colIDs(rows), LMInvoiceElementClass::totalTableRowsIdentifiers());
    EXPECT_EQ(totals->rows().size(), 7);
    for (LMInvoiceTemplateColumnClass *row : rows)
        EXPECT_EQ(alignmentOf(row), LMTextAlignment::Center);
    EXPECT_EQ(rows[4]->name(), QStringLiteral("Total"));
    for (LMInvoiceTemplateColumnClass *old : stored)
        EXPECT_EQ(old->managedObjectContext(), nullptr);

    EXPECT_EQ(LMInvoiceElementClass::totalTableRowTitle(QStringLiteral("_x_")),
              QStringLiteral("Error:Unknown title"));
    // Rows are only made for totals elements.
    EXPECT_TRUE(newElement(13, totals->page())->getRowsArray().isEmpty());
}

TEST_F(TemplateColumnsTest, WidthsShareAHundredAmongVisibleColumns) {
    setTaxes(true);
    LMInvoiceElementClass *table = newElement(13);
    const QList<LMInvoiceTemplateColumnClass *> columns = table->getColsArray();
    for (LMInvoiceTemplateColumnClass *column : columns)
        column->setWidth(10);
    int posted = 0;
    const int token = TANotificationCenter::defaultCenter().addObserver(
        LMNotification::templateTableViewNeedsReload,
        [&](const QString &, ManagedObject *object) { posted += object == table ? 1 : 100; });

    // Five visible columns behind the first, 10 each: the first takes the rest.
    table->updateColumnsWidthsFromIndex(4);
    EXPECT_EQ(columns[0]->width(), 50);
    EXPECT_EQ(columns[4]->width(), 10); // hidden, untouched

    // Too wide: cut where a hundred is reached, zero behind it; hidden ones stay.
    columns[1]->setWidth(40);
    columns[2]->setWidth(40);
    table->updateColumnsWidthsFromIndex(0);
    EXPECT_EQ(columns[0]->width(), 50);
    EXPECT_EQ(columns[1]->width(), 40);
    EXPECT_EQ(columns[2]->width(), 10);
    EXPECT_EQ(columns[3]->width(), 0);
    EXPECT_EQ(columns[6]->width(), 0);
    EXPECT_EQ(columns[8]->width(), 0);
    EXPECT_EQ(columns[5]->width(), 10);
    EXPECT_EQ(posted, 2);

    // The inspector's edits of width or visibility redistribute at once.
    table->tableViewSetObjectValue(false, TAKey::visible, 1);
    EXPECT_FALSE(columns[1]->visible());
    EXPECT_EQ(columns[0]->width(), 90);
    TANotificationCenter::defaultCenter().removeObserver(token);

    LMInvoiceElementClass *totals = newElement(2, table->page());
    EXPECT_EQ(totals->numberOfRowsInTableView(), 7);
    EXPECT_FALSE(totals->tableViewShouldEditTableColumn(1));
    EXPECT_TRUE(totals->tableViewShouldEditTableColumn(0));
    EXPECT_EQ(table->numberOfRowsInTableView(), 9);
}
