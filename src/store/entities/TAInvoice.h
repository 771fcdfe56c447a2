#pragma once

#include "store/entities/TAObject.h"

#include <QStringList>

class LMInvoiceTemplateClass;
class TAAccount;
class TAClient;
class TAHistory;
class TAItem;
class TAPayment;
class TAProject;

// An invoice: number, dates, status, the second tax and discount, the cached totals, and its items,
// payments and history.
class TAInvoice : public TAObject {
public:
    QString identification() const;
    void setIdentification(const QString &value);
    QDateTime date() const;
    void setDate(const QDateTime &value);
    QDateTime dueDate() const;
    void setDueDate(const QDateTime &value);
    int status() const;
    void setStatus(int value);
    bool archived() const;
    void setArchived(bool value);
    QString purchaseOrder() const;
    void setPurchaseOrder(const QString &value);
    QString notes() const;
    void setNotes(const QString &value);
    Decimal discount() const;
    void setDiscount(const Decimal &value);
    Decimal taxes() const;
    void setTaxes(const Decimal &value);
    QString taxName() const;
    void setTaxName(const QString &value);
    int calculationType() const;
    void setCalculationType(int value);
    QString eventUID() const;
    void setEventUID(const QString &value);
    Decimal subTotal() const;
    void setSubTotal(const Decimal &value);
    Decimal itemTaxes() const;
    void setItemTaxes(const Decimal &value);
    Decimal totalDiscount() const;
    void setTotalDiscount(const Decimal &value);
    Decimal totalTax2() const;
    void setTotalTax2(const Decimal &value);
    Decimal total() const;
    void setTotal(const Decimal &value);
    Decimal totalTaxes() const;
    void setTotalTaxes(const Decimal &value);
    TAClient *client() const;
    void setClient(TAClient *value);
    TAProject *project() const;
    void setProject(TAProject *value);
    TAAccount *account() const;
    void setAccount(TAAccount *value);
    LMInvoiceTemplateClass *invoiceTemplate() const;
    void setInvoiceTemplate(LMInvoiceTemplateClass *value);
    QList<TAItem *> items() const;
    QList<TAPayment *> payments() const;
    QList<TAHistory *> history() const;

    // The stored status folded into 1..3; anything else reads as a draft.
    virtual int statusValue() const;
    // Stores 1, 2 or 3 and ignores any other value.
    virtual void setStatusValue(int status);
    // Computed by the billing rules, which override these.
    virtual bool isOverdue() const;
    virtual bool isPaid() const;

    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;
};
