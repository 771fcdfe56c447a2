#include "DataFixture.h"

#include "store/TACopyDictionary.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

#include <QUrl>

namespace K = TAKey;

namespace {
class CopyDictionaryTest : public DataFixture {
protected:
    // A project of a client with a timer (two intervals) and a material.
    TAProject *makeProject() {
        client = TAContextDatabase::createClientInContext(db().context());
        client->setFullNameValue(QStringLiteral("Ada"));
        TAProject *project = TAContextDatabase::createProjectInContext(db().context());
        project->setName(QStringLiteral("Site"));
        project->setClient(client);
        timer = TAContextDatabase::createTimerInContext(db().context());
        timer->setName(QStringLiteral("Design"));
        timer->setSeconds(3600);
        timer->setProject(project);
        for (int i = 0; i < 2; ++i)
            TAContextDatabase::createTimerIntervalInContext(db().context())
                ->setTimerRelationship(timer);
        TAMaterial *material = TAContextDatabase::createMaterialInContext(db().context());
        material->setQuantity(Decimal::fromString(u"2.5"));
        material->setProject(project);
        return project;
    }
    TAClient *client = nullptr;
    TATimer *timer = nullptr;
};
} // namespace

TEST_F(CopyDictionaryTest, ProjectCopyWithinDocumentCopiesItemsDeeplyAndLinksTheClient) {
    TAProject *source = makeProject();
    source->setNotes(QString());
    const QVariantMap dictionary = db().copyDictionaryForObject(source);

    EXPECT_EQ(dictionary.value("entity").toString(), "Project");
    EXPECT_EQ(dictionary.value("URIRepresentation").metaType(), QMetaType::fromType<QUrl>());
    EXPECT_TRUE(dictionary.contains(K::notes));
    EXPECT_FALSE(dictionary.value(K::notes).isValid()); // null travels as an invalid value
    EXPECT_EQ(dictionary.value(K::items).toList().size(), 2);
    const QVariantList clientLinks = dictionary.value(K::client).toList();
    ASSERT_EQ(clientLinks.size(), 1);
    EXPECT_EQ(clientLinks[0].toMap().value("id").toString(), client->uriText());

    auto *copy = dynamic_cast<TAProject *>(db().objectFromCopyDictionary(dictionary));
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy, source);
    EXPECT_EQ(copy->name(), "Site");
    EXPECT_EQ(copy->client(), client);
    EXPECT_EQ(source->items().size(), 2);
    ASSERT_EQ(copy->items().size(), 2);
    for (TAItem *item : copy->items()) {
        EXPECT_EQ(item->project(), copy);
        if (auto *t = dynamic_cast<TATimer *>(item)) {
            EXPECT_NE(t, timer);
            EXPECT_EQ(t->seconds(), 3600);
            EXPECT_EQ(t->timerIntervals().size(), 2);
        } else {
            EXPECT_EQ(dynamic_cast<TAMaterial *>(item)->quantity(), Decimal::fromString(u"2.5"));
        }
    }
    EXPECT_EQ(timer->timerIntervals().size(), 2);
    // Made by createProject, so the copy has its own created-record.
    ASSERT_EQ(copy->history().size(), 1);
    EXPECT_EQ(copy->history().first()->type(), 1);

    // duplicate goes the same way.
    auto *twin = dynamic_cast<TAProject *>(source->duplicate());
    ASSERT_NE(twin, nullptr);
    EXPECT_EQ(twin->items().size(), 2);
}

TEST_F(CopyDictionaryTest, PasteIntoAnotherDocumentDropsForeignLinks) {
    TAProject *project = makeProject();
    TACurrency *euro = TAContextDatabase::createCurrencyInContext(db().context());
    client->setCurrencyRelationship(euro);
    TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db().context());
    timer->setInvoice(invoice);

    auto other = openSecondDocument();
    other->database.clearCache();
    auto *pastedTimer = dynamic_cast<TATimer *>(
        other->database.objectFromCopyDictionary(db().copyDictionaryForObject(timer)));
    ASSERT_NE(pastedTimer, nullptr);
    EXPECT_EQ(pastedTimer->managedObjectContext(), other->context.get());
    EXPECT_EQ(pastedTimer->project(), nullptr);
    EXPECT_EQ(pastedTimer->invoice(), nullptr);
    EXPECT_EQ(pastedTimer->timerIntervals().size(), 2);
    EXPECT_EQ(pastedTimer->name(), "Design");

    auto *pastedClient = dynamic_cast<TAClient *>(
        other->database.objectFromCopyDictionary(db().copyDictionaryForObject(client)));
    ASSERT_NE(pastedClient, nullptr);
    EXPECT_EQ(pastedClient->currencyRelationship(), nullptr);
    EXPECT_EQ(pastedClient->fullNameValue(), "Ada");

    // The source is found by its URI only in its own document.
    const QVariantMap dictionary = db().copyDictionaryForObject(project);
    EXPECT_EQ(db().objectFromCopyDictionaryByURIRepresentation(dictionary), project);
    EXPECT_EQ(other->database.objectFromCopyDictionaryByURIRepresentation(dictionary), nullptr);
    EXPECT_EQ(db().objectFromCopyDictionaryByURIRepresentation({{"entity", "Project"}}), nullptr);
}

