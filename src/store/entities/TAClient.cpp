#include "store/entities/TAClient.h"

#include "foundation/money/OTNumberText.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/Predicate.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"

#include <QBuffer>
#include <QSet>

QString TAClient::fullNameValue() const {
    return stringForKey(TAKey::fullName);
}

void TAClient::setFullNameValue(const QString &value) {
    EntityValues::setString(this, TAKey::fullName, value);
}

QString TAClient::companyValue() const {
    return stringForKey(TAKey::company);
}

void TAClient::setCompanyValue(const QString &value) {
    EntityValues::setString(this, TAKey::company, value);
}

bool TAClient::isCompanyValue() const {
    return boolForKey(TAKey::isCompany);
}

void TAClient::setIsCompanyValue(bool value) {
    EntityValues::setBool(this, TAKey::isCompany, value);
}

QString TAClient::emailValue() const {
    return stringForKey(TAKey::email);
}

void TAClient::setEmailValue(const QString &value) {
    EntityValues::setString(this, TAKey::email, value);
}

QString TAClient::phoneValue() const {
    return stringForKey(TAKey::phone);
}

void TAClient::setPhoneValue(const QString &value) {
    EntityValues::setString(this, TAKey::phone, value);
}

QString TAClient::addressValue() const {
    return stringForKey(TAKey::address);
}

void TAClient::setAddressValue(const QString &value) {
    EntityValues::setString(this, TAKey::address, value);
}

QString TAClient::taxIDValue() const {
    return stringForKey(TAKey::taxID);
}

void TAClient::setTaxIDValue(const QString &value) {
    EntityValues::setString(this, TAKey::taxID, value);
}

QString TAClient::notesValue() const {
    return stringForKey(TAKey::notes);
}

void TAClient::setNotesValue(const QString &value) {
    EntityValues::setString(this, TAKey::notes, value);
}

QByteArray TAClient::photoData() const {
    return dataForKey(TAKey::photo);
}

void TAClient::setPhotoData(const QByteArray &value) {
    EntityValues::setData(this, TAKey::photo, value);
}

QString TAClient::abUID() const {
    return stringForKey(TAKey::abUID);
}

void TAClient::setAbUID(const QString &value) {
    EntityValues::setString(this, TAKey::abUID, value);
}

QList<TAInvoice *> TAClient::invoiceRelationships() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

void TAClient::addInvoiceRelationship(TAInvoice *value) {
    if (value)
        addObjectForKey(value, TAKey::invoices);
}

void TAClient::removeInvoiceRelationship(TAInvoice *value) {
    if (value)
        removeObjectForKey(value, TAKey::invoices);
}

QList<TAProject *> TAClient::projectsRelationships() const {
    return objectsForKeyAs<TAProject>(TAKey::projects);
}

void TAClient::addProjectRelationship(TAProject *value) {
    if (value)
        addObjectForKey(value, TAKey::projects);
}

void TAClient::removeProjectRelationship(TAProject *value) {
    if (value)
        removeObjectForKey(value, TAKey::projects);
}

TACurrency *TAClient::currency() const {
    return objectForKeyAs<TACurrency>(TAKey::currency);
}

TACurrency *TAClient::currencyRelationship() const {
    if (TACurrency *linked = currency())
        return linked;
    ManagedObjectContext *context = managedObjectContext();
    if (!context)
        return nullptr;
    auto request = context->fetchRequestFromTemplate(QStringLiteral("defaultCurrency"), {});
    if (!request)
        return nullptr;
    request->includesSubentities = false;
    auto found = context->executeFetchRequest(*request);
    return found && !found->isEmpty() ? dynamic_cast<TACurrency *>(found->first()) : nullptr;
}

void TAClient::setCurrencyRelationship(TACurrency *currency) {
    setObjectForKey(currency, TAKey::currency);
}

namespace {
constexpr int kPhotoSide = 64;
} // namespace

QImage TAClient::photoValue() const {
    return QImage::fromData(photoData(), "PNG");
}

