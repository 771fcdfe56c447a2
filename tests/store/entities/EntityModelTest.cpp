#include "StoreFixture.h"

#include "foundation/dates/ScopedFixedClock.h"
#include "objectstore/EntityDescription.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMManagedObject.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATimer.h"

namespace {
QList<const EntityDescription *> concreteEntities() {
    QList<const EntityDescription *> list;
    for (const EntityDescription *entity : TADocModel::model().entities())
        if (!entity->isAbstract())
            list.append(entity);
    return list;
}

// A value of each type that a lossy store would change: beyond double precision, 38
// significant digits, milliseconds, embedded zero bytes, text outside Latin-1.
QVariant sampleValue(AttributeType type) {
    switch (type) {
    case AttributeType::String:
        return QStringLiteral("Zoë – 請求書 \U0001F4B6");
    case AttributeType::Integer:
        return QVariant(qint64(9007199254740993));
    case AttributeType::Boolean:
        return true;
    case AttributeType::Decimal:
        return Decimal::fromString(u"-1234567890123456789.0123456789012345678").toVariant();
    case AttributeType::Date:
        return QDateTime::fromMSecsSinceEpoch(1700000000123, Qt::UTC);
    case AttributeType::Binary:
        return QByteArray("\x89PNG\0\x01\xff", 7);
    case AttributeType::Float:
        return 1234.5625;
    }
    return {};
}

void expectSame(const ManagedObject *object, const AttributeDescription &attribute) {
    const std::string where = (object->entity()->name() + u'.' + attribute.name).toStdString();
    const QVariant expected = sampleValue(attribute.type);
    switch (attribute.type) {
    case AttributeType::String:
        EXPECT_EQ(object->stringForKey(attribute.name), expected.toString()) << where;
        break;
    case AttributeType::Integer:
        EXPECT_EQ(object->integerForKey(attribute.name), expected.toLongLong()) << where;
        break;
    case AttributeType::Boolean:
        EXPECT_TRUE(object->boolForKey(attribute.name)) << where;
        break;
    case AttributeType::Decimal:
        EXPECT_EQ(object->decimalForKey(attribute.name).toString(),
                  Decimal::fromVariant(expected).toString())
            << where;
        break;
    case AttributeType::Date:
        EXPECT_EQ(object->dateForKey(attribute.name).toMSecsSinceEpoch(), 1700000000123) << where;
        break;
    case AttributeType::Binary:
        EXPECT_EQ(object->dataForKey(attribute.name), expected.toByteArray()) << where;
        break;
    case AttributeType::Float:
        EXPECT_EQ(object->doubleForKey(attribute.name), 1234.5625) << where;
        break;
    }
}
} // namespace

using EntityModelTest = StoreFixture;

TEST_F(EntityModelTest, ModelNamesVersionAndMakesTheEntityClasses) {
    const ManagedObjectModel &model = TADocModel::model();
    EXPECT_EQ(model.versionName(), QStringLiteral("TADoc_1.3"));
    EXPECT_EQ(&model, &TADocModel::model());
    EXPECT_EQ(concreteEntities().size(), 19);
    for (const EntityDescription *entity : concreteEntities()) {
        ManagedObject *object = context()->insertNewObject(entity->name());
        const bool business = dynamic_cast<TAObject *>(object) != nullptr;
        const bool layout = dynamic_cast<LMManagedObject *>(object) != nullptr;
        EXPECT_TRUE(business != layout) << entity->name().toStdString();
        EXPECT_EQ(layout,
                  entity->name().startsWith(u"Invoice") && entity->name() != TAEntity::Invoice)
            << entity->name().toStdString();
    }
    EXPECT_NE(context()->insertNewObjectAs<TARecurringInvoice>(TAEntity::RecurringInvoice),
              nullptr);
    EXPECT_NE(context()->insertNewObjectAs<TATimer>(TAEntity::Timer), nullptr);
    EXPECT_NE(context()->insertNewObjectAs<TAMaterial>(TAEntity::Material), nullptr);
}

