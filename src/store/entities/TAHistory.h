#pragma once

#include "store/entities/TAObject.h"

class TAClient;
class TAInvoice;
class TAPayment;
class TAProject;

// A record of something that happened to a project or an invoice, with optional links to what it
// concerns.
class TAHistory : public TAObject {
public:
    QDateTime date() const;
    void setDate(const QDateTime &value);
    int type() const;
    void setType(int value);
    qint64 intValue() const;
    void setIntValue(qint64 value);
    QDateTime dateValue() const;
    void setDateValue(const QDateTime &value);
    TAProject *project() const;
    void setProject(TAProject *value);
    TAInvoice *invoice() const;
    void setInvoice(TAInvoice *value);
    TAInvoice *relatedInvoice() const;
    void setRelatedInvoice(TAInvoice *value);
    TAPayment *relatedPayment() const;
    void setRelatedPayment(TAPayment *value);
    TAProject *relatedProject() const;
    void setRelatedProject(TAProject *value);
    TAClient *relatedClient() const;
    void setRelatedClient(TAClient *value);
};
