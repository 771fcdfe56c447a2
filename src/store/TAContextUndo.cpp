#include "store/TAContextUndo.h"

#include "objectstore/ManagedObjectContext.h"
#include "objectstore/UndoManager.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"

void TAContextUndo::disableUndoRegistrationInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    if (UndoManager *undo = context->undoManager())
        undo->disableUndoRegistration();
}

// An edit made outside undo still leaves the document with unsaved changes.
void TAContextUndo::enableUndoRegistrationInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    if (UndoManager *undo = context->undoManager())
        undo->enableUndoRegistration();
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->updateChangeCount(0);
}

void TAContextUndo::beginUndoGroupingWithName(const QString &name, ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    UndoManager *undo = context->undoManager();
    if (!undo)
        return;
    undo->beginUndoGrouping();
    if (!name.isNull())
        undo->setActionName(name);
}

void TAContextUndo::endUndoGroupingInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    if (UndoManager *undo = context->undoManager())
        undo->endUndoGrouping();
    context->processPendingChanges();
}
