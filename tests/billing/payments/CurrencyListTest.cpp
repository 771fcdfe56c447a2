#include "PaymentsFixture.h"

#include "billing/currencies/TACurrencyList.h"
#include "billing/currencies/TAKnownCurrencies.h"
#include "billing/currencies/TATaxList.h"
#include "store/entities/TATax.h"

#include <QSet>

TEST(KnownCurrencies, TheListIsParsedSortedByTitleAndCompiledIn) {
    const auto parsed = TAKnownCurrencies::parse(
        QStringLiteral("ZAR|South African Rand\nbroken line\nAED|united arab emirates dirham\n\n"
                       "EUR|Euro\n"));
    ASSERT_EQ(parsed.size(), 3);
    EXPECT_EQ(parsed.at(0).code, QStringLiteral("EUR"));
    EXPECT_EQ(parsed.at(1).code, QStringLiteral("ZAR"));
    EXPECT_EQ(parsed.at(2).code, QStringLiteral("AED"));
    EXPECT_GT(TAKnownCurrencies::all().size(), 100);
    EXPECT_EQ(TAKnownCurrencies::codeForTitle(QStringLiteral("Euro")), QStringLiteral("EUR"));
}

TEST(KnownCurrencies, TheCompiledInListHoldsTodaysCodesOnceEachAndNoWithdrawnOnes) {
    QSet<QString> codes;
    QSet<QString> titles;
    for (const TAKnownCurrencies::Entry &entry : TAKnownCurrencies::all()) {
        EXPECT_EQ(entry.code.size(), 3) << entry.code.toStdString();
        EXPECT_EQ(entry.code, entry.code.toUpper()) << entry.code.toStdString();
        EXPECT_FALSE(entry.title.trimmed().isEmpty()) << entry.code.toStdString();
        EXPECT_FALSE(codes.contains(entry.code)) << "twice: " << entry.code.toStdString();
        // A title picks the code, so two entries may not share one.
        EXPECT_FALSE(titles.contains(entry.title.toLower())) << entry.title.toStdString();
        codes.insert(entry.code);
        titles.insert(entry.title.toLower());
    }
    for (const char *current : {"EUR", "USD", "VED", "VES", "SLE", "ZWG", "XCG", "XDR", "CLF",
                                "CHE", "UYW", "XAU", "XSU", "XUA"})
        EXPECT_TRUE(codes.contains(QString::fromLatin1(current))) << current;
    for (const char *withdrawn : {"HRK", "VEF", "CUC", "SLL", "ZWL", "ANG", "MRO", "STD"})
        EXPECT_FALSE(codes.contains(QString::fromLatin1(withdrawn))) << withdrawn;
    EXPECT_EQ(TAKnownCurrencies::codeForTitle(QStringLiteral("Special Drawing Rights")),
              QStringLiteral("XDR"));
}

TEST_F(PaymentsFixture, CurrencyCommandsRefuseWhatTheyMustAndTellTheDocument) {
    QList<TADocumentHooks *> posted;
    TACurrencyList list(&db, [&](const QString &name, TADocumentHooks *object) {
        EXPECT_EQ(name, QStringLiteral("CurrenciesChangedNotification"));
        posted.append(object);
    });
    EXPECT_EQ(list.addCurrency(QStringLiteral("Yen"), QString()).kind,
              TACommandOutcome::Kind::Beep);
    const TACommandOutcome twice =
        list.addCurrency(QStringLiteral("Dollar"), QStringLiteral("USD"));
    EXPECT_EQ(twice.message, QStringLiteral("Currency with this code already exists"));
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_TRUE(list.addCurrency(QStringLiteral("Japanese Yen"), QStringLiteral("JPY")).isDone());
    EXPECT_NE(TAContextDatabase::getCurrencyWithCode(QStringLiteral("JPY"), db.context()), nullptr);

    client(usd);
    const TACommandOutcome used = list.removeCurrency(usd);
    EXPECT_EQ(used.message,
              QStringLiteral("Cannot remove currency that is used by some transactions"));
    EXPECT_NE(TAContextDatabase::getCurrencyWithCode(QStringLiteral("USD"), db.context()), nullptr);

    EXPECT_TRUE(list.changeDefaultCurrency(bhd).isDone());
    EXPECT_FALSE(eur->isDefault());
    EXPECT_TRUE(bhd->isDefault());
    EXPECT_TRUE(bhd->automaticallyDownload());
    setRate(bhd, eur, "2.5");
    EXPECT_EQ(list.inColumn(eur), dec("2.5"));
    EXPECT_EQ(list.oneColumn(bhd), dec("1"));

    // Payments do not hold a currency back, and neither does being the default.
    EXPECT_TRUE(list.removeCurrency(bhd).isDone());
    context->processPendingChanges();
    EXPECT_EQ(TAContextDatabase::getCurrencyWithCode(QStringLiteral("BHD"), db.context()), nullptr);
    EXPECT_EQ(posted.size(), 3);
    EXPECT_EQ(posted.first(), &document);
}

TEST_F(PaymentsFixture, TaxesAreTypedAsPercentagesAndStoredAsFractions) {
    int notices = 0;
    TATaxList taxes(&db, [&](const QString &name, TADocumentHooks *) {
        EXPECT_EQ(name, QStringLiteral("TaxesChangedNotification"));
        ++notices;
    });
    TATax *vat = taxes.addTax(QStringLiteral("VAT"), QStringLiteral("19.5 %"));
    EXPECT_EQ(vat->value(), dec("0.195"));
    taxes.setTaxPercent(vat, QStringLiteral("7"));
    EXPECT_EQ(vat->value(), dec("0.07"));
    EXPECT_EQ(notices, 2);
}
