#pragma once

#include "foundation/money/Decimal.h"

#include <QString>

class ManagedObject;
class TAInventory;
class TAInvoice;
class TAItem;
class TAProject;
class TATax;

// The fields of an item row as the user left them, in the text they were typed in.
struct TAItemRowInput {
    QString sku;
    QString name;
    QString discount; // percent
    QString price;
    QString tax; // percent
    QString quantity;
    TATax *namedTax = nullptr; // the named tax chosen in the row, if any
};

// What the row editors of invoices, projects and the catalogue store when a row is saved,
// and the change of an item's kind. No widgets: the editing views call these.
class TAItemRowEditing {
public:
    enum class Row { Invoice, Project };

    // Stores the fields into the item. An invoice row rounds the price to the invoice's
    // currency; project rows keep it as typed. The item's invoice is then asked to refresh its
    // totals, since a discount alone does not ask for it.
    static void saveItemRow(TAItem *item, const TAItemRowInput &input, Row row);
    // A catalogue row: its tax is either the chosen named tax or a rate of its own.
    static void saveInventoryRow(TAInventory *entry, const TAItemRowInput &input);

    // The typed percentage as a fraction, never above 1.
    static Decimal discountFromField(const QString &text);
    // The typed percentage as a fraction; anything unreadable is 0.
    static Decimal taxFromField(const QString &text);

    // An invoice row changes kind: the copy replaces the item, which is deleted.
    static TAItem *changeInvoiceItemKind(TAItem *item);
    // A project row changes kind field by field, one quantity unit standing for a minute,
    // in the undo group "Update Project Item".
    static TAItem *changeProjectItemKind(TAItem *item);

    // A catalogue entry picked or dropped on an invoice row: its `createItem` goes on the
    // invoice, takes over the invoice's project and replaces the row's old item, which is
    // deleted. One undo group, "Add Item". Anything but a catalogue entry is refused (null).
    static TAItem *createFromObject(ManagedObject *picked, TAInvoice *invoice, TAItem *rowItem);
    // The same on a project row, in the undo group
    // "Create Item From Template / Add Existing Timer ".
    static TAItem *addFromItem(ManagedObject *picked, TAProject *project, TAItem *rowItem);

private:
    TAItemRowEditing() = delete;
};
