#include "store/entities/LMInvoiceTemplateClass.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplatePageClass.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

QString LMInvoiceTemplateClass::name() const {
    return stringForKey(TAKey::name);
}

void LMInvoiceTemplateClass::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QDateTime LMInvoiceTemplateClass::creationDate() const {
    return dateForKey(TAKey::creationDate);
}

void LMInvoiceTemplateClass::setCreationDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::creationDate, value);
}

QString LMInvoiceTemplateClass::size() const {
    return stringForKey(TAKey::size);
}

void LMInvoiceTemplateClass::setSize(const QString &value) {
    EntityValues::setString(this, TAKey::size, value);
}

QString LMInvoiceTemplateClass::positions() const {
    return stringForKey(TAKey::positions);
}

void LMInvoiceTemplateClass::setPositions(const QString &value) {
    EntityValues::setString(this, TAKey::positions, value);
}

QByteArray LMInvoiceTemplateClass::previewImageData() const {
    return dataForKey(TAKey::previewImageData);
}

void LMInvoiceTemplateClass::setPreviewImageData(const QByteArray &value) {
    EntityValues::setData(this, TAKey::previewImageData, value);
}

int LMInvoiceTemplateClass::backgroundType() const {
    return int(integerForKey(TAKey::backgroundType));
}

void LMInvoiceTemplateClass::setBackgroundType(int value) {
    EntityValues::setInteger(this, TAKey::backgroundType, value);
}

int LMInvoiceTemplateClass::backgroundImageType() const {
    return int(integerForKey(TAKey::backgroundImageType));
}

void LMInvoiceTemplateClass::setBackgroundImageType(int value) {
    EntityValues::setInteger(this, TAKey::backgroundImageType, value);
}

qint64 LMInvoiceTemplateClass::backgroundGradientAngle() const {
    return integerForKey(TAKey::backgroundGradientAngle);
}

void LMInvoiceTemplateClass::setBackgroundGradientAngle(qint64 value) {
    EntityValues::setInteger(this, TAKey::backgroundGradientAngle, value);
}

QByteArray LMInvoiceTemplateClass::backgroundColor() const {
    return dataForKey(TAKey::backgroundColor);
}

void LMInvoiceTemplateClass::setBackgroundColor(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundColor, value);
}

QByteArray LMInvoiceTemplateClass::backgroundColor2() const {
    return dataForKey(TAKey::backgroundColor2);
}

void LMInvoiceTemplateClass::setBackgroundColor2(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundColor2, value);
}

QByteArray LMInvoiceTemplateClass::backgroundImage() const {
    return dataForKey(TAKey::backgroundImage);
}

void LMInvoiceTemplateClass::setBackgroundImage(const QByteArray &value) {
    EntityValues::setData(this, TAKey::backgroundImage, value);
}

QList<LMInvoiceTemplatePageClass *> LMInvoiceTemplateClass::pages() const {
    return objectsForKeyAs<LMInvoiceTemplatePageClass>(TAKey::pages);
}

QList<TAInvoice *> LMInvoiceTemplateClass::invoices() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}
