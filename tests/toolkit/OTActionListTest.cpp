#include "toolkit/OTActionList.h"

#include <gtest/gtest.h>

#include <QObject>

#include <memory>

namespace {

class Listener : public QObject {
public:
    explicit Listener(QStringList *log, QString name)
        : m_log(log)
        , m_name(std::move(name)) {}
    void clicked(QObject *sender) { m_log->append(m_name + ":" + sender->objectName()); }
    void plain() { m_log->append(m_name); }

private:
    QStringList *m_log;
    QString m_name;
};

} // namespace

TEST(OTActionList, DestroyedTargetsAreSkippedAndTheRestRunInOrder) {
    QStringList log;
    QObject button;
    button.setObjectName("button");
    auto first = std::make_unique<Listener>(&log, "first");
    Listener second(&log, "second");
    OTActionList list;
    list.addTarget(first.get(), &Listener::clicked);
    list.addTarget(&second, &Listener::plain);
    list.addTarget(first.get(), &Listener::plain);

    list.inform(&button);
    EXPECT_EQ(log, QStringList({"first:button", "second", "first"}));

    first.reset();
    log.clear();
    list.inform(&button);
    EXPECT_EQ(log, QStringList({"second"}));
    EXPECT_EQ(list.count(), 3); // skipped, not forgotten: removing is the owner's business
}

TEST(OTActionList, ClearingAndAddingTakesAControlOverAndAnActionMayDoItWhileRunning) {
    QStringList log;
    QObject sender;
    Listener section(&log, "section");
    Listener other(&log, "other");
    OTActionList list;
    list.addTarget(&section, &Listener::plain);
    // The first listener hands the control to another section in the middle of the walk.
    list.addTarget(&section, [&](QObject *) {
        list.clearActions();
        list.addTarget(&other, &Listener::plain);
    });
    list.addTarget(&section, [&](QObject *) { log.append("never"); });

    list.inform(&sender);
    EXPECT_EQ(log, QStringList({"section"}));
    log.clear();
    list.inform(&sender);
    EXPECT_EQ(log, QStringList({"other"}));

    OTActionList copy;
    list.copyActionsTo(copy);
    const OTAction extra = copy.addTarget(&section, &Listener::plain);
    copy.removeAction(extra);
    copy.removeTarget(&section);
    log.clear();
    copy.inform(&sender);
    EXPECT_EQ(log, QStringList({"other"}));
    copy.removeTarget(&other);
    EXPECT_TRUE(copy.isEmpty());
}