void TAClient::setPhotoValue(const QImage &image) {
    if (image.isNull()) {
        setPhotoData({});
        return;
    }
    QImage fitted = image;
    if (image.width() > kPhotoSide || image.height() > kPhotoSide)
        fitted =
            image.scaled(kPhotoSide, kPhotoSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    fitted.save(&buffer, "PNG");
    setPhotoData(png);
}

int TAClient::photoType() const {
    if (!photoData().isEmpty())
        return TACodes::PhotoStored;
    return isCompanyValue() ? TACodes::PhotoCompany : TACodes::PhotoNone;
}

QStringList TAClient::relationshipsToLink() const {
    return {TAKey::currency};
}

// --- Naming -----------------------------------------------------------------------------

QString TAClient::displayName() const {
    const QString company = companyValue();
    if (isCompanyValue() && !company.isEmpty())
        return company;
    const QString fullName = fullNameValue();
    if (!fullName.isEmpty())
        return fullName;
    return company.isEmpty() ? QStringLiteral("") : company;
}

QString TAClient::secondaryName() const {
    const QString company = companyValue();
    const QString fullName = fullNameValue();
    if (company.isEmpty() || fullName.isEmpty())
        return QStringLiteral("");
    return isCompanyValue() ? fullName : company;
}

QString TAClient::shortDisplayName() const {
    const QString name = displayName();
    if (isCompanyValue())
        return name;
    const qsizetype blank = name.indexOf(QLatin1Char(' '));
    if (blank < 3)
        return name;
    const QString rest = name.mid(blank + 1);
    if (rest.size() < 3)
        return name;
    return QStringLiteral("%1. %2").arg(name.left(1), rest);
}

int TAClient::compare(const TAClient *other) const {
    const int order = QString::compare(displayName(), other ? other->displayName() : QString(),
                                       Qt::CaseInsensitive);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

bool TAClient::isLinkedWithInvoice() const {
    for (TAInvoice *invoice : invoiceRelationships())
        if (!dynamic_cast<TARecurringInvoice *>(invoice))
            return true;
    return false;
}

// --- Invoices and sums ------------------------------------------------------------------

QList<TAInvoice *> TAClient::allInvoices() const {
    const QList<TAInvoice *> direct = invoiceRelationships();
    const QSet<TAInvoice *> directSet(direct.cbegin(), direct.cend());
    QList<TAInvoice *> out;
    QSet<TAInvoice *> seen;
    for (TAProject *project : projectsRelationships())
        for (TAInvoice *invoice : project->invoices())
            if (!directSet.contains(invoice) && !seen.contains(invoice)) {
                seen.insert(invoice);
                out.append(invoice);
            }
    for (TAInvoice *invoice : direct)
        if (!dynamic_cast<TARecurringInvoice *>(invoice))
            out.append(invoice);
    return out;
}

QString TAClient::currencyCodeForSums() const {
    TACurrency *currency = currencyRelationship();
    return currency ? currency->code() : QString();
}

namespace {
template <class Amount>
Decimal sumOfInvoices(const QList<TAInvoice *> &invoices, const QString &code, Amount amount) {
    const TADecimalNumberBehavior behavior =
        TADecimalNumberBehavior::behaviorWithCurrencyCode(code);
    Decimal sum;
    for (TAInvoice *invoice : invoices)
        sum = DecimalMath::add(sum, amount(invoice), behavior);
    return sum;
}

// An invoice with no items has never had its total cached; it counts as 0 like the others.
Decimal invoiceTotal(TAInvoice *invoice) {
    const Decimal total = invoice->total();
    return total.isNaN() ? Decimal() : total;
}
Decimal invoicePaid(TAInvoice *invoice) {
    return invoice->paid();
}
Decimal invoiceUnpaid(TAInvoice *invoice) {
    return invoice->unpaid();
}
Decimal invoiceOverdue(TAInvoice *invoice) {
    return invoice->overdue();
}
Decimal invoiceBalance(TAInvoice *invoice) {
    return invoice->balance();
}
} // namespace

Decimal TAClient::sumOfUninvoicedItems(const QList<TAProject *> &projects) const {
    const TADecimalNumberBehavior behavior =
        TADecimalNumberBehavior::behaviorWithCurrencyCode(currencyCodeForSums());
    Decimal sum;
    for (TAProject *project : projects)
        for (TAItem *item : project->notInvoicedItems())
            sum = DecimalMath::add(sum, item->total(), behavior);
    return sum;
}

Decimal TAClient::invoiced() const {
    return sumOfInvoices(allInvoices(), currencyCodeForSums(), invoiceTotal);
}

Decimal TAClient::uninvoiced() const {
    return sumOfUninvoicedItems(projectsRelationships());
}

Decimal TAClient::balance() const {
    const QString code = currencyCodeForSums();
    return OTNumberText::decimalNumber(sumOfInvoices(allInvoices(), code, invoiceBalance), code);
}

Decimal TAClient::paid() const {
    return sumOfInvoices(allInvoices(), currencyCodeForSums(), invoicePaid);
}

Decimal TAClient::unpaid() const {
    return sumOfInvoices(allInvoices(), currencyCodeForSums(), invoiceUnpaid);
}

Decimal TAClient::overdue() const {
    return sumOfInvoices(allInvoices(), currencyCodeForSums(), invoiceOverdue);
}

namespace {
Predicate periodPredicate(const QString &key, const QDateTime &fromDate, const QDateTime &toDate) {
    auto parsed = Predicate::parse(QStringLiteral("SELF.%1 BETWEEN {%@, %@}").arg(key),
                                   {QVariant(fromDate), QVariant(toDate)});
    return parsed.ok() ? parsed.value() : Predicate::falsePredicate();
}
} // namespace

QList<TAInvoice *> TAClient::invoicesFromDate(const QDateTime &fromDate,
                                              const QDateTime &toDate) const {
    return periodPredicate(TAKey::date, fromDate, toDate).filtered(allInvoices());
}

Decimal TAClient::invoicedFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfInvoices(invoicesFromDate(fromDate, toDate), currencyCodeForSums(), invoiceTotal);
}

Decimal TAClient::uninvoicedFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfUninvoicedItems(
        periodPredicate(TAKey::dueDate, fromDate, toDate).filtered(projectsRelationships()));
}

