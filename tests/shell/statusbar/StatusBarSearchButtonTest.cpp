#include "shell/statusbar/TAStatusBarSearchButton.h"

#include <QAction>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// A section's list view that searches: it records what the field held each time it was asked.
struct SearchTarget : QObject {
    struct Search {
        QString phrase;
        int category;
    };
    QList<Search> searches;
    OTAction::Selector doSearch() {
        return [this](QObject *sender) {
            auto *field = qobject_cast<TAStatusBarSearchButton *>(sender);
            searches.append({field->searchPhrase(), field->selectedCategoryIndex()});
        };
    }
};

struct ShownField {
    TAStatusBarSearchButton field;
    ShownField() {
        field.show();
        field.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&field));
        field.setFocus();
    }
};

QWidget *magnifierOf(const TAStatusBarSearchButton &field) {
    for (QObject *object : field.menuAction()->associatedObjects())
        if (auto *widget = qobject_cast<QWidget *>(object); widget && widget != &field)
            return widget;
    return nullptr;
}

} // namespace

TEST(StatusBarSearchButton, TypingSearchesAfterAPauseAndEnterAtOnce) {
    ShownField shown;
    TAStatusBarSearchButton &field = shown.field;
    SearchTarget target;
    field.setTarget(&target, {}, target.doSearch());
    EXPECT_TRUE(field.searchPhrase().isNull());
    EXPECT_EQ(field.selectedCategoryIndex(), -1);

    QTest::keyClicks(&field, QStringLiteral("acme"));
    EXPECT_TRUE(target.searches.isEmpty()) << "no search for every letter";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !target.searches.isEmpty(); }, 2000));
    ASSERT_EQ(target.searches.size(), 1);
    EXPECT_EQ(target.searches.at(0).phrase, QStringLiteral("acme"));
    EXPECT_EQ(target.searches.at(0).category, -1);

    QTest::keyClicks(&field, QStringLiteral(" ltd"));
    QTest::keyClick(&field, Qt::Key_Return);
    ASSERT_EQ(target.searches.size(), 2);
    EXPECT_EQ(target.searches.at(1).phrase, QStringLiteral("acme ltd"));
    QTest::qWait(TAStatusBarSearchButton::kTypingPauseMs * 2);
    EXPECT_EQ(target.searches.size(), 2) << "Enter took the place of the pending search";

    // Erasing the phrase searches for everything again; a reset from code does not search.
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Backspace);
    ASSERT_TRUE(QTest::qWaitFor([&] { return target.searches.size() == 3; }, 2000));
    EXPECT_TRUE(target.searches.at(2).phrase.isNull());
    QTest::keyClicks(&field, QStringLiteral("x"));
    field.resetSearch();
    QTest::qWait(TAStatusBarSearchButton::kTypingPauseMs * 2);
    EXPECT_EQ(target.searches.size(), 3);
    EXPECT_TRUE(field.searchPhrase().isNull());
}

TEST(StatusBarSearchButton, ChoosingACategoryMarksItAndSearches) {
    ShownField shown;
    TAStatusBarSearchButton &field = shown.field;
    SearchTarget target;
    const QStringList categories = {"All", "Client", "Number", "Notes"};
    field.setTarget(&target, categories, target.doSearch());
    ASSERT_NE(field.searchMenu(), nullptr);
    EXPECT_EQ(field.searchMenu()->title(), QStringLiteral("Search Menu"));
    EXPECT_EQ(field.selectedCategoryIndex(), 0);
    QTest::keyClicks(&field, QStringLiteral("42"));
    QTest::keyClick(&field, Qt::Key_Enter);

    QWidget *magnifier = magnifierOf(field);
    ASSERT_NE(magnifier, nullptr);
    QTest::mouseClick(magnifier, Qt::LeftButton);
    QMenu *menu = field.searchMenu();
    ASSERT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }, 2000));
    const QList<QAction *> items = menu->actions();
    ASSERT_EQ(items.size(), categories.size());
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(items.at(2)).center());
    EXPECT_EQ(field.selectedCategoryIndex(), 2);
    for (int index = 0; index < items.size(); ++index)
        EXPECT_EQ(items.at(index)->isChecked(), index == 2) << "one mark only";
    ASSERT_EQ(target.searches.size(), 2);
    EXPECT_EQ(target.searches.at(1).phrase, QStringLiteral("42"));
    EXPECT_EQ(target.searches.at(1).category, 2);

    // A section restoring its state sets a category without a search; a gone one is ignored.
    field.setCategoryIndex(1);
    field.setCategoryIndex(4);
    field.setCategoryIndex(-1);
    EXPECT_EQ(field.selectedCategoryIndex(), 1);
    EXPECT_EQ(target.searches.size(), 2);
}

TEST(StatusBarSearchButton, TheSameTargetAgainChangesNothingAndANewOneTakesOver) {
    TAStatusBarSearchButton field;
    SearchTarget invoices, clients;
    field.setTarget(&invoices, {"All", "Client"}, invoices.doSearch());
    field.setCategoryIndex(1);
    field.setText(QStringLiteral("acme"));
    QMenu *menu = field.searchMenu();

    field.setTarget(&invoices, {"All", "Client"}, invoices.doSearch());
    EXPECT_EQ(field.searchMenu(), menu);
    EXPECT_EQ(field.selectedCategoryIndex(), 1);
    EXPECT_EQ(field.searchActions().count(), 1);

    field.setTarget(&clients, {}, clients.doSearch());
    EXPECT_EQ(field.searchMenu(), nullptr);
    EXPECT_EQ(field.selectedCategoryIndex(), -1);
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_TRUE(invoices.searches.isEmpty());
    EXPECT_EQ(clients.searches.size(), 1);

    // A section that goes away is no longer asked.
    {
        SearchTarget reports;
        field.setTarget(&reports, {}, reports.doSearch());
    }
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(clients.searches.size(), 1);
    field.setTarget(&clients, {}, clients.doSearch());
    EXPECT_EQ(field.searchActions().count(), 1) << "the gone section's search was dropped";
}
