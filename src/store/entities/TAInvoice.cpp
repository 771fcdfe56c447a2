#include "store/entities/TAInvoice.h"

#include "foundation/dates/OTClock.h"
#include "foundation/dates/OTDate.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/SortDescriptor.h"
#include "store/TAContextDatabase.h"
#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"

#include <algorithm>

namespace {

Decimal orZero(const Decimal &value) {
    return value.isNaN() ? Decimal() : value;
}

Decimal positiveOrZero(const Decimal &value) {
    return value.isNegative() ? Decimal() : value;
}

// A payment in the invoice's currency, by the rate it was recorded with (no rate: as it stands).
Decimal paymentInInvoiceCurrency(const TAPayment *payment, const DecimalBehavior &behavior) {
    const Decimal rate = payment->rate();
    return DecimalMath::multiply(orZero(payment->amount()), rate.isNaN() ? Decimal(1) : rate,
                                 behavior);
}

bool isLive(const ManagedObject *object) {
    return object && object->managedObjectContext() && !object->isDeleted();
}

TAInvoice::CacheRequestHandler &cacheRequestHandler() {
    static TAInvoice::CacheRequestHandler handler;
    return handler;
}

} // namespace

QString TAInvoice::identification() const {
    return stringForKey(TAKey::identification);
}

void TAInvoice::setIdentification(const QString &value) {
    EntityValues::setString(this, TAKey::identification, value);
}

QDateTime TAInvoice::date() const {
    return dateForKey(TAKey::date);
}

void TAInvoice::setDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::date, value);
}

QDateTime TAInvoice::dueDate() const {
    return dateForKey(TAKey::dueDate);
}

void TAInvoice::setDueDate(const QDateTime &value) {
    EntityValues::setDate(this, TAKey::dueDate, value);
}

int TAInvoice::status() const {
    return int(integerForKey(TAKey::status));
}

void TAInvoice::setStatus(int value) {
    EntityValues::setInteger(this, TAKey::status, value);
}

bool TAInvoice::archived() const {
    return boolForKey(TAKey::archived);
}

void TAInvoice::setArchived(bool value) {
    EntityValues::setBool(this, TAKey::archived, value);
}

QString TAInvoice::purchaseOrder() const {
    return stringForKey(TAKey::purchaseOrder);
}

void TAInvoice::setPurchaseOrder(const QString &value) {
    EntityValues::setString(this, TAKey::purchaseOrder, value);
}

QString TAInvoice::notes() const {
    return stringForKey(TAKey::notes);
}

void TAInvoice::setNotes(const QString &value) {
    EntityValues::setString(this, TAKey::notes, value);
}

Decimal TAInvoice::discount() const {
    return decimalForKey(TAKey::discount);
}

void TAInvoice::setDiscount(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::discount, value.isNaN() ? Decimal() : value);
}

Decimal TAInvoice::taxes() const {
    return decimalForKey(TAKey::taxes);
}

void TAInvoice::setTaxes(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::taxes, value);
}

QString TAInvoice::taxName() const {
    return stringForKey(TAKey::taxName);
}

void TAInvoice::setTaxName(const QString &value) {
    EntityValues::setString(this, TAKey::taxName, value);
}

int TAInvoice::calculationType() const {
    return int(integerForKey(TAKey::calculationType));
}

void TAInvoice::setCalculationType(int value) {
    EntityValues::setInteger(this, TAKey::calculationType, value);
}

QString TAInvoice::eventUID() const {
    return stringForKey(TAKey::eventUID);
}

void TAInvoice::setEventUID(const QString &value) {
    EntityValues::setString(this, TAKey::eventUID, value);
}

Decimal TAInvoice::subTotal() const {
    return decimalForKey(TAKey::subTotal);
}

void TAInvoice::setSubTotal(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::subTotal, value);
}

Decimal TAInvoice::itemTaxes() const {
    return decimalForKey(TAKey::itemTaxes);
}

void TAInvoice::setItemTaxes(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::itemTaxes, value);
}

Decimal TAInvoice::totalDiscount() const {
    return decimalForKey(TAKey::totalDiscount);
}

void TAInvoice::setTotalDiscount(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::totalDiscount, value);
}

Decimal TAInvoice::totalTax2() const {
    return decimalForKey(TAKey::totalTax2);
}

void TAInvoice::setTotalTax2(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::totalTax2, value);
}

Decimal TAInvoice::total() const {
    return decimalForKey(TAKey::total);
}

void TAInvoice::setTotal(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::total, value);
}

