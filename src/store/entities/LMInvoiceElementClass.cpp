#include "store/entities/LMInvoiceElementClass.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplateColumnClass.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAKeys.h"

int LMInvoiceElementClass::type() const {
    return int(integerForKey(TAKey::type));
}

void LMInvoiceElementClass::setType(int value) {
    EntityValues::setInteger(this, TAKey::type, value);
}

QString LMInvoiceElementClass::frame() const {
    return stringForKey(TAKey::frame);
}

void LMInvoiceElementClass::setFrame(const QString &value) {
    EntityValues::setString(this, TAKey::frame, value);
}

qint64 LMInvoiceElementClass::orderNr() const {
    return integerForKey(TAKey::orderNr);
}

void LMInvoiceElementClass::setOrderNr(qint64 value) {
    EntityValues::setInteger(this, TAKey::orderNr, value);
}

bool LMInvoiceElementClass::isHidden() const {
    return boolForKey(TAKey::isHidden);
}

void LMInvoiceElementClass::setIsHidden(bool value) {
    EntityValues::setBool(this, TAKey::isHidden, value);
}

QByteArray LMInvoiceElementClass::text() const {
    return dataForKey(TAKey::text);
}

void LMInvoiceElementClass::setText(const QByteArray &value) {
    EntityValues::setData(this, TAKey::text, value);
}

QByteArray LMInvoiceElementClass::textAttributes() const {
    return dataForKey(TAKey::textAttributes);
}

void LMInvoiceElementClass::setTextAttributes(const QByteArray &value) {
    EntityValues::setData(this, TAKey::textAttributes, value);
}

QByteArray LMInvoiceElementClass::color() const {
    return dataForKey(TAKey::color);
}

void LMInvoiceElementClass::setColor(const QByteArray &value) {
    EntityValues::setData(this, TAKey::color, value);
}

QByteArray LMInvoiceElementClass::image() const {
    return dataForKey(TAKey::image);
}

void LMInvoiceElementClass::setImage(const QByteArray &value) {
    EntityValues::setData(this, TAKey::image, value);
}

int LMInvoiceElementClass::style() const {
    return int(integerForKey(TAKey::style));
}

void LMInvoiceElementClass::setStyle(int value) {
    EntityValues::setInteger(this, TAKey::style, value);
}

LMInvoiceTemplatePageClass *LMInvoiceElementClass::page() const {
    return objectForKeyAs<LMInvoiceTemplatePageClass>(TAKey::page);
}

void LMInvoiceElementClass::setPage(LMInvoiceTemplatePageClass *value) {
    setObjectForKey(value, TAKey::page);
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::columns() const {
    return objectsForKeyAs<LMInvoiceTemplateColumnClass>(TAKey::columns);
}

QList<LMInvoiceTemplateColumnClass *> LMInvoiceElementClass::rows() const {
    return objectsForKeyAs<LMInvoiceTemplateColumnClass>(TAKey::rows);
}
