#pragma once

#include "foundation/Result.h"
#include "foundation/ScopedOverride.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADatabase.h"

#include <QTemporaryDir>

#include <memory>

class StoreSideFiles;
class TADocument;

// A document file opened or made for one command, and closed again when the command is done.
class CliDocument {
public:
    // What a command reading a file sees of it.
    enum class View {
        // The objects and values the file holds, nothing added, removed or repaired.
        Stored,
        // As the desktop shows it once opened: after its opening steps.
        Opened,
    };

    ~CliDocument();
    CliDocument(const CliDocument &) = delete;
    CliDocument &operator=(const CliDocument &) = delete;

    // Opened as the desktop opens every document, through the same steps.
    static Result<std::unique_ptr<CliDocument>> open(const QString &path, bool readOnly);
    // Opened read-only, never changing the file or leaving files beside it. A file of an older
    // model is read through an upgraded copy in a temporary folder.
    static Result<std::unique_ptr<CliDocument>> read(const QString &path, View view = View::Stored);
    static Result<std::unique_ptr<CliDocument>> create(const QString &path);
    // An empty document that lives in memory until saveAs puts it in a file in one step, so
    // a failed command never leaves a partial file behind.
    static Result<std::unique_ptr<CliDocument>> createInMemory();
    // How long opening waits for another program that holds a file locked, while it lives.
    class ScopedBusyTimeout : public ScopedOverride<int> {
    public:
        explicit ScopedBusyTimeout(int milliseconds)
            : ScopedOverride(&CliDocument::exchangeBusyTimeout, milliseconds) {}
    };

    PersistentStore &store();
    ManagedObjectContext &context();
    TADatabase &database();
    TADocument &document() { return *m_document; }
    // The data model version the file was written with.
    QString fileModelVersion() const;
    // Computes the six cached totals of every invoice again from its items, in memory.
    void refreshCachedTotals();
    Result<void> save();
    // Saves the context, then writes the whole store to the path (a temporary file renamed
    // into place, replacing any file there).
    Result<void> saveAs(const QString &path);

private:
    explicit CliDocument(TADocument *document = nullptr);
    static int exchangeBusyTimeout(int milliseconds);
    Result<QString> upgradedCopy(const QString &path);
    Result<void> bindStore(const QString &path);
    Result<void> readRows();
    void clearContents();

    QString m_fileModelVersion;
    // Tidied away last, once the document closed every connection to the file.
    std::unique_ptr<StoreSideFiles> m_sideFiles;
    std::unique_ptr<QTemporaryDir> m_scratch; // outlives the document that reads from it
    std::unique_ptr<TADocument> m_owned;      // a document read without the controller
    TADocument *m_document = nullptr;
};