Decimal TAInvoice::totalTaxes() const {
    return decimalForKey(TAKey::totalTaxes);
}

void TAInvoice::setTotalTaxes(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::totalTaxes, value);
}

TAClient *TAInvoice::client() const {
    return objectForKeyAs<TAClient>(TAKey::client);
}

void TAInvoice::setClient(TAClient *value) {
    setObjectForKey(value, TAKey::client);
}

TAProject *TAInvoice::project() const {
    return objectForKeyAs<TAProject>(TAKey::project);
}

void TAInvoice::setProject(TAProject *value) {
    setObjectForKey(value, TAKey::project);
}

TAAccount *TAInvoice::account() const {
    return objectForKeyAs<TAAccount>(TAKey::account);
}

void TAInvoice::setAccount(TAAccount *value) {
    setObjectForKey(value, TAKey::account);
}

LMInvoiceTemplateClass *TAInvoice::invoiceTemplate() const {
    return objectForKeyAs<LMInvoiceTemplateClass>(TAKey::template_);
}

void TAInvoice::setInvoiceTemplate(LMInvoiceTemplateClass *value) {
    setObjectForKey(value, TAKey::template_);
}

QList<TAItem *> TAInvoice::items() const {
    return objectsForKeyAs<TAItem>(TAKey::items);
}

QList<TAPayment *> TAInvoice::payments() const {
    return objectsForKeyAs<TAPayment>(TAKey::payments);
}

QList<TAHistory *> TAInvoice::history() const {
    return objectsForKeyAs<TAHistory>(TAKey::history);
}

int TAInvoice::statusValue() const {
    return TACodes::foldedInvoiceStatus(integerForKey(TAKey::status));
}

void TAInvoice::setStatusValue(int status) {
    if (status >= TACodes::InvoiceDraft && status <= TACodes::InvoicePaid)
        setStatus(status);
}

TACurrency *TAInvoice::currency() const {
    if (TAClient *owner = client())
        if (TACurrency *billed = owner->currencyRelationship())
            return billed;
    ManagedObjectContext *context = managedObjectContext();
    return context ? TAContextDatabase::getDefaultCurrencyInContext(context) : nullptr;
}

struct TAInvoice::TotalsRules {
    TADecimalNumberBehavior behavior;
    bool taxesEnabled = false;
    bool taxesCombined = false;
    std::vector<TotalsLine> lines;
};

TADecimalNumberBehavior TAInvoice::behavior() const {
    if (m_rules)
        return m_rules->behavior;
    const TACurrency *billed = currency();
    return TADecimalNumberBehavior::behaviorWithCurrencyCode(billed ? billed->code() : QString());
}

bool TAInvoice::taxesEnabled() const {
    if (m_rules)
        return m_rules->taxesEnabled;
    const TAPreferences *preferences =
        TAContextDatabase::getPreferencesInContext(managedObjectContext());
    return preferences && preferences->taxesEnabled();
}

bool TAInvoice::taxesCombined() const {
    if (m_rules)
        return m_rules->taxesCombined;
    const TAPreferences *preferences =
        TAContextDatabase::getPreferencesInContext(managedObjectContext());
    return preferences && preferences->taxesCombined();
}

QList<TAItem *> TAInvoice::itemsSortedBySortIndex() const {
    QList<TAItem *> sorted = items();
    std::stable_sort(sorted.begin(), sorted.end(), [](const TAItem *a, const TAItem *b) {
        return a->sortIndex() < b->sortIndex();
    });
    return sorted;
}

QList<TAItem *> TAInvoice::sortedItemRelationships(const QList<SortDescriptor> &header) const {
    QList<TAItem *> sorted = items();
    if (!header.isEmpty())
        SortDescriptor::sort(sorted, header);
    return sorted;
}

qsizetype TAInvoice::numberOfItems() const {
    return countForKey(TAKey::items);
}

// --- Cached totals: every step rounds to the currency, in the order written -------------

std::vector<TAInvoice::TotalsLine> TAInvoice::liveLines() const {
    std::vector<TotalsLine> lines;
    // The items lie all over memory: the walk asks for them ahead of reading them.
    // An item's total is not-a-number only when it overflowed: it then makes the sums so,
    // rather than counting as nothing.
    forEachObjectForKey(TAKey::items, [&lines](ManagedObject *member) {
        const TAItem *item = objectAs<TAItem>(member);
        if (isLive(item)) // an item deleted meanwhile is skipped
            lines.push_back({item->total(), orZero(item->tax())});
    });
    return lines;
}

