#include "StoreFixture.h"

#include "objectstore/UndoManager.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"

#include <QCborValue>

using ObjectBaseTest = StoreFixture;

TEST_F(ObjectBaseTest, PropertyDictionaryWritesAtOnceAndEmptiesToNull) {
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    EXPECT_FALSE(invoice->valueForProperty(QStringLiteral("missing")).isValid());
    invoice->setValueForProperty(QStringLiteral("blue"), QStringLiteral("color"));
    invoice->setValueForProperty(3, QStringLiteral("copies"));
    EXPECT_FALSE(invoice->isNullForKey(TAKey::properties));
    saveAndReopen();

    invoice = dynamic_cast<TAInvoice *>(fetch(TAEntity::Invoice).value(0));
    ASSERT_NE(invoice, nullptr);
    EXPECT_EQ(invoice->valueForProperty(QStringLiteral("color")).toString(), u"blue");
    EXPECT_EQ(invoice->valueForProperty(QStringLiteral("copies")).toInt(), 3);
    invoice->setValueForProperty(QVariant(), QStringLiteral("color")); // null removes
    EXPECT_FALSE(invoice->valueForProperty(QStringLiteral("color")).isValid());
    EXPECT_FALSE(invoice->isNullForKey(TAKey::properties));
    invoice->removeValueForProperty(QStringLiteral("copies"));
    EXPECT_TRUE(invoice->isNullForKey(TAKey::properties));
}

TEST_F(ObjectBaseTest, DamagedOrForeignPropertyDataReadsEmptyAndStaysUntilAWrite) {
    auto *project = insert<TAProject>(TAEntity::Project);
    for (const QByteArray &stored :
         {QByteArray("\xa1\x61", 2), QCborValue(QStringLiteral("not a map")).toCbor()}) {
        project->setValueForKey(stored, TAKey::properties);
        EXPECT_FALSE(project->valueForProperty(QStringLiteral("a")).isValid());
        EXPECT_EQ(project->properties(), stored); // reading does not repair
        project->setValueForProperty(1, QStringLiteral("a"));
        EXPECT_EQ(project->valueForProperty(QStringLiteral("a")).toInt(), 1);
        EXPECT_NE(project->properties(), stored);
    }
}

TEST_F(ObjectBaseTest, PropertyDictionaryFollowsUndoOfItsBlob) {
    UndoManager *undo = context()->undoManager();
    ASSERT_NE(undo, nullptr);
    auto *client = insert<TAClient>(TAEntity::Client);
    context()->processPendingChanges();
    undo->closeAutomaticGroup();
    undo->beginUndoGrouping();
    client->setValueForProperty(QStringLiteral("x"), QStringLiteral("k"));
    undo->endUndoGrouping();
    EXPECT_EQ(client->valueForProperty(QStringLiteral("k")).toString(), u"x");
    undo->undo();
    EXPECT_FALSE(client->valueForProperty(QStringLiteral("k")).isValid());
}

TEST_F(ObjectBaseTest, CopyDeclarationsAndAttributeBridgeBetweenTimerAndMaterial) {
    auto *timer = insert<TATimer>(TAEntity::Timer);
    auto *project = insert<TAProject>(TAEntity::Project);
    EXPECT_EQ(timer->relationshipsToCopy(), QStringList{TAKey::timerIntervals});
    EXPECT_EQ(timer->relationshipsToLink(), (QStringList{TAKey::invoice, TAKey::project}));
    EXPECT_EQ(project->relationshipsToCopy(), QStringList{TAKey::items});
    EXPECT_TRUE(insert<TAMaterial>(TAEntity::Material)->relationshipsToCopy().isEmpty());
    const QStringList invoiceAttributes = insert<TAInvoice>(TAEntity::Invoice)->attributesToCopy();
    for (const QString &key : {TAKey::status, TAKey::archived, TAKey::eventUID, TAKey::total})
        EXPECT_TRUE(invoiceAttributes.contains(key)) << key.toStdString();

    timer->setName(QStringLiteral("Design"));
    timer->setPrice(Decimal::fromString(u"85.50"));
    timer->setSeconds(5400);
    timer->setValueForProperty(true, QStringLiteral("flag"));
    timer->setProject(project);
    auto *material = insert<TAMaterial>(TAEntity::Material);
    material->setQuantity(Decimal(4));
    material->copyAttributesFromObject(timer);
    EXPECT_EQ(material->name(), u"Design");
    EXPECT_EQ(material->price(), Decimal::fromString(u"85.5"));
    EXPECT_TRUE(material->valueForProperty(QStringLiteral("flag")).toBool());
    EXPECT_EQ(material->quantity(), Decimal(4)); // not a timer attribute
    EXPECT_EQ(material->project(), nullptr);     // links are not attributes

    auto *back = insert<TATimer>(TAEntity::Timer);
    back->setSeconds(60);
    back->copyAttributesFromObject(material);
    EXPECT_EQ(back->name(), u"Design");
    EXPECT_EQ(back->seconds(), 60);
    EXPECT_EQ(back->duplicate(), nullptr); // no access layer installed here
}

