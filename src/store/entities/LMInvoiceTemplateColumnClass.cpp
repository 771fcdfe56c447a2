#include "store/entities/LMInvoiceTemplateColumnClass.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/TAKeys.h"

qint64 LMInvoiceTemplateColumnClass::nr() const {
    return integerForKey(TAKey::nr);
}

void LMInvoiceTemplateColumnClass::setNr(qint64 value) {
    EntityValues::setInteger(this, TAKey::nr, value);
}

QString LMInvoiceTemplateColumnClass::name() const {
    return stringForKey(TAKey::name);
}

void LMInvoiceTemplateColumnClass::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QString LMInvoiceTemplateColumnClass::colID() const {
    return stringForKey(TAKey::colID);
}

void LMInvoiceTemplateColumnClass::setColID(const QString &value) {
    EntityValues::setString(this, TAKey::colID, value);
}

bool LMInvoiceTemplateColumnClass::visible() const {
    return boolForKey(TAKey::visible);
}

void LMInvoiceTemplateColumnClass::setVisible(bool value) {
    EntityValues::setBool(this, TAKey::visible, value);
}

double LMInvoiceTemplateColumnClass::width() const {
    return doubleForKey(TAKey::width);
}

void LMInvoiceTemplateColumnClass::setWidth(double value) {
    EntityValues::setDouble(this, TAKey::width, value);
}

QByteArray LMInvoiceTemplateColumnClass::textAttributes() const {
    return dataForKey(TAKey::textAttributes);
}

void LMInvoiceTemplateColumnClass::setTextAttributes(const QByteArray &value) {
    EntityValues::setData(this, TAKey::textAttributes, value);
}

LMInvoiceElementClass *LMInvoiceTemplateColumnClass::element() const {
    return objectForKeyAs<LMInvoiceElementClass>(TAKey::element);
}

void LMInvoiceTemplateColumnClass::setElement(LMInvoiceElementClass *value) {
    setObjectForKey(value, TAKey::element);
}

LMInvoiceElementClass *LMInvoiceTemplateColumnClass::rowElement() const {
    return objectForKeyAs<LMInvoiceElementClass>(TAKey::rowElement);
}

void LMInvoiceTemplateColumnClass::setRowElement(LMInvoiceElementClass *value) {
    setObjectForKey(value, TAKey::rowElement);
}

LMTextAttributes LMInvoiceTemplateColumnClass::getColumnAttributes() {
    LMTextAttributes own = LMTextAttributes::unarchive(textAttributes());
    if (textAttributes().isEmpty()) {
        own = LMTextAttributes::withAlignment(LMTextAlignment::Left);
        setTextAttributes(own.archive());
    }
    LMInvoiceElementClass *owner = element() ? element() : rowElement();
    return owner ? own.mergedWith(owner->getAttributes()) : own;
}

void LMInvoiceTemplateColumnClass::setColumnAttributes(const LMTextAttributes &attributes) {
    setTextAttributes(attributes.archive());
}

LMTextAttributes LMInvoiceTemplateColumnClass::getBoldColumnAttributes() {
    return getColumnAttributes().withBoldFont();
}

LMInvoiceTemplateColumnClass *LMInvoiceTemplateColumnClass::getCopy() const {
    return dynamic_cast<LMInvoiceTemplateColumnClass *>(insertAttributeCopy());
}

QVariantMap LMInvoiceTemplateColumnClass::getDescriptionDict() const {
    return attributeDictionary();
}

void LMInvoiceTemplateColumnClass::initWithDescriptionDictionary(const QVariantMap &dictionary) {
    setAttributesFromDictionary(dictionary);
}