const std::vector<TAInvoice::TotalsLine> &TAInvoice::lines(std::vector<TotalsLine> &own) const {
    if (m_rules)
        return m_rules->lines;
    own = liveLines();
    return own;
}

void TAInvoice::cacheSubTotal() {
    const TADecimalNumberBehavior b = behavior();
    Decimal sum;
    std::vector<TotalsLine> own;
    for (const TotalsLine &line : lines(own))
        sum = DecimalMath::add(sum, line.total, b);
    setSubTotal(sum);
}

void TAInvoice::cacheItemTaxes() {
    Decimal sum;
    if (taxesEnabled()) {
        const TADecimalNumberBehavior b = behavior();
        std::vector<TotalsLine> own;
        for (const TotalsLine &line : lines(own))
            if (line.tax.sign() > 0)
                sum = DecimalMath::add(sum, DecimalMath::multiply(line.total, line.tax, b), b);
    }
    setItemTaxes(sum);
}

void TAInvoice::cacheTotalDiscount() {
    const TADecimalNumberBehavior b = behavior();
    const Decimal S = orZero(subTotal());
    const Decimal I = orZero(itemTaxes());
    const Decimal r = orZero(taxes());
    const Decimal d = orZero(discount());
    Decimal base = DecimalMath::add(S, I, b);
    if (calculationType() != 0 && !taxesEnabled())
        base = S;
    else if (calculationType() != 0 && taxesCombined())
        base = DecimalMath::multiply(base, DecimalMath::add(r, Decimal(1), b), b);
    else if (calculationType() != 0)
        base = DecimalMath::add(base, DecimalMath::multiply(S, r, b), b);
    setTotalDiscount(DecimalMath::multiply(base, d, b));
}

void TAInvoice::cacheTotalTax2() {
    if (!taxesEnabled()) {
        setTotalTax2(Decimal());
        return;
    }
    const TADecimalNumberBehavior b = behavior();
    const Decimal S = orZero(subTotal());
    const Decimal r = orZero(taxes());
    const Decimal base = taxesCombined() ? DecimalMath::add(S, orZero(itemTaxes()), b) : S;
    if (calculationType() != 0)
        setTotalTax2(DecimalMath::multiply(base, r, b));
    else
        setTotalTax2(
            DecimalMath::multiply(DecimalMath::subtract(base, orZero(totalDiscount()), b), r, b));
}

void TAInvoice::cacheTotal() {
    const TADecimalNumberBehavior b = behavior();
    const Decimal x = DecimalMath::add(orZero(subTotal()), orZero(itemTaxes()), b);
    const Decimal D = orZero(totalDiscount());
    const Decimal T = orZero(totalTax2());
    if (calculationType() != 0)
        setTotal(DecimalMath::subtract(DecimalMath::add(x, T, b), D, b));
    else
        setTotal(DecimalMath::add(DecimalMath::subtract(x, D, b), T, b));
}

void TAInvoice::cacheTotalTaxes() {
    setTotalTaxes(DecimalMath::add(orZero(itemTaxes()), orZero(totalTax2()), behavior()));
}

// Looks up without making anything: the cache updater's worker reads with this, and a
// document's missing preferences or default currency are the main thread's to make (the
// first asks the user's address card, the second the user's locale).
TAInvoice::TotalsSettings TAInvoice::totalsSettingsInContext(ManagedObjectContext *context) {
    if (!context)
        return {};
    using CDB = TAContextDatabase;
    const CDB::ObjectList preferences =
        CDB::fetchEntity(TAEntity::Preferences, QStringLiteral("allPreferences"), context);
    const CDB::ObjectList currencies =
        CDB::fetchEntity(TAEntity::Currency, QStringLiteral("defaultCurrency"), context);
    const auto *settings =
        preferences.isEmpty() ? nullptr : objectAs<TAPreferences>(preferences.first());
    return {settings && settings->taxesEnabled(), settings && settings->taxesCombined(),
            currencies.isEmpty() ? nullptr : objectAs<TACurrency>(currencies.first())};
}

void TAInvoice::updateCachedValues() {
    if (ManagedObjectContext *context = managedObjectContext())
        updateCachedValuesWithSettings(totalsSettingsInContext(context));
}

void TAInvoice::updateCachedValuesWithSettings(const TotalsSettings &settings) {
    // An overflow leaves the totals without a value, which the invoice shows as such.
    if (auto refreshed = refreshCachedValues(settings); !refreshed)
        qWarning("Invoice %s has no totals: %s", qUtf8Printable(identification()),
                 qUtf8Printable(refreshed.error().message));
}

