#include "shell/application/TARecentDocuments.h"
#include "shell/application/TARecentDocumentsMenu.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class RecentDocuments : public ::testing::Test {
protected:
    QString path(const QString &name) const { return dir.filePath(name); }
    QStringList shownTitles(QMenu &menu) const {
        QStringList titles;
        for (QAction *action : menu.actions())
            titles << (action->isSeparator() ? QStringLiteral("---") : action->iconText());
        return titles;
    }
    // Opens the menu as the menu bar does, so that it rebuilds itself from the list.
    void open(QMenu &menu) {
        menu.popup(QPoint(0, 0));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
    }
    QAction *item(QMenu &menu, const QString &title) const {
        for (QAction *action : menu.actions())
            if (action->iconText() == title)
                return action;
        return nullptr;
    }

    QTemporaryDir dir;
    QSettings settings{dir.filePath(QStringLiteral("Billfold.ini")), QSettings::IniFormat};
    TARecentDocuments recent{&settings};
};

} // namespace

TEST_F(RecentDocuments, MostRecentFirstOnceEachAtMostTenMissingFilesKept) {
    EXPECT_TRUE(recent.paths().isEmpty());
    EXPECT_TRUE(recent.first().isEmpty());
    for (int i = 1; i <= 12; ++i)
        recent.note(path(QStringLiteral("%1.tadb").arg(i)));
    ASSERT_EQ(recent.paths().size(), TARecentDocuments::kMaximumCount);
    EXPECT_EQ(recent.paths().first(), path(QStringLiteral("12.tadb")));
    EXPECT_EQ(recent.paths().last(), path(QStringLiteral("3.tadb")));

    // Opening a listed file again moves it up instead of listing it twice, also when it is
    // named another way.
    recent.note(dir.path() + QStringLiteral("/sub/../5.tadb"));
    EXPECT_EQ(recent.first(), path(QStringLiteral("5.tadb")));
    EXPECT_EQ(recent.paths().count(path(QStringLiteral("5.tadb"))), 1);
    EXPECT_EQ(recent.paths().size(), TARecentDocuments::kMaximumCount);

    // A relative name is kept absolute: the list outlives the working folder.
    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    recent.note(QStringLiteral("relative.tadb"));
    QDir::setCurrent(previous);
    EXPECT_EQ(recent.first(), path(QStringLiteral("relative.tadb")));

    // None of the files exists; the list is the settings', read by a later run too.
    QSettings nextRun(settings.fileName(), QSettings::IniFormat);
    EXPECT_EQ(TARecentDocuments(&nextRun).paths(), recent.paths());

    recent.clear();
    EXPECT_TRUE(recent.paths().isEmpty());
    EXPECT_TRUE(recent.first().isEmpty());
}

TEST_F(RecentDocuments, MenuShowsTheListAsItIsWhenOpenedAndAlwaysEndsInClear) {
    TARecentDocumentsMenu menu(recent);
    open(menu);
    EXPECT_EQ(shownTitles(menu), QStringList{QStringLiteral("Clear Menu")});
    menu.hide();

    recent.note(path(QStringLiteral("Older.tadb")));
    // An ampersand is part of the name, not the mark of a shortcut letter.
    recent.note(path(QStringLiteral("R&D Books.tadb")));
    open(menu);
    EXPECT_EQ(shownTitles(menu),
              (QStringList{QStringLiteral("R&D Books.tadb"), QStringLiteral("Older.tadb"),
                           QStringLiteral("---"), QStringLiteral("Clear Menu")}));
    EXPECT_EQ(item(menu, QStringLiteral("Older.tadb"))->toolTip(),
              path(QStringLiteral("Older.tadb")));

    QSignalSpy opened(&menu, &TARecentDocumentsMenu::openRecent);
    QAction *older = item(menu, QStringLiteral("Older.tadb"));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(older).center());
    ASSERT_EQ(opened.count(), 1);
    EXPECT_EQ(opened.first().first().toString(), path(QStringLiteral("Older.tadb")));
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(RecentDocuments, ClearMenuFromTheKeyboardEmptiesTheListAndTheMenu) {
    recent.note(path(QStringLiteral("One.tadb")));
    TARecentDocumentsMenu menu(recent);
    QSignalSpy opened(&menu, &TARecentDocumentsMenu::openRecent);
    open(menu);
    // The separator is passed over on the way down.
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Down);
    ASSERT_EQ(menu.activeAction()->iconText(), QStringLiteral("Clear Menu"));
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_TRUE(recent.paths().isEmpty());
    EXPECT_EQ(opened.count(), 0);
    open(menu);
    EXPECT_EQ(shownTitles(menu), QStringList{QStringLiteral("Clear Menu")});
}
