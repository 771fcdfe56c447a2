#include "store/entities/LMInvoiceTemplatePageClass.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAKeys.h"

#include "foundation/TANotificationCenter.h"
#include "layoutvalues/LMArchivedImage.h"
#include "layoutvalues/LMElementTypes.h"
#include "layoutvalues/LMNotifications.h"
#include "objectstore/ManagedObjectContext.h"

#include <algorithm>

qint64 LMInvoiceTemplatePageClass::tag() const {
    return integerForKey(TAKey::tag);
}

void LMInvoiceTemplatePageClass::setTag(qint64 value) {
    EntityValues::setInteger(this, TAKey::tag, value);
}

QByteArray LMInvoiceTemplatePageClass::previewImageData() const {
    return dataForKey(TAKey::previewImageData);
}

void LMInvoiceTemplatePageClass::setPreviewImageData(const QByteArray &value) {
    EntityValues::setData(this, TAKey::previewImageData, value);
}

LMInvoiceTemplateClass *LMInvoiceTemplatePageClass::invoiceTemplate() const {
    return objectForKeyAs<LMInvoiceTemplateClass>(TAKey::template_);
}

void LMInvoiceTemplatePageClass::setInvoiceTemplate(LMInvoiceTemplateClass *value) {
    setObjectForKey(value, TAKey::template_);
}

QList<LMInvoiceElementClass *> LMInvoiceTemplatePageClass::elements() const {
    return objectsForKeyAs<LMInvoiceElementClass>(TAKey::elements);
}

void LMInvoiceTemplatePageClass::didChangeValueForKey(const QString &key) {
    LMManagedObject::didChangeValueForKey(key);
    // Posted during undo and redo as well, unlike the template's own notifications: the
    // previews must follow an undone page change.
    if (key != TAKey::previewImageData)
        return;
    if (LMInvoiceTemplateClass *owner = invoiceTemplate())
        TANotificationCenter::defaultCenter().postNotificationName(
            LMNotification::previewImageChange, owner);
}

LMInvoiceElementClass *LMInvoiceTemplatePageClass::newElement() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return nullptr;
    auto *element = context->insertNewObjectAs<LMInvoiceElementClass>(TAEntity::InvoiceElement);
    if (element)
        element->setPage(this);
    return element;
}

QList<LMInvoiceElementClass *> LMInvoiceTemplatePageClass::getSortedElements() const {
    QList<LMInvoiceElementClass *> out = elements();
    std::stable_sort(out.begin(), out.end(),
                     [](auto *a, auto *b) { return a->orderNr() < b->orderNr(); });
    return out;
}

void LMInvoiceTemplatePageClass::tableStyleChanged(int selectedIndex) {
    for (LMInvoiceElementClass *element : elements()) {
        if (element->type() != LMElementTypes::InvoiceItems &&
            element->type() != LMElementTypes::TotalAmounts)
            continue;
        element->setStyle(selectedIndex);
        TANotificationCenter::defaultCenter().postNotificationName(
            LMNotification::templateTableViewNeedsReload, element);
    }
}

QImage LMInvoiceTemplatePageClass::flippedPreviewImage() const {
    return previewImageFlipped(true);
}

// Pictures are stored top-down already, so both forms are the same picture here.
QImage LMInvoiceTemplatePageClass::previewImageFlipped(bool flipped) const {
    (void)flipped;
    return LMArchivedImage::unarchive(previewImageData());
}

void LMInvoiceTemplatePageClass::deleteElements() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return;
    for (LMInvoiceElementClass *element : getSortedElements()) {
        element->deleteColumnsAndRows();
        context->deleteObject(element);
        context->processPendingChanges();
    }
}

LMInvoiceTemplatePageClass *LMInvoiceTemplatePageClass::getCopy() const {
    auto *copy = dynamic_cast<LMInvoiceTemplatePageClass *>(insertAttributeCopy());
    if (!copy)
        return nullptr;
    for (LMInvoiceElementClass *element : getSortedElements())
        if (LMInvoiceElementClass *elementCopy = element->getCopy())
            elementCopy->setPage(copy);
    return copy;
}

QVariantMap LMInvoiceTemplatePageClass::getDescriptionDict() const {
    QVariantMap out = attributeDictionary();
    QVariantList children;
    for (LMInvoiceElementClass *element : getSortedElements())
        children.append(element->getDescriptionDict());
    out.insert(TAKey::elements, children);
    return out;
}

void LMInvoiceTemplatePageClass::initWithDescriptionDictionary(const QVariantMap &dictionary) {
    setAttributesFromDictionary(dictionary);
    for (const QVariant &child : dictionary.value(TAKey::elements).toList())
        if (LMInvoiceElementClass *element = newElement())
            element->initWithDescriptionDictionary(child.toMap());
}
