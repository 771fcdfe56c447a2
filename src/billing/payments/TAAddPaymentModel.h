#pragma once

#include "foundation/money/Decimal.h"

#include <QDateTime>
#include <QString>

class TACurrency;
class TADatabase;
class TAInvoice;
class TAPayment;

// What the add-payment pop-up shows and does, without the window: the amount offered, the
// conversion row and its labels, and the saving of the payment with its history. The window
// binds its fields to this and calls the handlers as the user acts.
class TAAddPaymentModel {
public:
    enum class Field { None, Amount, Rate };
    static constexpr int kHeight = 170;
    static constexpr int kHeightWithConversion = 200;

    explicit TAAddPaymentModel(TADatabase *database);

    // Resets the pop-up for the invoice: now, the invoice's currency, the sum due.
    void showForView(TAInvoice *invoice);
    // The conversion row's value and labels for the selected currency.
    void updateValuesFromSelectedCurrency();
    // The user picked another currency in the amount field's button.
    void currencyChanged(TACurrency *selected);
    // The user typed a rate.
    void convertChanged(const QString &rateText);
    // The user typed an amount: from now on it is left alone.
    void amountChanged(const QString &amountText);
    // Saves when the amount is above 0; otherwise focus goes back to the amount and false is
    // answered (the window beeps and stays).
    bool doneClick();
    // Adds the payment as the fields say, in one undo group, with its history and status.
    TAPayment *saveToInvoice();

    TAInvoice *invoice() const { return m_invoice; }
    TACurrency *selectedCurrency() const { return m_selected; }
    QDateTime date() const { return m_date; }
    void setDate(const QDateTime &date) { m_date = date; }
    QString amountText() const { return m_amountText; }
    QString convertText() const { return m_convertText; }
    QString convertFromLabel() const { return m_convertFromLabel; }
    QString convertToLabel() const { return m_convertToLabel; }
    bool amountEdited() const { return m_amountEdited; }
    bool conversionShown() const { return m_conversionShown; }
    bool conversionEditable() const { return m_conversionEditable; }
    int windowHeight() const { return m_conversionShown ? kHeightWithConversion : kHeight; }
    Field focusedField() const { return m_focus; }
    void setFocusedField(Field field) { m_focus = field; }
    // Set by saving when the invoice's overdue state changed: the sidebar's badges need a
    // refresh.
    bool overdueChanged() const { return m_overdueChanged; }

private:
    TACurrency *invoiceCurrency() const;
    Decimal sumDue() const;
    // The due sum in the selected currency at the given rate, inverted at the scale of
    // `roundingCode`, then raised to what a payment in the selected currency can be.
    QString offeredAmount(const Decimal &rate, const QString &roundingCode) const;
    void addPaymentHistory(TAPayment *payment, bool becamePaid);

    TADatabase *m_database = nullptr;
    TAInvoice *m_invoice = nullptr;
    TACurrency *m_selected = nullptr;
    QDateTime m_date;
    QString m_amountText;
    QString m_convertText = QStringLiteral("1");
    QString m_convertFromLabel;
    QString m_convertToLabel;
    bool m_amountEdited = false;
    bool m_conversionShown = false;
    bool m_conversionEditable = false;
    bool m_overdueChanged = false;
    Field m_focus = Field::Amount;
};
