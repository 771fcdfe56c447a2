#pragma once

#include "store/entities/LMManagedObject.h"

class LMInvoiceTemplatePageClass;
class TAInvoice;

// A user-editable invoice layout: background and ordered pages.
class LMInvoiceTemplateClass : public LMManagedObject {
public:
    QString name() const;
    void setName(const QString &value);
    QDateTime creationDate() const;
    void setCreationDate(const QDateTime &value);
    QString size() const;
    void setSize(const QString &value);
    QString positions() const;
    void setPositions(const QString &value);
    QByteArray previewImageData() const;
    void setPreviewImageData(const QByteArray &value);
    int backgroundType() const;
    void setBackgroundType(int value);
    int backgroundImageType() const;
    void setBackgroundImageType(int value);
    qint64 backgroundGradientAngle() const;
    void setBackgroundGradientAngle(qint64 value);
    QByteArray backgroundColor() const;
    void setBackgroundColor(const QByteArray &value);
    QByteArray backgroundColor2() const;
    void setBackgroundColor2(const QByteArray &value);
    QByteArray backgroundImage() const;
    void setBackgroundImage(const QByteArray &value);
    QList<LMInvoiceTemplatePageClass *> pages() const;
    QList<TAInvoice *> invoices() const;
};
