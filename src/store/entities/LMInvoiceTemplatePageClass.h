#pragma once

#include "store/entities/LMManagedObject.h"

#include <QImage>

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

    void didChangeValueForKey(const QString &key) override;

    // A new element on this page; null without a context.
    LMInvoiceElementClass *newElement();
    QList<LMInvoiceElementClass *> getSortedElements() const;
    // The table style chosen for every items and totals table of the page.
    void tableStyleChanged(int selectedIndex);
    QImage flippedPreviewImage() const;
    QImage previewImageFlipped(bool flipped) const;
    void deleteElements();

    LMInvoiceTemplatePageClass *getCopy() const;
    QVariantMap getDescriptionDict() const;
    void initWithDescriptionDictionary(const QVariantMap &dictionary);
};
