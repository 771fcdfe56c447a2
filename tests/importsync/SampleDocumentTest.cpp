#include "importsync/sample/SampleDocument.h"
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "foundation/dates/ScopedFixedClock.h"
#include "objectstore/FetchRequest.h"
#include "objectstore/ManagedObjectContext.h"
#include "resources/tools/SampleResourceBuilder.h"
#include "store/TADatabase.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TACodes.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAPayment.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <gtest/gtest.h>

namespace {

// A new, empty document, opened as the program opens one.
struct Document {
    TADocument *document = *TADocumentController::sharedDocumentController().openUntitledDocument();
    ManagedObjectContext &context = *document->managedObjectContext();
    TADatabase &database = document->database();
    ~Document() { TADocumentController::sharedDocumentController().closeDocument(document); }

    QList<TAInvoice *> invoices() {
        FetchRequest request(QStringLiteral("Invoice"));
        request.includesSubentities = false;
        QList<TAInvoice *> found;
        auto fetched = context.executeFetchRequest(request);
        for (ManagedObject *object : *fetched)
            found << static_cast<TAInvoice *>(object);
        return found;
    }
};

TAInvoice *numbered(const QList<TAInvoice *> &invoices, const QString &number) {
    for (TAInvoice *invoice : invoices)
        if (invoice->identification() == number)
            return invoice;
    return nullptr;
}

} // namespace

TEST(SampleDocumentTest, CopyHoldsAWholeBusinessWithDatesMovedToTheDayOfOpening) {
    const QDate anchor = *SampleDocument::anchor();
    const QDateTime opened(anchor.addDays(100), QTime(15, 0), Qt::UTC);
    ScopedFixedClock clock(opened);
    Document document;
    ASSERT_TRUE(SampleDocument::copyInto(*document.document, opened));
    ASSERT_TRUE(document.context.save());

    const QList<TAInvoice *> invoices = document.invoices();
    QSet<int> states;
    QSet<QString> designs;
    for (TAInvoice *invoice : invoices) {
        states << invoice->statusValue();
        ASSERT_NE(invoice->invoiceTemplate(), nullptr) << invoice->identification().toStdString();
        designs << invoice->invoiceTemplate()->name();
    }
    EXPECT_EQ(states,
              (QSet<int>{TACodes::InvoiceDraft, TACodes::InvoiceSent, TACodes::InvoicePaid}));
    EXPECT_EQ(designs.size(), 5) << "each invoice shows another built-in design";
    EXPECT_EQ(TAContextDatabase::getTemplatesInContext(document.database.context()).size(), 5);

    // The overdue one stays overdue and the draft stays a day old, whenever it is opened.
    TAInvoice *overdue = numbered(invoices, QStringLiteral("2001"));
    TAInvoice *draft = numbered(invoices, QStringLiteral("2005"));
    ASSERT_TRUE(overdue && draft);
    EXPECT_TRUE(overdue->isOverdue());
    EXPECT_EQ(draft->date().date(), opened.date().addDays(-1));

    // Paid in full in another currency than the invoice's.
    TAInvoice *euros = numbered(invoices, QStringLiteral("2002"));
    ASSERT_NE(euros, nullptr);
    EXPECT_TRUE(euros->isPaid());
    ASSERT_EQ(euros->payments().size(), 1);
    EXPECT_NE(static_cast<TAPayment *>(euros->payments().first())->currencyCode(),
              euros->currency()->code());

    // Designs keep their own dates: the built-in order depends on them.
    for (LMInvoiceTemplateClass *design :
         TAContextDatabase::getTemplatesInContext(document.database.context()))
        EXPECT_EQ(design->creationDate().date().year(), 2026);
}

TEST(SampleDocumentTest, SourceFaultsAreNamedAndDesignNamesResolve) {
    SampleResourceBuilder builder;
    EXPECT_FALSE(builder.read("{"));
    EXPECT_FALSE(builder.read(R"({"format":"billfold-json","formatVersion":1,"objects":{}})"));
    EXPECT_FALSE(builder.read(
        R"({"format":"billfold-sample","formatVersion":1,"datesRelativeTo":"soon","objects":{}})"));
    const auto ownDesign = builder.read(
        R"({"format":"billfold-sample","formatVersion":1,"datesRelativeTo":"2026-11-01",
            "objects":{"InvoiceTemplate/1":{}}})");
    ASSERT_FALSE(ownDesign);
    EXPECT_TRUE(ownDesign.error().message.contains(QLatin1String("InvoiceTemplate/1")));

    ASSERT_TRUE(builder.read(
        R"({"format":"billfold-sample","formatVersion":1,"datesRelativeTo":"2026-11-01",
            "objects":{"Invoice/1":{"template":"InvoiceTemplate/Sky"}}})"));
    EXPECT_EQ(builder.anchor(), QDate(2026, 11, 1));
    QJsonObject designs;
    designs.insert(QStringLiteral("InvoiceTemplate/7"),
                   QJsonObject{{QStringLiteral("name"), QStringLiteral("Sky")}});
    auto text = builder.interchange(designs);
    ASSERT_TRUE(text);
    const QJsonObject objects =
        QJsonDocument::fromJson(*text).object().value(QLatin1String("objects")).toObject();
    EXPECT_EQ(objects.value(QLatin1String("Invoice/1")).toObject().value(QLatin1String("template")),
              QStringLiteral("InvoiceTemplate/7"));
    const auto unknown = builder.interchange(QJsonObject{});
    ASSERT_FALSE(unknown);
    EXPECT_TRUE(unknown.error().message.contains(QLatin1String("\"InvoiceTemplate/Sky\"")));
}
