#pragma once

#include "store/entities/LMManagedObject.h"

#include "layoutvalues/LMTextAttributes.h"

class LMInvoiceElementClass;

// A column of a table element, or a row of a totals element (then owned through rowElement).
class LMInvoiceTemplateColumnClass : public LMManagedObject {
public:
    qint64 nr() const;
    void setNr(qint64 value);
    QString name() const;
    void setName(const QString &value);
    QString colID() const;
    void setColID(const QString &value);
    bool visible() const;
    void setVisible(bool value);
    double width() const;
    void setWidth(double value);
    QByteArray textAttributes() const;
    void setTextAttributes(const QByteArray &value);
    LMInvoiceElementClass *element() const;
    void setElement(LMInvoiceElementClass *value);
    LMInvoiceElementClass *rowElement() const;
    void setRowElement(LMInvoiceElementClass *value);

    // The column's own attributes (a left paragraph when unset, stored then) with the owning
    // element's attributes merged over them.
    LMTextAttributes getColumnAttributes();
    void setColumnAttributes(const LMTextAttributes &attributes);
    LMTextAttributes getBoldColumnAttributes();

    LMInvoiceTemplateColumnClass *getCopy() const;
    QVariantMap getDescriptionDict() const;
    void initWithDescriptionDictionary(const QVariantMap &dictionary);
};