TEST_F(ObjectBaseTest, TemplateGraphCopiesBetweenDocumentsInTwoPasses) {
    auto *tmpl = insert<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
    tmpl->setName(QStringLiteral("Classic"));
    tmpl->setSize(QStringLiteral("{595, 842}"));
    QList<ManagedObject *> sources{tmpl};
    for (int tag = 0; tag < 2; ++tag) {
        auto *page = insert<LMInvoiceTemplatePageClass>(TAEntity::InvoiceTemplatePage);
        page->setTag(tag);
        page->setInvoiceTemplate(tmpl);
        auto *element = insert<LMInvoiceElementClass>(TAEntity::InvoiceElement);
        element->setType(2);
        element->setOrderNr(tag);
        element->setPage(page);
        auto *column = insert<LMInvoiceTemplateColumnClass>(TAEntity::InvoiceTemplateColumn);
        column->setColID(QStringLiteral("value"));
        column->setVisible(false);
        column->setElement(element);
        auto *row = insert<LMInvoiceTemplateColumnClass>(TAEntity::InvoiceTemplateColumn);
        row->setColID(QStringLiteral("_total_table_total_"));
        row->setWidth(42.5);
        row->setRowElement(element);
        // Children before parents, so that the first pass cannot link everything.
        sources.prepend(page), sources.prepend(element), sources.prepend(column);
        sources.prepend(row);
    }
    save();
    auto other = PersistentStore::createInMemory(TADocModel::model());
    ASSERT_TRUE(other.ok());
    ManagedObjectContext target(other.value());

    LMManagedObject::ReferenceTable table;
    QList<LMManagedObject *> copies;
    for (ManagedObject *source : sources) {
        auto *copy = target.insertNewObjectAs<LMManagedObject>(source->entity()->name());
        copy->copyFromManagedObject(source, table);
        copies.append(copy);
    }
    for (qsizetype i = 0; i < sources.size(); ++i)
        copies[i]->copyRelationshipsFromManagedObject(sources[i], table);

    auto *copied = dynamic_cast<LMInvoiceTemplateClass *>(copies.last());
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->name(), u"Classic");
    ASSERT_EQ(copied->pages().size(), 2);
    for (LMInvoiceTemplatePageClass *page : copied->pages()) {
        EXPECT_EQ(page->managedObjectContext(), &target);
        ASSERT_EQ(page->elements().size(), 1);
        LMInvoiceElementClass *element = page->elements()[0];
        EXPECT_EQ(element->orderNr(), page->tag());
        ASSERT_EQ(element->columns().size(), 1);
        ASSERT_EQ(element->rows().size(), 1);
        EXPECT_FALSE(element->columns()[0]->visible());
        EXPECT_EQ(element->rows()[0]->width(), 42.5);
        EXPECT_EQ(element->rows()[0]->colID(), u"_total_table_total_");
    }
    // The source graph is untouched.
    EXPECT_EQ(tmpl->pages().size(), 2);
    EXPECT_EQ(tmpl->pages()[0]->managedObjectContext(), context());
}

TEST_F(ObjectBaseTest, ExcludedKeysAndSyncHooks) {
    auto *source = insert<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
    auto *copy = insert<LMInvoiceTemplateClass>(TAEntity::InvoiceTemplate);
    source->setName(QStringLiteral("A"));
    source->setBackgroundType(2);
    copy->copyFromManagedObject(source, QStringList{TAKey::name});
    EXPECT_TRUE(copy->name().isNull());
    EXPECT_EQ(copy->backgroundType(), 2);
    EXPECT_TRUE(copy->containsAttributeWithName(TAKey::positions));
    EXPECT_FALSE(copy->containsAttributeWithName(TAKey::pages));
    EXPECT_TRUE(copy->syncEnabled());
    EXPECT_TRUE(copy->getDeleteSyncDict().isEmpty()); // no uuid, no sync type
    EXPECT_TRUE(copy->syncKeys().isEmpty());
}
