#pragma once

#include "store/entities/TAObject.h"

#include <QImage>
#include <QStringList>

class TACurrency;
class TAInvoice;
class TAProject;

// A customer. The stored attributes have short names and are offered under names ending in Value.
class TAClient : public TAObject {
public:
    QString fullNameValue() const;
    void setFullNameValue(const QString &value);
    QString companyValue() const;
    void setCompanyValue(const QString &value);
    bool isCompanyValue() const;
    void setIsCompanyValue(bool value);
    QString emailValue() const;
    void setEmailValue(const QString &value);
    QString phoneValue() const;
    void setPhoneValue(const QString &value);
    QString addressValue() const;
    void setAddressValue(const QString &value);
    QString taxIDValue() const;
    void setTaxIDValue(const QString &value);
    QString notesValue() const;
    void setNotesValue(const QString &value);
    QByteArray photoData() const;
    void setPhotoData(const QByteArray &value);
    QString abUID() const;
    void setAbUID(const QString &value);
    QList<TAInvoice *> invoiceRelationships() const;
    void addInvoiceRelationship(TAInvoice *value);
    void removeInvoiceRelationship(TAInvoice *value);
    QList<TAProject *> projectsRelationships() const;
    void addProjectRelationship(TAProject *value);
    void removeProjectRelationship(TAProject *value);

    // The linked currency, or the document's default currency when none is linked.
    virtual TACurrency *currencyRelationship() const;
    virtual void setCurrencyRelationship(TACurrency *currency);
    // The stored link alone.
    TACurrency *currency() const;

    // The photo as an image; a stored image is scaled to fit 64 by 64. Null clears it.
    virtual QImage photoValue() const;
    virtual void setPhotoValue(const QImage &image);
    // 2 with a photo, 1 for a company without one, else 0.
    virtual int photoType() const;

    // Naming: a company client by its company, a person by the full name, each falling back on
    // the other when empty.
    virtual QString displayName() const;
    virtual QString secondaryName() const;
    // "J. Smith" for a person whose first word has at least three letters and whose rest has
    // at least three characters; the display name otherwise.
    virtual QString shortDisplayName() const;
    // Case-insensitive order of display names: negative, 0 or positive.
    virtual int compare(const TAClient *other) const;
    // True when a direct invoice is an ordinary (not recurring) one.
    virtual bool isLinkedWithInvoice() const;

    // The invoices this client's sums count: those of its projects and its direct ones, each
    // once, without its direct recurring invoices.
    virtual QList<TAInvoice *> allInvoices() const;

    // Sums over allInvoices in the client's currency, rounded at each addition.
    virtual Decimal invoiced() const;
    virtual Decimal uninvoiced() const;
    // The only sum rounded ties-to-even at the end.
    virtual Decimal balance() const;
    virtual Decimal paid() const;
    virtual Decimal unpaid() const;
    virtual Decimal overdue() const;

    // The same over the invoices dated within the period, both ends included; the period's
    // balance gets no final rounding. uninvoicedFromDate counts projects due in the period.
    virtual QList<TAInvoice *> invoicesFromDate(const QDateTime &fromDate,
                                                const QDateTime &toDate) const;
    virtual Decimal invoicedFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;
    virtual Decimal uninvoicedFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;
    virtual Decimal balanceFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;
    virtual Decimal paidFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;
    virtual Decimal unpaidFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;
    virtual Decimal overdueFromDate(const QDateTime &fromDate, const QDateTime &toDate) const;

    QStringList relationshipsToLink() const override;

protected:
    QVariant computedValueForKey(const QString &key) const override;

private:
    QString currencyCodeForSums() const;
    Decimal sumOfUninvoicedItems(const QList<TAProject *> &projects) const;
};
