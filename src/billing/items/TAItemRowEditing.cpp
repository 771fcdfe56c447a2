#include "billing/items/TAItemRowEditing.h"

#include "foundation/Check.h"
#include "foundation/money/DecimalConstants.h"
#include "foundation/money/MoneyLocale.h"
#include "foundation/money/OTConvert.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAProject.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"

#include <QCoreApplication>

Decimal TAItemRowEditing::discountFromField(const QString &text) {
    const Decimal fraction = OTConvert::decimalNumberFromString(text) / DecimalConstants::hundred();
    return fraction > Decimal(1) ? Decimal(1) : fraction;
}

Decimal TAItemRowEditing::taxFromField(const QString &text) {
    const QString digits = OTConvert::decimalStringFromString(text);
    const QLocale locale = MoneyLocale::numeric();
    QString plain = digits;
    if (!locale.groupSeparator().isEmpty() && locale.groupSeparator() != locale.decimalPoint())
        plain.remove(locale.groupSeparator());
    const QChar point = locale.decimalPoint().isEmpty() ? QChar(u'.') : locale.decimalPoint()[0];
    const Decimal rate = Decimal::fromString(plain, point);
    return rate.isNaN() ? Decimal() : rate / DecimalConstants::hundred();
}

void TAItemRowEditing::saveItemRow(TAItem *item, const TAItemRowInput &input, Row row) {
    // A row is edited only while it shows an item.
    BF_CHECK(item, return);
    item->setSku(input.sku);
    item->setName(input.name);
    item->setDiscount(discountFromField(input.discount));
    Decimal price = OTConvert::decimalNumberFromString(input.price);
    if (row == Row::Invoice)
        if (const TAInvoice *invoice = item->invoice())
            price = DecimalMath::round(price, invoice->behavior());
    item->setPrice(price);
    item->setTax(taxFromField(input.tax));
    item->setTaxName(input.namedTax ? input.namedTax->name() : QString());
    if (auto *material = dynamic_cast<TAMaterial *>(item))
        material->setQuantity(OTConvert::decimalNumberFromString(input.quantity));
    else if (auto *timer = dynamic_cast<TATimer *>(item))
        timer->setSecondsIntegerValue(OTConvert::intFromString(input.quantity));
    // The other fields ask for this themselves; the discount does not.
    if (TAInvoice *invoice = item->invoice())
        invoice->requestCacheUpdate();
}

void TAItemRowEditing::saveInventoryRow(TAInventory *entry, const TAItemRowInput &input) {
    BF_CHECK(entry, return);
    entry->setSku(input.sku);
    entry->setName(input.name);
    entry->setDiscount(discountFromField(input.discount));
    entry->setPrice(OTConvert::decimalNumberFromString(input.price));
    entry->setCustomTax(input.namedTax ? Decimal() : taxFromField(input.tax));
    entry->setTax(input.namedTax);
}

TAItem *TAItemRowEditing::changeInvoiceItemKind(TAItem *item) {
    ManagedObjectContext *context = item ? item->managedObjectContext() : nullptr;
    if (!context)
        return nullptr;
    TAItem *copy = dynamic_cast<TATimer *>(item) ? item->copyAsMaterial() : item->copyAsTimer();
    if (copy)
        TAContextDatabase::deleteObject(item, context);
    return copy;
}

TAItem *TAItemRowEditing::changeProjectItemKind(TAItem *item) {
    ManagedObjectContext *context = item ? item->managedObjectContext() : nullptr;
    if (!context)
        return nullptr;
    TAContextDatabase::beginUndoGroupingWithName(QStringLiteral("Update Project Item"), context);
    TAItem *other = nullptr;
    if (auto *timer = dynamic_cast<TATimer *>(item)) {
        TAMaterial *material = TAContextDatabase::createMaterialInContext(context);
        material->setQuantity(Decimal(static_cast<long long>(timer->seconds() / 60)));
        other = material;
    } else if (auto *material = dynamic_cast<TAMaterial *>(item)) {
        TATimer *timer = TAContextDatabase::createTimerInContext(context);
        const Decimal quantity = material->quantity();
        timer->setSeconds((quantity.isNaN() ? 0 : quantity.toLongLong()) * 60);
        other = timer;
    }
    if (other) {
        other->setSku(item->sku());
        other->setName(item->name());
        other->setPrice(item->price());
        other->setTax(item->tax());
        other->setTaxName(item->taxName());
        other->setSortIndex(item->sortIndex());
        other->setInvoice(item->invoice());
        other->setProject(item->project());
        TAContextDatabase::deleteObject(item, context);
    }
    TAContextDatabase::endUndoGroupingInContext(context);
    return other;
}

namespace {
// Makes the picked catalogue entry's item within one named undo group, lets `attach` give it
// its place, and deletes the item the row showed before.
template <class Attach>
TAItem *replaceRowWithCatalogueItem(ManagedObject *picked, TAItem *rowItem,
                                    const QString &groupName, Attach attach) {
    auto *entry = dynamic_cast<TAInventory *>(picked);
    ManagedObjectContext *context = entry ? entry->managedObjectContext() : nullptr;
    if (!context)
        return nullptr;
    TAContextDatabase::beginUndoGroupingWithName(groupName, context);
    TAItem *item = entry->createItem();
    if (item) {
        attach(item);
        if (rowItem && rowItem != item && rowItem->managedObjectContext() && !rowItem->isDeleted())
            TAContextDatabase::deleteObject(rowItem, context);
    }
    TAContextDatabase::endUndoGroupingInContext(context);
    return item;
}
} // namespace

TAItem *TAItemRowEditing::createFromObject(ManagedObject *picked, TAInvoice *invoice,
                                           TAItem *rowItem) {
    if (!invoice)
        return nullptr;
    return replaceRowWithCatalogueItem(picked, rowItem,
                                       QCoreApplication::translate("TAItemRowEditing", "Add Item"),
                                       [invoice](TAItem *item) {
                                           item->setInvoice(invoice);
                                           if (TAProject *project = invoice->project())
                                               item->setProject(project);
                                       });
}

TAItem *TAItemRowEditing::addFromItem(ManagedObject *picked, TAProject *project, TAItem *rowItem) {
    if (!project)
        return nullptr;
    return replaceRowWithCatalogueItem(
        picked, rowItem,
        QCoreApplication::translate("TAItemRowEditing",
                                    "Create Item From Template / Add Existing Timer "),
        [project](TAItem *item) { item->setProject(project); });
}
