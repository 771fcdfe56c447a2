#pragma once

#include "store/entities/LMManagedObject.h"

class LMInvoiceTemplateColumnClass;
class LMInvoiceTemplatePageClass;

// One element of a template page; tables have columns, totals elements have columns and rows.
class LMInvoiceElementClass : public LMManagedObject {
public:
    int type() const;
    void setType(int value);
    QString frame() const;
    void setFrame(const QString &value);
    qint64 orderNr() const;
    void setOrderNr(qint64 value);
    bool isHidden() const;
    void setIsHidden(bool value);
    QByteArray text() const;
    void setText(const QByteArray &value);
    QByteArray textAttributes() const;
    void setTextAttributes(const QByteArray &value);
    QByteArray color() const;
    void setColor(const QByteArray &value);
    QByteArray image() const;
    void setImage(const QByteArray &value);
    int style() const;
    void setStyle(int value);
    LMInvoiceTemplatePageClass *page() const;
    void setPage(LMInvoiceTemplatePageClass *value);
    QList<LMInvoiceTemplateColumnClass *> columns() const;
    QList<LMInvoiceTemplateColumnClass *> rows() const;
};
