#include "invoicelayout/LMBuiltInTemplates.h"

#include "invoicelayout/LMTemplateDesignReader.h"
#include "layoutvalues/LMArchivedImage.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TAApplicationHooks.h"
#include "store/TAContextDatabase.h"
#include "store/TADocModel.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAKeys.h"

#include <QFile>
#include <QImage>

static void initTemplateResources() {
    Q_INIT_RESOURCE(templates);
}

namespace {

const QString kResourceFolder = QStringLiteral(":/templates/");

QString designFileName(const QString &name) {
    return kResourceFolder + name.toLower().replace(QLatin1Char(' '), QLatin1Char('-')) +
           QStringLiteral(".json");
}

QByteArray readResource(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QByteArray loadPicture(const QString &fileName) {
    QImage image;
    if (!image.load(kResourceFolder + fileName))
        return {};
    return LMArchivedImage::archive(image);
}

template <class T>
T *insertLike(ManagedObjectContext *context, const QString &entity, const ManagedObject *source) {
    T *copy = context->insertNewObjectAs<T>(entity);
    copy->copyFromManagedObject(source, QStringList());
    return copy;
}

} // namespace

LMBuiltInTemplates::ResourceDocument::~ResourceDocument() {
    context.reset(); // before the store it sits on
}

QStringList LMBuiltInTemplates::templateNames() {
    return {QStringLiteral("Blue Simple"), QStringLiteral("Sky"), QStringLiteral("Time"),
            QStringLiteral("Rainbow"), QStringLiteral("Wave")};
}

std::unique_ptr<LMBuiltInTemplates::ResourceDocument> LMBuiltInTemplates::openResource() {
    initTemplateResources();
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store.ok()) {
        qWarning().noquote() << "Built-in templates unavailable:" << store.error().message;
        return nullptr;
    }
    auto document = std::make_unique<ResourceDocument>();
    document->store = store.value();
    document->context = std::make_unique<ManagedObjectContext>(document->store);
    document->context->setUndoManager(nullptr);
    const LMTemplateDesignReader reader(loadPicture);
    for (const QString &name : templateNames()) {
        const Result<QVariantMap> dictionary = reader.read(readResource(designFileName(name)));
        if (!dictionary) {
            qWarning().noquote() << "Built-in template" << name
                                 << "unavailable:" << dictionary.error().message;
            return nullptr;
        }
        auto *invoiceTemplate =
            document->context->insertNewObjectAs<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
        invoiceTemplate->initWithDescriptionDictionary(dictionary.value());
    }
    document->context->processPendingChanges();
    return document;
}

LMInvoiceTemplateClass *LMBuiltInTemplates::copyTemplate(LMInvoiceTemplateClass *source,
                                                         ManagedObjectContext *context) {
    if (!source || !context)
        return nullptr;
    auto *copy = insertLike<LMInvoiceTemplateClass>(context, TAEntity::InvoiceTemplate, source);
    for (LMInvoiceTemplatePageClass *page : source->getSortedPages()) {
        auto *pageCopy =
            insertLike<LMInvoiceTemplatePageClass>(context, TAEntity::InvoiceTemplatePage, page);
        pageCopy->setInvoiceTemplate(copy);
        for (LMInvoiceElementClass *element : page->getSortedElements()) {
            auto *elementCopy =
                insertLike<LMInvoiceElementClass>(context, TAEntity::InvoiceElement, element);
            elementCopy->setPage(pageCopy);
            for (LMInvoiceTemplateColumnClass *column : element->columns())
                insertLike<LMInvoiceTemplateColumnClass>(context, TAEntity::InvoiceTemplateColumn,
                                                         column)
                    ->setElement(elementCopy);
            for (LMInvoiceTemplateColumnClass *row : element->rows())
                insertLike<LMInvoiceTemplateColumnClass>(context, TAEntity::InvoiceTemplateColumn,
                                                         row)
                    ->setRowElement(elementCopy);
        }
    }
    return copy;
}

LMInvoiceTemplateClass *LMBuiltInTemplates::importTemplateNamed(const QString &name,
                                                                ManagedObjectContext *context) {
    if (!context)
        return nullptr;
    const std::unique_ptr<ResourceDocument> resource = openResource();
    if (!resource)
        return nullptr;
    const QList<LMInvoiceTemplateClass *> found =
        TAContextDatabase::objectsAs<LMInvoiceTemplateClass>(
            TAContextDatabase::fetchEntity(TAEntity::InvoiceTemplate, resource->context.get()));
    for (LMInvoiceTemplateClass *candidate : found)
        if (candidate->name() == name)
            return copyTemplate(candidate, context);
    return nullptr;
}

void LMBuiltInTemplates::seedBuiltInTemplates(ManagedObjectContext *context) {
    if (!context)
        return;
    const std::unique_ptr<ResourceDocument> resource = openResource();
    if (!resource)
        return;
    QList<LMInvoiceTemplateClass *> found = TAContextDatabase::objectsAs<LMInvoiceTemplateClass>(
        TAContextDatabase::fetchEntity(TAEntity::InvoiceTemplate, resource->context.get()));
    std::stable_sort(found.begin(), found.end(),
                     [](auto *a, auto *b) { return a->creationDate() < b->creationDate(); });
    TAContextDatabase::disableUndoRegistrationInContext(context);
    for (LMInvoiceTemplateClass *source : found)
        copyTemplate(source, context);
    TAContextDatabase::enableUndoRegistrationInContext(context);
}

void LMBuiltInTemplates::install() {
    TAApplicationHooks::setBuiltInTemplateSeeder(&LMBuiltInTemplates::seedBuiltInTemplates);
}
