#pragma once

#include "store/entities/TAObject.h"

#include <QStringList>

class TAClient;
class TAHistory;
class TAInvoice;
class TAItem;

// A piece of work for a client: its items, the invoices made from them, and its history.
class TAProject : public TAObject {
public:
    QString name() const;
    void setName(const QString &value);
    QString notes() const;
    void setNotes(const QString &value);
    QDateTime dueDate() const;
    void setDueDate(const QDateTime &value);
    int status() const;
    void setStatus(int value);
    TAClient *client() const;
    void setClient(TAClient *value);
    QList<TAItem *> items() const;
    QList<TAInvoice *> invoices() const;
    QList<TAHistory *> history() const;

    // The stored status, with anything but "Active" and "Closed" read as a draft.
    virtual int projectStatus() const;
    virtual void setProjectStatus(int status);

    void awakeFromInsert() override;
    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;
};
