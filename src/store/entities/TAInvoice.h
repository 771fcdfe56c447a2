#pragma once

#include "foundation/Result.h"
#include "store/entities/TAObject.h"

#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <vector>

class LMInvoiceTemplateClass;
class SortDescriptor;
class TAAccount;
class TAClient;
class TACurrency;
class TADecimalNumberBehavior;
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
    // A null discount is stored as 0.
    virtual void setDiscount(const Decimal &value);
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
    // Paid in full by payments, or marked paid.
    virtual bool isPaid() const;
    // Unpaid and due on an earlier calendar day than today.
    virtual bool isOverdue() const;
    // The client's currency, else the document's default.
    virtual TACurrency *currency() const;
    // Tax lines: {"amount", "tax", "taxName"} per rate and name, highest rate first.
    virtual QList<QVariantMap> differentTaxes() const;
    virtual QList<TAItem *> itemsSortedBySortIndex() const;
    // `items` in the order of the invoice editor's table header, as it hands it over; unsorted
    // when the header has none.
    virtual QList<TAItem *> sortedItemRelationships(const QList<SortDescriptor> &header) const;
    virtual qsizetype numberOfItems() const;

    // `total` in another currency by the document's rate; unchanged without a rate.
    virtual Decimal totalInCurrency(TACurrency *currency) const;
    virtual Decimal totalInDefaultCurrency() const;
    // Payments in the invoice's currency; a paid invoice counts as paid in full at least.
    virtual Decimal paid() const;
    virtual Decimal unpaid() const;
    virtual Decimal overdue() const;
    virtual Decimal overpaid() const;
    virtual Decimal left() const;
    // `total` less `paid`; negative when overpaid.
    virtual Decimal balance() const;
    // 0 for an overdue invoice, else `status`: overdue ones sort first.
    virtual int sortStatus() const;

    // Each step stores its result, and the later steps read the stored values.
    virtual void cacheSubTotal();
    virtual void cacheItemTaxes();
    virtual void cacheTotalDiscount();
    virtual void cacheTotalTax2();
    virtual void cacheTotal();
    virtual void cacheTotalTaxes();
    virtual void updateCachedValues();
    // What every invoice's totals read from the document: the same for a whole batch, so a
    // refresh of many invoices reads it once.
    struct TotalsSettings {
        bool taxesEnabled = false;
        bool taxesCombined = false;
        TACurrency *defaultCurrency = nullptr;
    };
    static TotalsSettings totalsSettingsInContext(ManagedObjectContext *context);
    void updateCachedValuesWithSettings(const TotalsSettings &settings);
    // The same, and says when the totals do not fit: a sum would need more than 38 digits down
    // to the currency's places. All six totals are then left without a value instead of
    // holding a rounded or partial sum.
    Result<void> refreshCachedValues(const TotalsSettings &settings);

    // The rounding of every sum of this invoice.
    TADecimalNumberBehavior behavior() const;
    // Whether the document charges taxes, and the second tax on top of the item taxes.
    bool taxesEnabled() const;
    bool taxesCombined() const;

    // Asks for a refresh of the cached totals. Without a handler the refresh runs at once.
    using CacheRequestHandler = std::function<void(TAInvoice *)>;
    static CacheRequestHandler setCacheRequestHandler(CacheRequestHandler handler);
    void requestCacheUpdate();
    // The refresh itself, outside undo: cached totals are no user change.
    void updateCachedValuesWithoutUndo();

    void didChangeValueForKey(const QString &key) override;

    QStringList relationshipsToCopy() const override;
    QStringList relationshipsToLink() const override;

protected:
    QVariant computedValueForKey(const QString &key) const override;

private:
    // The currency behaviour and tax switches, read once for a whole refresh.
    struct TotalsRules;
    const TotalsRules *m_rules = nullptr;
    // A live item's total and tax rate, read once for all steps of one refresh.
    struct TotalsLine {
        Decimal total;
        Decimal tax;
    };
    std::vector<TotalsLine> liveLines() const;
    const std::vector<TotalsLine> &lines(std::vector<TotalsLine> &own) const;
};
