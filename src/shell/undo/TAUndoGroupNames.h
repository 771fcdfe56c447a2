#pragma once

#include <QCoreApplication>
#include <QString>

// The names of the undo groups of user commands: the Edit menu and the message after an undo
// show them. Each constant is the English source text; a command opens its group with
// name(constant), which is the text in the user's language. Some names differ only in case or
// in one word from another: they are kept as they are, so that each command reads the same
// in every place it is named.
class TAUndoGroupNames {
    Q_DECLARE_TR_FUNCTIONS(TAUndoGroupNames)
public:
    // Invoices.
    static constexpr const char *CreateInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Invoice");
    static constexpr const char *CreateInvoiceFromSelectedItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Invoice From Selected Items");
    static constexpr const char *CreateInvoiceFromAllItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Invoice From All Items");
    // From catalogue entries; lower case as the command has always shown it.
    static constexpr const char *CreateInvoiceFromInventories =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create invoice");
    static constexpr const char *SendInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Send Invoice");
    static constexpr const char *ArchiveInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Archive Invoice");
    static constexpr const char *UnarchiveInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Unarchive Invoice");
    static constexpr const char *DeleteInvoices =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Delete Invoices");
    static constexpr const char *EditItem = QT_TRANSLATE_NOOP("TAUndoGroupNames", "Edit Item");
    static constexpr const char *AddItem = QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Item");
    static constexpr const char *InvoiceInfoEdit =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Invoice Info Edit");
    // The total view's discount and tax fields.
    static constexpr const char *InvoiceEdit =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Invoice edit");

    // Projects.
    static constexpr const char *CreateProject =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Project");
    static constexpr const char *UpdateProjectItem =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Update Project Item");
    static constexpr const char *DeleteProjectItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Delete Project Item(-s)");
    static constexpr const char *DeleteProjects =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Delete Projects");
    static constexpr const char *ProjectDuplicating =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Project Duplicating");

    // Paste and delete in the lists.
    static constexpr const char *PasteProjectItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Paste Project Items");
    static constexpr const char *PasteProjects =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Paste Projects");
    static constexpr const char *PasteInventories =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Paste Inventories");
    static constexpr const char *PasteClients =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Paste Clients");
    static constexpr const char *DeleteInventories =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Delete Inventories");
    static constexpr const char *DeleteClients =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Delete Clients");

    // Recurring invoices and import.
    static constexpr const char *CreateRecurringInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Recurring Invoice");
    static constexpr const char *ImportLumarin3Data =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Import Lumarin3 Data");

    // Drops on the sidebar, on tiles, on the grids and on the info views' tables.
    static constexpr const char *CreateInventoriesFromInvoiceItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Inventories From Invoice Items");
    static constexpr const char *CreateInventoriesFromProjectItems =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Inventories From Project Items");
    static constexpr const char *CreateInvoicesFromRecurring =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Invoices From Recurring");
    static constexpr const char *CreateRecurringInvoicesFromInvoices =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Create Recurring Invoices From Invoices");
    // A project row of the sidebar takes catalogue entries and the items of another project.
    static constexpr const char *AddInventoriesToProjectRow =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Inventories to Project");
    static constexpr const char *AddProjectItemsToProjectRow =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Items to Project");
    // Invoice items on a project row, and drops on the project view.
    static constexpr const char *AddItemsToProject =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Items To Project");
    static constexpr const char *AddInventoriesToProject =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Inventories To Project");
    static constexpr const char *AddInvoicesToProject =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Invoices to Project");
    static constexpr const char *AssignClientToProject =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Assign Client to Project");
    static constexpr const char *AssignClientToInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Assign Client to Invoice");
    static constexpr const char *AddInventoriesToInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Inventories to Invoice");
    static constexpr const char *AddItemsToInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Items to Invoice");
    static constexpr const char *AddInvoices =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Invoices");
    static constexpr const char *AddInventoriesToRecurringInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Inventories To Recurring Invoice");
    static constexpr const char *AddItemsToRecurringInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Items To Recurring Invoice");
    static constexpr const char *AssignClientToRecurringInvoice =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Assign Client to Recurring Invoice");
    static constexpr const char *AddRecurringInvoices =
        QT_TRANSLATE_NOOP("TAUndoGroupNames", "Add Recurring Invoices");

    // The name to open a group with, in the user's language.
    static QString name(const char *group) { return tr(group); }

private:
    TAUndoGroupNames() = delete;
};
