#include "cli/CliDocument.h"

#include "store/TADocModel.h"

void CliDocument::bind(std::shared_ptr<PersistentStore> store) {
    m_store = std::move(store);
    m_context = std::make_unique<ManagedObjectContext>(m_store);
    m_database.setContext(m_context.get());
}

Result<std::unique_ptr<CliDocument>> CliDocument::open(const QString &path, bool readOnly) {
    PersistentStore::Options options;
    options.readOnly = readOnly;
    auto store = PersistentStore::open(path, TADocModel::model(), options);
    if (!store)
        return store.error();
    std::unique_ptr<CliDocument> document(new CliDocument);
    document->bind(*store);
    return document;
}

Result<std::unique_ptr<CliDocument>> CliDocument::create(const QString &path) {
    auto store = PersistentStore::create(path, TADocModel::model());
    if (!store)
        return store.error();
    std::unique_ptr<CliDocument> document(new CliDocument);
    document->bind(*store);
    return document;
}

Result<std::unique_ptr<CliDocument>> CliDocument::createInMemory() {
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store)
        return store.error();
    std::unique_ptr<CliDocument> document(new CliDocument);
    document->bind(*store);
    return document;
}

Result<void> CliDocument::save() {
    return m_context->save();
}

Result<void> CliDocument::saveAs(const QString &path) {
    if (auto saved = m_context->save(); !saved)
        return saved;
    return m_store->saveAs(path);
}
