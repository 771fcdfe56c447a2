#include "StoreFixture.h"

#include "store/TADocumentRegistry.h"
#include "store/TAGlobal.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

#include <QObject>

#include <optional>

namespace {
// Stands in for the document controller: one fake document owning one context, one window
// with a child window, and one view inside the child.
class FakeRegistry : public TADocumentRegistry {
public:
    TADocument *document = reinterpret_cast<TADocument *>(0x1000);
    ManagedObjectContext *context = nullptr;
    QObject window, child, view;

    TADocument *currentDocument() const override { return document; }
    TADocument *documentForRootContext(const ManagedObjectContext *c) const override {
        return c == context ? document : nullptr;
    }
    TADocument *documentOfWindow(const QObject *w) const override {
        return w == &window ? document : nullptr;
    }
    const QObject *parentWindow(const QObject *w) const override {
        return w == &child ? &window : nullptr;
    }
    const QObject *windowOfView(const QObject *v) const override {
        return v == &view ? &child : nullptr;
    }
    int documentsCount() const override { return 1; }
    ManagedObjectContext *contextOfDocument(const TADocument *d) const override {
        return d == document ? context : nullptr;
    }
};
} // namespace

using TAGlobalTest = StoreFixture;

TEST_F(TAGlobalTest, ObjectsTravelAsUrisAndComeBack) {
    auto *client = insert<TAClient>(TAEntity::Client);
    auto *invoice = insert<TAInvoice>(TAEntity::Invoice);
    context()->obtainPermanentIDs({client, invoice});

    const QUrl url = TAGlobal::encodeObject(client);
    EXPECT_FALSE(url.isEmpty());
    EXPECT_EQ(TAGlobal::encodeObject(static_cast<const ManagedObject *>(nullptr)), QUrl());
    EXPECT_EQ(TAGlobal::encodeObject(QVariant(QStringLiteral("text"))), QUrl());

    const QVariantList mixed{QVariant::fromValue<ManagedObject *>(client),
                             QStringLiteral("not an object"),
                             QVariant::fromValue<ManagedObject *>(invoice)};
    const QList<QUrl> urls = TAGlobal::encodeObjects(mixed);
    EXPECT_EQ(urls.size(), 2);
    EXPECT_TRUE(TAGlobal::encodeObjects(QVariant(42)).isEmpty());
    EXPECT_TRUE(TAGlobal::encodeObjects(QVariant()).isEmpty());

    const QString invoiceText = urls[1].toString();
    saveAndReopen();
    ManagedObject *reopened = TAGlobal::decodeObjectForDocument(context(), QVariant(urls[1]));
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(TAGlobal::encodeObject(reopened), urls[1]) << invoiceText.toStdString();
    EXPECT_NE(dynamic_cast<TAInvoice *>(reopened), nullptr);

    // Text is no URL; an unknown object and a null context give null.
    EXPECT_EQ(TAGlobal::decodeObjectForDocument(context(), QVariant(invoiceText)), nullptr);
    QUrl unknown(invoiceText);
    unknown.setPath(QStringLiteral("/Invoice/p999"));
    EXPECT_EQ(TAGlobal::decodeObjectForDocument(context(), QVariant(unknown)), nullptr);
    EXPECT_EQ(TAGlobal::decodeObjectForDocument(static_cast<ManagedObjectContext *>(nullptr),
                                                QVariant(urls[0])),
              nullptr);

    const QVariantList list{QVariant(urls[0]), QVariant(invoiceText), QVariant(unknown),
                            QVariant(urls[1])};
    EXPECT_EQ(TAGlobal::decodeObjectsForDocument(context(), list).size(), 2);
    EXPECT_EQ(TAGlobal::decodeObjectsForDocument(context(), QVariant::fromValue(urls)).size(), 2);
    EXPECT_TRUE(TAGlobal::decodeObjectsForDocument(context(), QVariant(urls[0])).isEmpty());
}

TEST_F(TAGlobalTest, DocumentLookupsGoThroughTheRegistry) {
    EXPECT_EQ(TAGlobal::currentDocument(), nullptr);
    EXPECT_EQ(TAGlobal::documentByContext(context()), nullptr);
    EXPECT_EQ(TAGlobal::documentsCount(), 0);

    FakeRegistry registry;
    registry.context = context();
    auto registered = std::make_optional<TAGlobal::ScopedDocumentRegistry>(&registry);
    EXPECT_EQ(TAGlobal::documentByContext(context()), registry.document);
    EXPECT_EQ(TAGlobal::documentByContext(nullptr), nullptr);
    EXPECT_EQ(TAGlobal::documentForView(&registry.view), registry.document);
    EXPECT_EQ(TAGlobal::documentForWindow(&registry.child), registry.document);
    EXPECT_EQ(TAGlobal::documentForView(nullptr), nullptr);
    EXPECT_EQ(TAGlobal::documentsCount(), 1);

    auto *client = insert<TAClient>(TAEntity::Client);
    const QUrl url = TAGlobal::encodeObject(client);
    EXPECT_EQ(TAGlobal::decodeObjectForDocument(registry.document, QVariant(url)), client);
    EXPECT_EQ(TAGlobal::decodeObjectForDocument(static_cast<TADocument *>(nullptr), QVariant(url)),
              nullptr);
    registered.reset();
    EXPECT_EQ(TAGlobal::documentByContext(context()), nullptr);
    EXPECT_EQ(TAGlobal::documentsCount(), 0);

    // The request to mark a document as changed serves the next document only.
    TAGlobal::setMarkAsEdited(true);
    EXPECT_TRUE(TAGlobal::markAsEdited());
    EXPECT_TRUE(TAGlobal::takeMarkAsEdited());
    EXPECT_FALSE(TAGlobal::markAsEdited());
    EXPECT_FALSE(TAGlobal::takeMarkAsEdited());
}
