#pragma once

#include "store/TADatabase.h"
#include "store/objectstore/ManagedObjectContext.h"
#include "store/objectstore/PersistentStore.h"
#include "store/objectstore/Result.h"

#include <memory>

class TADocument;

// A document file opened or made for one command. It is opened as the program opens every
// document, through the same steps, and closed again when the command is done.
class CliDocument {
public:
    ~CliDocument();
    CliDocument(const CliDocument &) = delete;
    CliDocument &operator=(const CliDocument &) = delete;

    static Result<std::unique_ptr<CliDocument>> open(const QString &path, bool readOnly);
    static Result<std::unique_ptr<CliDocument>> create(const QString &path);
    // An empty document that lives in memory until saveAs puts it in a file in one step, so
    // a failed command never leaves a partial file behind.
    static Result<std::unique_ptr<CliDocument>> createInMemory();

    PersistentStore &store();
    ManagedObjectContext &context();
    TADatabase &database();
    TADocument &document() { return *m_document; }
    Result<void> save();
    // Saves the context, then writes the whole store to the path (a temporary file renamed
    // into place, replacing any file there).
    Result<void> saveAs(const QString &path);

private:
    explicit CliDocument(TADocument *document)
        : m_document(document) {}
    void clearContents();

    TADocument *m_document;
};
