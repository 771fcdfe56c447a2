#include "invoicelayout/render/LMPlaceholderText.h"

#include "foundation/dates/OTDateStyleFormatter.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPreferences.h"

namespace {

// Rows 1 to 18 of the tag list; the row number picks the value.
const QStringList &fixedTags() {
    static const QStringList tags = {
        QStringLiteral("[FULL NAME]"),       QStringLiteral("[COMPANY]"),
        QStringLiteral("[PHONE]"),           QStringLiteral("[EMAIL]"),
        QStringLiteral("[ADDRESS]"),         QStringLiteral("[COMMENTS]"),
        QStringLiteral("[DUE DATE]"),        QStringLiteral("[DATE]"),
        QStringLiteral("[INVOICE NUMBER]"),  QStringLiteral("[PURCHASE ORDER]"),
        QStringLiteral("[YOUR NAME]"),       QStringLiteral("[YOUR COMPANY]"),
        QStringLiteral("[YOUR COMPANY ID]"), QStringLiteral("[YOUR TAX ID]"),
        QStringLiteral("[YOUR PHONE]"),      QStringLiteral("[YOUR EMAIL]"),
        QStringLiteral("[YOUR ADDRESS]"),    QStringLiteral("[YOUR WEBSITE]")};
    return tags;
}

constexpr int firstInvoiceRow = 5;
constexpr int firstPreferencesRow = 10;
constexpr int websiteRow = 17; // recognised and removed, never filled

const QString customPrefix = QStringLiteral("[CUSTOM ");

// Short date, no time, in the user's locale; a missing date is the empty text.
QString dateText(const QDateTime &date) {
    if (!date.isValid())
        return {};
    return OTDateStyleFormatter::format(date, OTDateStyleFormatter::Short,
                                        OTDateStyleFormatter::None, OTCalendar());
}

} // namespace

LMPlaceholderText::LMPlaceholderText(TAInvoice *invoice, TAPreferences *preferences)
    : m_invoice(invoice)
    , m_preferences(preferences) {}

QStringList LMPlaceholderText::tags() const {
    QStringList list = fixedTags();
    if (!m_preferences)
        return list;
    for (const QVariantMap &entry : m_preferences->infoCustomValues()) {
        const QString column = entry.value(QStringLiteral("column")).toString();
        if (!column.isEmpty())
            list.append(customPrefix + column.toUpper() + u']');
    }
    return list;
}

QString LMPlaceholderText::clientValue(int row) const {
    const TAClient *client = m_invoice ? m_invoice->client() : nullptr;
    if (!client)
        return {};
    switch (row) {
    case 0:
        return client->fullNameValue();
    case 1:
        return client->companyValue();
    case 2:
        return client->phoneValue();
    case 3:
        return client->emailValue();
    default:
        return client->addressValue();
    }
}

QString LMPlaceholderText::invoiceValue(int row) const {
    if (!m_invoice)
        return {};
    switch (row) {
    case 5:
        return m_invoice->notes();
    case 6:
        return dateText(m_invoice->dueDate());
    case 7:
        return dateText(m_invoice->date());
    case 8:
        return m_invoice->identification();
    default:
        return m_invoice->purchaseOrder();
    }
}

QString LMPlaceholderText::preferencesValue(int row) const {
    if (!m_preferences)
        return {};
    switch (row) {
    case 10:
        return m_preferences->fullName();
    case 11:
        return m_preferences->infoCompany();
    case 12:
        return m_preferences->infoCompanyID();
    case 13:
        return m_preferences->infoTaxID();
    case 14:
        return m_preferences->infoPhone();
    case 15:
        return m_preferences->infoEmail();
    default:
        return m_preferences->fullAddress();
    }
}

QString LMPlaceholderText::getReplacementForPlaceholder(const QString &placeholder) const {
    const qsizetype row = fixedTags().indexOf(placeholder);
    if (row >= 0 && row < websiteRow) {
        if (row < firstInvoiceRow)
            return clientValue(int(row));
        if (row < firstPreferencesRow)
            return invoiceValue(int(row));
        return preferencesValue(int(row));
    }
    if (m_preferences && placeholder.size() > 9 && placeholder.startsWith(customPrefix) &&
        placeholder.endsWith(u']')) {
        return m_preferences->infoCustomValueForColumn(placeholder.mid(8, placeholder.size() - 9));
    }
    return {};
}

LMAttributedString
LMPlaceholderText::getInvoiceAttributedStringFrom(const LMAttributedString &text) const {
    LMAttributedString copy = text;
    for (const QString &tag : tags()) {
        const qsizetype at = copy.string().indexOf(tag);
        if (at < 0)
            continue;
        const LMTextAttributes attributes = copy.attributesAtIndex(at);
        copy.replaceCharacters(at, tag.size(), getReplacementForPlaceholder(tag), attributes);
    }
    return copy;
}

LMAttributedString
LMPlaceholderText::getPageNumberAttributedStringFrom(const LMAttributedString &text, qint64 page,
                                                     qint64 pageCount) {
    LMAttributedString copy = text;
    const qsizetype one = copy.string().indexOf(u'1');
    if (one >= 0)
        copy.replaceCharacters(one, 1, QString::number(page), copy.attributesAtIndex(one));
    const qsizetype two = copy.string().lastIndexOf(u'2');
    if (two >= 0)
        copy.replaceCharacters(two, 1, QString::number(pageCount), copy.attributesAtIndex(two));
    return copy;
}
