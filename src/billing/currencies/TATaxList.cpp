#include "billing/currencies/TATaxList.h"

#include "foundation/Check.h"
#include "foundation/money/DecimalConstants.h"
#include "foundation/money/OTConvert.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/entities/TATax.h"

const QString TATaxList::kTaxesChangedNotification = QStringLiteral("TaxesChangedNotification");

namespace {
Decimal fractionFromPercentText(const QString &text) {
    const Decimal percent =
        OTConvert::decimalNumberFromString(OTConvert::decimalStringFromString(text));
    return percent / DecimalConstants::hundred();
}
} // namespace

TATaxList::TATaxList(TADatabase *database, Poster poster)
    : m_database(database)
    , m_poster(std::move(poster)) {}

void TATaxList::post() {
    if (m_poster)
        m_poster(kTaxesChangedNotification, m_database->document());
}

TATax *TATaxList::addTax(const QString &name, const QString &percentText) {
    TATax *tax = TAContextDatabase::createTaxInContext(m_database->context());
    BF_CHECK(tax, return nullptr);
    tax->setName(name);
    tax->setValue(fractionFromPercentText(percentText));
    post();
    return tax;
}

// The table edits and removes only taxes it shows.
void TATaxList::setTaxName(TATax *tax, const QString &name) {
    BF_CHECK(tax, return);
    tax->setName(name);
    post();
}

void TATaxList::setTaxPercent(TATax *tax, const QString &percentText) {
    BF_CHECK(tax, return);
    tax->setValue(fractionFromPercentText(percentText));
    post();
}

void TATaxList::removeTax(TATax *tax) {
    BF_CHECK(tax, return);
    TAContextDatabase::deleteObject(tax, m_database->context());
    post();
}
