#pragma once

#include "store/entities/LMManagedObject.h"

class LMInvoiceElementClass;
class LMInvoiceTemplateClass;

// One page of a template, holding stacked elements.
class LMInvoiceTemplatePageClass : public LMManagedObject {
public:
    qint64 tag() const;
    void setTag(qint64 value);
    QByteArray previewImageData() const;
    void setPreviewImageData(const QByteArray &value);
    LMInvoiceTemplateClass *invoiceTemplate() const;
    void setInvoiceTemplate(LMInvoiceTemplateClass *value);
    QList<LMInvoiceElementClass *> elements() const;
};
