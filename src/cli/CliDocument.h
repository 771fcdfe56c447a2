#pragma once

#include "store/TADatabase.h"
#include "store/objectstore/ManagedObjectContext.h"
#include "store/objectstore/PersistentStore.h"
#include "store/objectstore/Result.h"

#include <memory>

// A document file opened or made for one command: its store, main context and data access.
class CliDocument {
public:
    static Result<std::unique_ptr<CliDocument>> open(const QString &path, bool readOnly);
    static Result<std::unique_ptr<CliDocument>> create(const QString &path);
    // A document that lives in memory until saveAs puts it in a file in one step, so a failed
    // command never leaves a partial file behind.
    static Result<std::unique_ptr<CliDocument>> createInMemory();

    PersistentStore &store() { return *m_store; }
    ManagedObjectContext &context() { return *m_context; }
    TADatabase &database() { return m_database; }
    Result<void> save();
    // Saves the context, then writes the whole store to the path (a temporary file renamed
    // into place, replacing any file there).
    Result<void> saveAs(const QString &path);

private:
    CliDocument() = default;
    void bind(std::shared_ptr<PersistentStore> store);

    std::shared_ptr<PersistentStore> m_store;
    std::unique_ptr<ManagedObjectContext> m_context;
    TADatabase m_database;
};
