#include "DataFixture.h"

#include "store/entities/TAClient.h"

namespace {
class UndoControlTest : public DataFixture {
protected:
    void SetUp() override {
        DataFixture::SetUp();
        client = TAContextDatabase::createClientInContext(db().context());
        ASSERT_TRUE(ctx()->save().ok());
        doc->undo()->removeAllActions();
    }
    void edit(const char *name) { client->setFullNameValue(QString::fromLatin1(name)); }

    // What the context and its undo manager announce, in order.
    void recordEvents() {
        QObject::connect(ctx(), &ManagedObjectContext::objectsDidChange, ctx(),
                         [this] { events.append("changes"); });
        QObject::connect(doc->undo(), &UndoManager::didOpenUndoGroup, ctx(),
                         [this] { events.append("open"); });
        QObject::connect(doc->undo(), &UndoManager::didCloseUndoGroup, ctx(),
                         [this] { events.append("close"); });
    }

    TAClient *client = nullptr;
    QStringList events;
};
} // namespace

TEST_F(UndoControlTest, OutermostNameWinsInDatabaseLastNameWinsInClassForm) {
    db().beginUndoGroupingWithName("Outer");
    db().beginUndoGroupingWithName("Inner");
    edit("a");
    db().endUndoGrouping();
    db().endUndoGrouping();
    EXPECT_EQ(doc->undo()->undoActionName(), "Outer");

    db().beginUndoGroupingWithName(QString());
    db().beginUndoGroupingWithName("Inner");
    edit("b");
    db().endUndoGrouping();
    db().endUndoGrouping();
    EXPECT_EQ(doc->undo()->undoActionName(), "Inner");

    TAContextDatabase::beginUndoGroupingWithName("Outer", ctx());
    TAContextDatabase::beginUndoGroupingWithName("Inner", ctx());
    TAContextDatabase::beginUndoGroupingWithName(QString(), ctx());
    edit("c");
    for (int i = 0; i < 3; ++i)
        TAContextDatabase::endUndoGroupingInContext(ctx());
    EXPECT_EQ(doc->undo()->undoActionName(), "Inner");
    EXPECT_EQ(doc->undo()->undoCount(), 3);
}

TEST_F(UndoControlTest, DatabaseFlushesBeforeClosingClassFormAfter) {
    recordEvents();
    db().beginUndoGroupingWithName("Edit");
    edit("a");
    db().endUndoGrouping();
    EXPECT_EQ(events, QStringList({"open", "changes", "close"}));

    events.clear();
    TAContextDatabase::beginUndoGroupingWithName("Edit", ctx());
    edit("b");
    TAContextDatabase::endUndoGroupingInContext(ctx());
    EXPECT_EQ(events, QStringList({"open", "close", "changes"}));
}

TEST_F(UndoControlTest, OpeningAGroupFlushesAnEarlierLooseChangeIntoItsOwnStep) {
    edit("loose");
    db().beginUndoGroupingWithName("Named");
    edit("named");
    db().endUndoGrouping();
    EXPECT_EQ(doc->undo()->undoCount(), 2);
    doc->undo()->undo();
    EXPECT_EQ(client->fullNameValue(), "loose");
}

TEST_F(UndoControlTest, RegistrationNestsAndEnablingMarksTheDocument) {
    db().disableUndoRegistration();
    TAContextDatabase::disableUndoRegistrationInContext(ctx());
    edit("a");
    db().enableUndoRegistration();
    edit("b");
    EXPECT_FALSE(doc->undo()->canUndo());
    EXPECT_EQ(doc->hooks.changeCounts, 1);
    TAContextDatabase::enableUndoRegistrationInContext(ctx());
    EXPECT_EQ(doc->hooks.changeCounts, 2); // found through the context
    edit("c");
    ctx()->processPendingChanges();
    EXPECT_TRUE(doc->undo()->canUndo());

    // A context of no document just skips the marking.
    auto other = openSecondDocument();
    other->database.setContext(nullptr);
    TAContextDatabase::disableUndoRegistrationInContext(other->context.get());
    TAContextDatabase::enableUndoRegistrationInContext(other->context.get());
    EXPECT_EQ(other->hooks.changeCounts, 0);
    EXPECT_EQ(TADatabase::databaseForContext(other->context.get()), nullptr);
    EXPECT_EQ(TADatabase::databaseForContext(ctx()), &db());
}