Result<void> TAInvoice::refreshCachedValues(const TotalsSettings &settings) {
    if (!managedObjectContext())
        return {};
    // The client's own currency, else the document's, as currency() answers.
    const TAClient *owner = client();
    const TACurrency *linked = owner ? owner->currency() : nullptr;
    const TACurrency *billed = linked ? linked : settings.defaultCurrency;
    const TotalsRules rules{
        TADecimalNumberBehavior::behaviorWithCurrencyCode(billed ? billed->code() : QString()),
        settings.taxesEnabled, settings.taxesCombined, liveLines()};
    m_rules = &rules;
    cacheSubTotal();
    cacheItemTaxes();
    cacheTotalDiscount();
    cacheTotalTax2();
    cacheTotal();
    cacheTotalTaxes();
    m_rules = nullptr;
    // Each step reads the earlier ones as 0 when they have no value, so one overflow leaves
    // the later totals wrong as well: none of them is kept.
    const Decimal totals[] = {subTotal(),  itemTaxes(), totalDiscount(),
                              totalTax2(), total(),     totalTaxes()};
    if (std::none_of(std::begin(totals), std::end(totals),
                     [](const Decimal &value) { return value.isNaN(); }))
        return {};
    for (const auto set :
         {&TAInvoice::setSubTotal, &TAInvoice::setItemTaxes, &TAInvoice::setTotalDiscount,
          &TAInvoice::setTotalTax2, &TAInvoice::setTotal, &TAInvoice::setTotalTaxes})
        (this->*set)(Decimal::notANumber());
    return Error{ErrorCode::Generic,
                 QStringLiteral("its totals need more than 38 digits down to the places of its "
                                "currency; a price, quantity or rate of its items is too large")};
}

TAInvoice::CacheRequestHandler TAInvoice::setCacheRequestHandler(CacheRequestHandler handler) {
    return std::exchange(cacheRequestHandler(), std::move(handler));
}

void TAInvoice::requestCacheUpdate() {
    if (const CacheRequestHandler &handler = cacheRequestHandler())
        handler(this);
    else
        updateCachedValuesWithoutUndo();
}

void TAInvoice::updateCachedValuesWithoutUndo() {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return;
    TAContextDatabase::disableUndoRegistrationInContext(context);
    updateCachedValues();
    TAContextDatabase::enableUndoRegistrationInContext(context);
}

// --- Tax lines ----------------------------------------------------------------------------

QList<QVariantMap> TAInvoice::differentTaxes() const {
    QList<QVariantMap> groups;
    if (!taxesEnabled())
        return groups;
    const TADecimalNumberBehavior b = behavior();
    for (const TAItem *item : items()) {
        const Decimal rate = orZero(item->tax());
        const QString name = item->taxName().isNull() ? QStringLiteral("") : item->taxName();
        const Decimal amount = DecimalMath::multiply(orZero(item->total()), rate, b);
        auto group = std::find_if(groups.begin(), groups.end(), [&](const QVariantMap &g) {
            return Decimal::fromVariant(g.value(QStringLiteral("tax"))) == rate &&
                   g.value(QStringLiteral("taxName")).toString() == name;
        });
        if (group == groups.end())
            group = groups.insert(groups.end(), QVariantMap{{"amount", Decimal().toVariant()}});
        const Decimal sum = Decimal::fromVariant(group->value(QStringLiteral("amount")));
        group->insert(QStringLiteral("amount"), DecimalMath::add(amount, sum, b).toVariant());
        group->insert(QStringLiteral("tax"), rate.toVariant());
        group->insert(QStringLiteral("taxName"), name);
    }
    std::stable_sort(groups.begin(), groups.end(), [](const QVariantMap &a, const QVariantMap &b) {
        return Decimal::fromVariant(a.value(QStringLiteral("tax"))) >
               Decimal::fromVariant(b.value(QStringLiteral("tax")));
    });
    return groups;
}

// --- Conversions ----------------------------------------------------------------------------

Decimal TAInvoice::totalInCurrency(TACurrency *target) const {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return Decimal();
    TACurrency *own = currency();
    const Decimal amount = orZero(total());
    if (!target || target == own)
        return amount;
    const TACurrencyRate *rate =
        TAContextDatabase::getCurrencyRateFromCurrency(own, target, context);
    if (!rate || rate->oneFromInTo().isNaN())
        return amount;
    return DecimalMath::multiply(amount, rate->oneFromInTo(),
                                 TADecimalNumberBehavior::behaviorWithCurrencyCode(target->code()));
}

