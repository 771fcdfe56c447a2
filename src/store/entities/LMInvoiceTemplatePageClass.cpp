#include "store/entities/LMInvoiceTemplatePageClass.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceElementClass.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAKeys.h"

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