TEST_F(CopyDictionaryTest, InvoiceNumbersAndTemplateOfCopies) {
    doc->addTemplate(QStringLiteral("Plain"));
    doc->addTemplate(QStringLiteral("Fancy"));
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(db().context());
    ASSERT_EQ(templates.size(), 2);

    TAContextDatabase::getPreferencesInContext(db().context())
        ->setNextInvoiceNumber(QStringLiteral("2024-7"));
    TAInvoice *source = TAContextDatabase::createInvoiceInContext(db().context());
    EXPECT_EQ(source->identification(), "2024-7");
    source->setIdentification(QStringLiteral("A-1"));
    source->setInvoiceTemplate(templates[1]);
    source->setStatus(2);

    QVariantMap dictionary = db().copyDictionaryForObject(source);
    auto *copy = dynamic_cast<TAInvoice *>(db().objectFromCopyDictionary(dictionary));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->identification(), "A-1");
    EXPECT_EQ(copy->status(), 2);
    // The template link never resolves: the copy keeps the first template.
    EXPECT_EQ(copy->invoiceTemplate(), templates[0]);

    dictionary.remove(K::identification);
    dictionary.remove(K::status);
    auto *numbered = dynamic_cast<TAInvoice *>(db().objectFromCopyDictionary(dictionary));
    EXPECT_EQ(numbered->identification(), "2024-7");
    EXPECT_TRUE(numbered->isNullForKey(K::status)); // a missing key clears the attribute

    TAContextDatabase::getPreferencesInContext(db().context())->setNextInvoiceNumber(QString());
    auto *unnumbered = dynamic_cast<TAInvoice *>(db().objectFromCopyDictionary(dictionary));
    EXPECT_TRUE(unnumbered->isNullForKey(K::identification));

    EXPECT_EQ(db().objectFromCopyDictionary({{"entity", "InvoiceTemplate"}}), nullptr);
    EXPECT_EQ(db().objectFromCopyDictionary({{"entity", "History"}}), nullptr);
}

TEST_F(CopyDictionaryTest, ConvertingConstructorsBetweenItemsAndCatalogue) {
    makeProject();
    timer->setPrice(Decimal(80));
    timer->setTax(Decimal::fromString(u"0.2"));
    timer->setSku(QString());
    QVariantMap timerDictionary = db().copyDictionaryForObject(timer);
    timerDictionary.insert(K::discount, QVariant());

    TAInventory *entry = db().createInvetoryFromItemCopyDictionary(timerDictionary);
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(entry->isMaterial());
    EXPECT_EQ(entry->customTax(), Decimal::fromString(u"0.2"));
    EXPECT_EQ(entry->discount(), Decimal(0));
    EXPECT_FALSE(entry->isNullForKey(K::sku));
    EXPECT_EQ(entry->sku(), "");
    EXPECT_EQ(entry->price(), Decimal(80));

    const QVariantMap entryDictionary = db().copyDictionaryForObject(entry);
    auto *item = db().createItemFromInventoryCopyDictionary(entryDictionary);
    ASSERT_NE(dynamic_cast<TATimer *>(item), nullptr);
    EXPECT_EQ(item->tax(), Decimal::fromString(u"0.2"));
    EXPECT_TRUE(item->isNullForKey(K::taxName));

    entry->setIsMaterial(true);
    auto *material = dynamic_cast<TAMaterial *>(
        db().createItemFromInventoryCopyDictionary(db().copyDictionaryForObject(entry)));
    ASSERT_NE(material, nullptr);
    EXPECT_TRUE(material->isNullForKey(K::quantity));

    EXPECT_EQ(db().createInvetoryFromItemCopyDictionary(entryDictionary), nullptr);
    EXPECT_EQ(db().createItemFromInventoryCopyDictionary(timerDictionary), nullptr);
}

TEST_F(CopyDictionaryTest, CacheKnowsOnlyLinkTargetsAndStaysUntilCleared) {
    TAProject *project = TAContextDatabase::createProjectInContext(db().context());
    LMInvoiceTemplateClass *tmpl = doc->addTemplate(QStringLiteral("Plain"));
    EXPECT_EQ(db().cachedObjectForEntity("Project", project->uriText()), project);
    EXPECT_EQ(db().cachedObjectForEntity("InvoiceTemplate", tmpl->uriText()), nullptr);
    EXPECT_EQ(db().cachedObjectForEntity(QString(), project->uriText()), nullptr);
    EXPECT_EQ(db().cachedObjectForEntity("Project", QString()), nullptr);

    TAProject *later = TAContextDatabase::createProjectInContext(db().context());
    EXPECT_EQ(db().cachedObjectForEntity("Project", later->uriText()), nullptr);
    db().clearCache();
    EXPECT_EQ(db().cachedObjectForEntity("Project", later->uriText()), later);
}
