#pragma once

class ManagedObject;
class ManagedObjectContext;

// What the data layer asks of the document that owns it. The document implements these;
// until then (and in tests) the defaults do nothing. Held weakly by TADatabase.
class TADocumentHooks {
public:
    virtual ~TADocumentHooks() = default;

    // The sidebar's `refresh` (the document's groupsController).
    virtual void refreshGroups() {}
    // Marks the document as having unsaved changes; 0 means "a change was done".
    virtual void updateChangeCount(int change) { (void)change; }
    // Takes a template that is about to be deleted out of the template editor's list.
    virtual void removeTemplateFromEditorList(ManagedObject *invoiceTemplate) {
        (void)invoiceTemplate;
    }
};
