#include "store/entities/TAInvoice.h"

#include "store/entities/EntityValues.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACodes.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"

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
    EntityValues::setDecimal(this, TAKey::discount, value);
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

bool TAInvoice::isOverdue() const {
    return false;
}

bool TAInvoice::isPaid() const {
    return false;
}

QStringList TAInvoice::relationshipsToCopy() const {
    return {TAKey::items};
}

QStringList TAInvoice::relationshipsToLink() const {
    return {TAKey::account, TAKey::client, TAKey::project, TAKey::template_};
}
