#include "billing/payments/TAAddPaymentModel.h"

#include "foundation/dates/OTClock.h"
#include "foundation/money/OTConvert.h"
#include "foundation/money/OTNumberText.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPayment.h"

#include <QCoreApplication>

TAAddPaymentModel::TAAddPaymentModel(TADatabase *database)
    : m_database(database) {}

TACurrency *TAAddPaymentModel::invoiceCurrency() const {
    return m_invoice ? m_invoice->currency() : nullptr;
}

Decimal TAAddPaymentModel::sumDue() const {
    if (!m_invoice)
        return Decimal();
    return m_invoice->isOverdue() ? m_invoice->overdue() : m_invoice->unpaid();
}

void TAAddPaymentModel::showForView(TAInvoice *invoice) {
    m_invoice = invoice;
    m_amountEdited = false;
    m_overdueChanged = false;
    m_date = OTClock::now();
    m_selected = invoiceCurrency();
    m_conversionShown = false;
    m_conversionEditable = false;
    m_focus = Field::Amount;
    m_amountText = OTNumberText::currencyFormatter(sumDue());
    updateValuesFromSelectedCurrency();
}

void TAAddPaymentModel::updateValuesFromSelectedCurrency() {
    TACurrency *target = invoiceCurrency();
    TACurrencyRate *rate =
        TAContextDatabase::getCurrencyRateFromCurrency(m_selected, target, m_database->context());
    m_convertText =
        rate ? OTNumberText::decimalFormatter(rate->oneFromInTo()) : QStringLiteral("1");
    m_convertFromLabel = QStringLiteral("1 %1 =").arg(m_selected ? m_selected->code() : QString());
    m_convertToLabel = target ? target->code() : QString();
}

QString TAAddPaymentModel::offeredAmount(const Decimal &rate, const QString &roundingCode) const {
    const TADecimalNumberBehavior behavior =
        TADecimalNumberBehavior::behaviorWithCurrencyCode(roundingCode);
    const Decimal inverse = DecimalMath::divide(Decimal(1), rate, behavior);
    const Decimal amount = DecimalMath::multiply(sumDue(), inverse, behavior);
    const QString selectedCode = m_selected ? m_selected->code() : QString();
    return OTNumberText::decimalFormatter(
        OTNumberText::decimalNumberCeiledByCurrency(amount, selectedCode));
}

void TAAddPaymentModel::currencyChanged(TACurrency *selected) {
    m_selected = selected;
    TACurrency *target = invoiceCurrency();
    if (!m_amountEdited) {
        TACurrencyRate *rate = TAContextDatabase::getCurrencyRateFromCurrency(
            m_selected, target, m_database->context());
        m_amountText = rate
                           ? offeredAmount(rate->oneFromInTo(), target ? target->code() : QString())
                           : OTNumberText::currencyFormatter(sumDue());
    }
    const bool differs = m_selected != target;
    if (differs && !m_conversionShown) {
        updateValuesFromSelectedCurrency();
        m_conversionShown = true;
        m_conversionEditable = true;
    } else if (differs || !m_conversionShown) {
        updateValuesFromSelectedCurrency();
    } else {
        if (m_focus == Field::Rate)
            m_focus = Field::Amount;
        // The hidden row still feeds the saved rate: it must read "1" again, not the rate of
        // the currency picked before.
        updateValuesFromSelectedCurrency();
        m_conversionShown = false;
        m_conversionEditable = false;
    }
}

void TAAddPaymentModel::convertChanged(const QString &rateText) {
    m_convertText = rateText;
    if (m_amountEdited)
        return;
    const Decimal rate = OTNumberText::decimalFromString(rateText);
    if (rate.isNaN() || rate <= Decimal(0))
        return;
    m_amountText = offeredAmount(rate, m_selected ? m_selected->code() : QString());
}

void TAAddPaymentModel::amountChanged(const QString &amountText) {
    m_amountText = amountText;
    m_amountEdited = true;
}

bool TAAddPaymentModel::doneClick() {
    if (!m_invoice || OTConvert::decimalNumberFromString(m_amountText) <= Decimal(0)) {
        m_focus = Field::Amount;
        return false;
    }
    return saveToInvoice() != nullptr;
}

TAPayment *TAAddPaymentModel::saveToInvoice() {
    if (!m_invoice)
        return nullptr;
    const bool wasOverdue = m_invoice->isOverdue();
    const bool wasPaid = m_invoice->isPaid();
    m_database->beginUndoGroupingWithName(
        QCoreApplication::translate("TAAddPaymentModel", "Add payment"));
    TAPayment *payment = TAContextDatabase::createPaymentInContext(m_database->context());
    if (payment) {
        payment->setDate(m_date);
        payment->setAmount(OTConvert::decimalNumberFromString(m_amountText));
        payment->setCurrencyCode(m_selected ? m_selected->code() : QString());
        payment->setRate(OTConvert::decimalNumberFromString(m_convertText));
        payment->setInvoiceRelationship(m_invoice);
        addPaymentHistory(payment, m_invoice->isPaid() && !wasPaid);
        if (m_invoice->isPaid() && m_invoice->status() != TACodes::InvoicePaid)
            m_invoice->setStatus(TACodes::InvoicePaid);
    }
    m_database->endUndoGrouping();
    m_overdueChanged = wasOverdue != m_invoice->isOverdue();
    if (m_overdueChanged && m_database->document())
        m_database->document()->refreshGroups();
    return payment;
}

void TAAddPaymentModel::addPaymentHistory(TAPayment *payment, bool becamePaid) {
    TAHistory::addInvoicePaymentReceivedRecord(m_invoice, payment);
    if (becamePaid)
        TAHistory::addInvoicePaidRecord(m_invoice);
}