Decimal TAInvoice::totalInDefaultCurrency() const {
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return Decimal();
    return totalInCurrency(TAContextDatabase::getDefaultCurrencyInContext(context));
}

// --- Payments and what is left ------------------------------------------------------------

Decimal TAInvoice::paid() const {
    if (!managedObjectContext())
        return Decimal();
    const TADecimalNumberBehavior b = behavior();
    Decimal sum;
    for (const TAPayment *payment : payments())
        sum = DecimalMath::add(sum, paymentInInvoiceCurrency(payment, b), b);
    const Decimal owed = orZero(total());
    // Marked paid by hand counts as paid in full; an overpayment stays visible.
    if (status() == TACodes::InvoicePaid && owed.toDouble() > sum.toDouble())
        return owed;
    return sum;
}

Decimal TAInvoice::balance() const {
    return DecimalMath::subtract(orZero(total()), paid(), behavior());
}

Decimal TAInvoice::unpaid() const {
    if (status() == TACodes::InvoicePaid)
        return Decimal();
    return positiveOrZero(balance());
}

Decimal TAInvoice::overdue() const {
    if (status() == TACodes::InvoicePaid || !isOverdue())
        return Decimal();
    return positiveOrZero(balance());
}

Decimal TAInvoice::overpaid() const {
    return positiveOrZero(DecimalMath::subtract(paid(), orZero(total()), behavior()));
}

Decimal TAInvoice::left() const {
    return unpaid();
}

bool TAInvoice::isPaid() const {
    return status() == TACodes::InvoicePaid || paid().toDouble() >= orZero(total()).toDouble();
}

bool TAInvoice::isOverdue() const {
    if (isPaid())
        return false;
    const QDateTime due = dueDate();
    const QDateTime now = OTClock::now();
    if (!due.isValid() || OTDate::secondsFromDate(now, due) >= 0)
        return false;
    // Overdue from the calendar day after the due date, not from the due moment.
    return OTDate::daysFrom(due, now) != 0;
}

int TAInvoice::sortStatus() const {
    return isOverdue() ? 0 : status();
}

// --- Change triggers --------------------------------------------------------------------------

void TAInvoice::didChangeValueForKey(const QString &key) {
    TAObject::didChangeValueForKey(key);
    if (key == TAKey::discount || key == TAKey::taxes || key == TAKey::calculationType ||
        key == TAKey::items) {
        requestCacheUpdate();
    } else if (key == TAKey::project) {
        if (TAProject *work = project())
            for (TAItem *item : items())
                item->setProject(work);
    }
}

QVariant TAInvoice::computedValueForKey(const QString &key) const {
    static const QHash<QString, std::function<QVariant(const TAInvoice *)>> computed = {
        {"statusValue", [](const TAInvoice *i) { return QVariant(i->statusValue()); }},
        {"isPaid", [](const TAInvoice *i) { return QVariant(i->isPaid()); }},
        {"isOverdue", [](const TAInvoice *i) { return QVariant(i->isOverdue()); }},
        {"sortStatus", [](const TAInvoice *i) { return QVariant(i->sortStatus()); }},
        {"numberOfItems", [](const TAInvoice *i) { return QVariant(i->numberOfItems()); }},
        {"paid", [](const TAInvoice *i) { return i->paid().toVariant(); }},
        {"unpaid", [](const TAInvoice *i) { return i->unpaid().toVariant(); }},
        {"overdue", [](const TAInvoice *i) { return i->overdue().toVariant(); }},
        {"overpaid", [](const TAInvoice *i) { return i->overpaid().toVariant(); }},
        {"left", [](const TAInvoice *i) { return i->left().toVariant(); }},
        {"balance", [](const TAInvoice *i) { return i->balance().toVariant(); }},
        {"totalInDefaultCurrency",
         [](const TAInvoice *i) { return i->totalInDefaultCurrency().toVariant(); }},
        {"currency",
         [](const TAInvoice *i) {
             return QVariant::fromValue(static_cast<ManagedObject *>(i->currency()));
         }},
        {"differentTaxes",
         [](const TAInvoice *i) {
             QVariantList lines;
             for (const QVariantMap &line : i->differentTaxes())
                 lines.append(line);
             return QVariant(lines);
         }},
    };
    if (auto found = computed.find(key); found != computed.end())
        return found.value()(this);
    return TAObject::computedValueForKey(key);
}

QStringList TAInvoice::relationshipsToCopy() const {
    return {TAKey::items};
}

QStringList TAInvoice::relationshipsToLink() const {
    return {TAKey::account, TAKey::client, TAKey::project, TAKey::template_};
}
