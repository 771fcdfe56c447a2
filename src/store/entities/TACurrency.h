#pragma once

#include "store/entities/TAObject.h"

class TAClient;

// A currency of the document, looked up by its ISO 4217 code.
class TACurrency : public TAObject {
public:
    QString code() const;
    void setCode(const QString &value);
    QString title() const;
    void setTitle(const QString &value);
    Decimal rate() const;
    void setRate(const Decimal &value);
    bool isDefault() const;
    void setIsDefault(bool value);
    bool automaticallyDownload() const;
    void setAutomaticallyDownload(bool value);
    QList<TAClient *> clientsRelationships() const;
    void addClientRelationship(TAClient *value);
    void removeClientRelationship(TAClient *value);
};