TEST_F(EntityModelTest, EveryAttributeSurvivesSaveAndReopenAsNullAndWithValues) {
    QList<std::pair<QString, QString>> uris; // empty, full
    QList<ManagedObject *> made;
    for (const EntityDescription *entity : concreteEntities()) {
        ManagedObject *empty = context()->insertNewObject(entity->name());
        ManagedObject *full = context()->insertNewObject(entity->name());
        for (const AttributeDescription &attribute : entity->attributes()) {
            empty->setPrimitiveValueForKey(QVariant(), attribute.name);
            full->setPrimitiveValueForKey(sampleValue(attribute.type), attribute.name);
        }
        made << empty << full;
    }
    save();
    for (qsizetype i = 0; i < made.size(); i += 2)
        uris.append({made[i]->uriText(), made[i + 1]->uriText()});
    saveAndReopen();
    for (const auto &[emptyUri, fullUri] : uris) {
        const ManagedObject *empty = context()->objectWithURI(emptyUri);
        const ManagedObject *full = context()->objectWithURI(fullUri);
        ASSERT_TRUE(empty && full) << emptyUri.toStdString();
        for (const AttributeDescription &attribute : empty->entity()->attributes()) {
            EXPECT_TRUE(empty->isNullForKey(attribute.name))
                << (empty->entity()->name() + u'.' + attribute.name).toStdString();
            expectSame(full, attribute);
        }
    }
}

TEST_F(EntityModelTest, NewObjectsStartWithTheDefaultsTheRulesRelyOn) {
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(1650000000456, Qt::UTC);
    ScopedFixedClock clock(moment);
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    auto *recurring = insert<TARecurringInvoice>(TAEntity::RecurringInvoice);
    auto *project = insert<TAProject>(TAEntity::Project);
    auto *inventory = insert<TAInventory>(TAEntity::Inventory);
    auto *rate = insert<TACurrencyRate>(TAEntity::CurrencyRate);
    auto *column = insert<LMInvoiceTemplateColumnClass>(TAEntity::InvoiceTemplateColumn);
    saveAndReopen();

    invoice = dynamic_cast<TAInvoice *>(fetch(TAEntity::Invoice).value(0));
    recurring = dynamic_cast<TARecurringInvoice *>(fetch(TAEntity::RecurringInvoice).value(0));
    project = dynamic_cast<TAProject *>(fetch(TAEntity::Project).value(0));
    inventory = dynamic_cast<TAInventory *>(fetch(TAEntity::Inventory).value(0));
    rate = dynamic_cast<TACurrencyRate *>(fetch(TAEntity::CurrencyRate).value(0));
    column = dynamic_cast<LMInvoiceTemplateColumnClass *>(
        fetch(TAEntity::InvoiceTemplateColumn).value(0));
    ASSERT_TRUE(invoice && recurring && project && inventory && rate && column);

    EXPECT_EQ(invoice->statusValue(), 1);
    EXPECT_TRUE(invoice->discount().isZero());
    EXPECT_FALSE(invoice->archived());
    EXPECT_EQ(recurring->repeatInterval(), 5);
    EXPECT_EQ(recurring->reminderType(), 0);
    EXPECT_EQ(recurring->statusValue(), 1);
    EXPECT_EQ(project->projectStatus(), 1);
    EXPECT_EQ(project->dueDate(), moment);
    EXPECT_TRUE(inventory->isMaterial());
    EXPECT_EQ(rate->oneFromInTo(), Decimal(1));
    EXPECT_EQ(rate->inFromOneTo(), Decimal(1));
    EXPECT_TRUE(column->visible());
}

TEST_F(EntityModelTest, StatusCodesOutsideTheirTablesFoldToDraft) {
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    invoice->setValueForKey(QVariant(), TAKey::status);
    EXPECT_EQ(invoice->statusValue(), 1);
    invoice->setStatus(7);
    EXPECT_EQ(invoice->statusValue(), 1);
    invoice->setStatusValue(3);
    EXPECT_EQ(invoice->statusValue(), 3);
    invoice->setStatusValue(9); // ignored
    EXPECT_EQ(invoice->status(), 3);

    auto *project = insert<TAProject>(TAEntity::Project);
    for (int stored : {0, 4, -2}) {
        project->setProjectStatus(stored);
        EXPECT_EQ(project->projectStatus(), 1) << stored;
    }
    project->setProjectStatus(3);
    EXPECT_EQ(project->projectStatus(), 3);
}
