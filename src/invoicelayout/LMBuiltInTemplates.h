#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class LMInvoiceTemplateClass;
class ManagedObjectContext;
class PersistentStore;

// The built-in designs. Their text is compiled into the program; a scratch in-memory document
// is built from it whenever one is needed, and templates are copied from there into a
// document, so that the built-in set is never changed by its users.
class LMBuiltInTemplates {
public:
    // The designs in the order they are seeded and offered.
    static QStringList templateNames();

    // A scratch document holding the five templates; null when the resource cannot be read.
    struct ResourceDocument {
        std::shared_ptr<PersistentStore> store;
        std::unique_ptr<ManagedObjectContext> context;
        ~ResourceDocument();
    };
    static std::unique_ptr<ResourceDocument> openResource();

    // Copies the first built-in template of that name into the context, with its pages,
    // elements, columns and rows; null when the name is not built in.
    static LMInvoiceTemplateClass *importTemplateNamed(const QString &name,
                                                       ManagedObjectContext *context);
    // Copies a template from another context in the same order: the template, then each page
    // linked to it, each element of the page, its columns and its rows.
    static LMInvoiceTemplateClass *copyTemplate(LMInvoiceTemplateClass *source,
                                                ManagedObjectContext *context);
    // Copies all built-in templates into a context; undo registration is off meanwhile, since
    // a document that just opened has nothing the user did to undo.
    static void seedBuiltInTemplates(ManagedObjectContext *context);

    // Makes getTemplates seed a document that has no templates.
    static void install();

private:
    LMBuiltInTemplates() = delete;
};
