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

    QStringList relationshipsToLink() const override;
};