Decimal TAClient::balanceFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfInvoices(invoicesFromDate(fromDate, toDate), currencyCodeForSums(), invoiceBalance);
}

Decimal TAClient::paidFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfInvoices(invoicesFromDate(fromDate, toDate), currencyCodeForSums(), invoicePaid);
}

Decimal TAClient::unpaidFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfInvoices(invoicesFromDate(fromDate, toDate), currencyCodeForSums(), invoiceUnpaid);
}

Decimal TAClient::overdueFromDate(const QDateTime &fromDate, const QDateTime &toDate) const {
    return sumOfInvoices(invoicesFromDate(fromDate, toDate), currencyCodeForSums(), invoiceOverdue);
}

// --- Keys ---------------------------------------------------------------------------------

QVariant TAClient::computedValueForKey(const QString &key) const {
    using Reader = QVariant (*)(const TAClient *);
    static const QHash<QString, Reader> readers{
        {QStringLiteral("displayName"),
         [](const TAClient *c) { return QVariant(c->displayName()); }},
        {QStringLiteral("shortDisplayName"),
         [](const TAClient *c) { return QVariant(c->shortDisplayName()); }},
        {QStringLiteral("secondaryName"),
         [](const TAClient *c) { return QVariant(c->secondaryName()); }},
        {QStringLiteral("photoType"), [](const TAClient *c) { return QVariant(c->photoType()); }},
        {QStringLiteral("isLinkedWithInvoice"),
         [](const TAClient *c) { return QVariant(c->isLinkedWithInvoice()); }},
        {QStringLiteral("currencyRelationship"),
         [](const TAClient *c) {
             return QVariant::fromValue<ManagedObject *>(c->currencyRelationship());
         }},
        {QStringLiteral("invoiced"), [](const TAClient *c) { return c->invoiced().toVariant(); }},
        {QStringLiteral("uninvoiced"),
         [](const TAClient *c) { return c->uninvoiced().toVariant(); }},
        {QStringLiteral("balance"), [](const TAClient *c) { return c->balance().toVariant(); }},
        {QStringLiteral("paid"), [](const TAClient *c) { return c->paid().toVariant(); }},
        {QStringLiteral("unpaid"), [](const TAClient *c) { return c->unpaid().toVariant(); }},
        {QStringLiteral("overdue"), [](const TAClient *c) { return c->overdue().toVariant(); }},
    };
    if (Reader reader = readers.value(key))
        return reader(this);
    return TAObject::computedValueForKey(key);
}
