#pragma once

#include <QString>

class ManagedObjectContext;

// Undo control for code that holds a context. Each flushes pending changes first, except
// endUndoGroupingInContext, which closes the group and flushes after. A non-null name always
// replaces the current one. A null context is left alone.
class TAContextUndo {
public:
    static void disableUndoRegistrationInContext(ManagedObjectContext *context);
    static void enableUndoRegistrationInContext(ManagedObjectContext *context);
    static void beginUndoGroupingWithName(const QString &name, ManagedObjectContext *context);
    static void endUndoGroupingInContext(ManagedObjectContext *context);

private:
    TAContextUndo() = delete;
};
