#pragma once

#include "store/entities/TAObject.h"

#include <QStringList>

class TAClient;
class TACurrency;
class TATimer;
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

    // The name, or "(No Name)".
    virtual QString stringValue() const;
    // Seconds of all its timers, billed or not.
    virtual qint64 projectTime() const;
    // The client's currency, else the document's default.
    virtual TACurrency *currency() const;
    // Sum of the totals of its items, rounded for its currency at each addition.
    virtual Decimal projectPrice() const;
    // The price converted by the rate row from the project's currency; unchanged for its own
    // currency or when there is no row.
    virtual Decimal projectPriceInCurrency(TACurrency *currency) const;
    virtual Decimal projectPriceInDefault() const;
    // Past its due day, whatever the status.
    virtual bool overdue() const;
    virtual QList<TAItem *> notInvoicedItems() const;
    // The unbilled timers, most recently changed first.
    virtual QList<TATimer *> activeProjectTimers() const;
    virtual bool hasActiveTimers() const;

    void awakeFromInsert() override;
    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;

protected:
    QVariant computedValueForKey(const QString &key) const override;
};
