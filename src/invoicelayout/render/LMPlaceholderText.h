#pragma once

#include "layoutvalues/LMAttributedString.h"

#include <QString>
#include <QStringList>

class TAInvoice;
class TAPreferences;

// Bracket tags in element text, replaced by values of the invoice, its client and the
// document's preferences. Each tag is replaced at its first occurrence only, in the fixed order
// of tags(), and the value takes the attributes of the tag's first character.
class LMPlaceholderText {
public:
    LMPlaceholderText(TAInvoice *invoice, TAPreferences *preferences);

    // The fixed tags in the order they are worked through, then one "[CUSTOM NAME]" per custom
    // field with a name. "[YOUR WEBSITE]" is among them and always blanked.
    QStringList tags() const;
    // The value of one whole tag, compared exactly; empty when there is none.
    QString getReplacementForPlaceholder(const QString &placeholder) const;
    LMAttributedString getInvoiceAttributedStringFrom(const LMAttributedString &text) const;

    // The first "1" becomes the page number, then the last "2" the number of pages.
    static LMAttributedString getPageNumberAttributedStringFrom(const LMAttributedString &text,
                                                                qint64 page, qint64 pageCount);

private:
    QString clientValue(int row) const;
    QString invoiceValue(int row) const;
    QString preferencesValue(int row) const;

    TAInvoice *m_invoice;
    TAPreferences *m_preferences;
};
