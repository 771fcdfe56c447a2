#include "objectstore/UndoManager.h"

#include <gtest/gtest.h>

namespace {

// The Edit menu refreshes only on stacksChanged, so every change of what canUndo, canRedo or
// the names answer must come with one, and an edit inside a group with none.
TEST(UndoStackSignal, EveryChangeTheMenuShowsIsAnnounced) {
    UndoManager undo;
    int announcements = 0;
    QObject::connect(&undo, &UndoManager::stacksChanged, [&] { ++announcements; });
    int value = 0;
    std::function<void(int)> set = [&](int v) {
        const int old = value;
        value = v;
        undo.registerUndo([&, old] { set(old); });
    };
    auto announced = [&](const std::function<void()> &step) {
        const int before = announcements;
        step();
        return announcements - before;
    };

    EXPECT_EQ(announced([&] {
                  set(1);
                  EXPECT_TRUE(undo.canUndo());
              }),
              1)
        << "a loose change is undoable at once";
    EXPECT_EQ(announced([&] { set(2); }), 0) << "later changes of the same loose group";
    EXPECT_EQ(announced([&] { undo.closeAutomaticGroup(); }), 1);
    EXPECT_EQ(announced([&] { undo.setActionName(QStringLiteral("Typing")); }), 1)
        << "renaming the last step";
    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Typing"));
    EXPECT_EQ(announced([&] { undo.setActionName(QStringLiteral("Typing")); }), 0);

    EXPECT_EQ(announced([&] {
                  undo.beginUndoGrouping();
                  undo.setActionName(QStringLiteral("Named"));
                  set(3);
              }),
              0)
        << "nothing is undoable until the group closes";
    EXPECT_FALSE(undo.canUndo() && undo.undoActionName() == QStringLiteral("Named"));
    EXPECT_GE(announced([&] { undo.endUndoGrouping(); }), 1);
    EXPECT_GE(announced([&] { undo.undo(); }), 1);
    EXPECT_TRUE(undo.canRedo());
    EXPECT_GE(announced([&] { undo.redo(); }), 1);
    EXPECT_GE(announced([&] { undo.removeAllActions(); }), 1);
    EXPECT_FALSE(undo.canUndo());
    EXPECT_FALSE(undo.canRedo());
}

} // namespace
