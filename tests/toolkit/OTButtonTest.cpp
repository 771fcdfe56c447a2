#include "toolkit/OTButton.h"
#include "ActionLog.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

namespace {

// A window to put the control in, shown and active, so that clicks, hover and focus behave
// as they do for a person.
struct ButtonWindow {
    ButtonWindow() {
        button = new OTButton(QStringLiteral("Send"), &window);
        other = new OTButton(QStringLiteral("Other"), &window);
        button->setGeometry(10, 10, 80, 30);
        other->setGeometry(10, 60, 80, 30);
        window.resize(120, 100);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        log.listen(button->mouseDownActions(), "down");
        log.listen(button->clickActions(), "click");
    }
    QWidget window;
    OTButton *button;
    OTButton *other;
    ActionLog log;
};

QString writeSquare(const QTemporaryDir &dir, const QString &name, const QString &color) {
    const QString path = dir.filePath(name + ".svg");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                              "<rect width='16' height='16' fill='%1'/></svg>")
                   .arg(color)
                   .toUtf8());
    return path;
}

QColor centreColor(QWidget *widget) {
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

TEST(OTButton, APressTellsMouseDownAndOnlyPressAndReleaseInsideMakeAClick) {
    ButtonWindow w;
    QTest::mouseClick(w.button, Qt::LeftButton);
    EXPECT_EQ(w.log.senders(), QList<QObject *>({w.button, w.button}));
    EXPECT_EQ(w.log.take(), "down click");

    // Pressed inside, dragged out and released there: the person changed their mind.
    QTest::mousePress(w.button, Qt::LeftButton, {}, QPoint(40, 15));
    QTest::mouseMove(w.button, QPoint(40, 80));
    QTest::mouseRelease(w.button, Qt::LeftButton, {}, QPoint(40, 80));
    EXPECT_EQ(w.log.take(), "down");
    EXPECT_FALSE(w.button->isDown());

    // A release whose press began elsewhere is no click.
    QTest::mouseRelease(w.button, Qt::LeftButton, {}, QPoint(40, 15));
    EXPECT_EQ(w.log.take(), "");

    // The keyboard follows the same path.
    w.button->setFocus();
    QTest::keyClick(w.button, Qt::Key_Space);
    EXPECT_EQ(w.log.take(), "down click");
}

TEST(OTButton, TheDownStateFlipsByCanPressDownAndCanUnpressBeforeTheClickIsTold) {
    struct Case {
        bool canPressDown, canUnpress, downBefore, downAfter;
    };
    const Case cases[] = {
        {false, false, false, false}, {true, false, false, true},  {true, false, true, true},
        {false, true, true, false},   {false, true, false, false}, {true, true, true, false},
        {true, true, false, true},    {false, false, true, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "canPressDown " << c.canPressDown << " canUnpress "
                                        << c.canUnpress << " down " << c.downBefore);
        ButtonWindow w;
        w.button->setCanPressDown(c.canPressDown);
        w.button->setCanUnpress(c.canUnpress);
        w.button->setButtonDown(c.downBefore);
        std::optional<bool> downWhenTold;
        w.button->clickActions().addTarget(&w.window, [&](QObject *sender) {
            downWhenTold = qobject_cast<OTButton *>(sender)->isButtonDown();
        });
        QTest::mouseClick(w.button, Qt::LeftButton);
        EXPECT_EQ(w.button->isButtonDown(), c.downAfter);
        EXPECT_EQ(downWhenTold, c.downAfter);
        EXPECT_EQ(w.button->imageState(), c.downAfter ? QIcon::On : QIcon::Off);
        // Only a button that can be down is announced as a toggle.
        EXPECT_EQ(w.button->isCheckable(), c.canPressDown || c.canUnpress || c.downAfter);
    }
}

TEST(OTButton, ADisabledButtonDoesNothing) {
    ButtonWindow w;
    w.button->setCanPressDown(true);
    w.button->setEnabled(false);
    QTest::mouseClick(w.button, Qt::LeftButton);
    QTest::keyClick(w.button, Qt::Key_Space);
    EXPECT_EQ(w.log.take(), "");
    EXPECT_FALSE(w.button->isButtonDown());
    EXPECT_EQ(w.button->imageMode(), QIcon::Disabled);

    w.button->setEnabled(true);
    QTest::mouseClick(w.button, Qt::LeftButton);
    EXPECT_EQ(w.log.take(), "down click");
    EXPECT_TRUE(w.button->isButtonDown());
}

TEST(OTButton, ADeadListenerIsSkippedAndASectionTakesTheButtonOver) {
    ButtonWindow w;
    auto leaving = std::make_unique<ActionLog>();
    ActionLog section;
    leaving->listen(w.button->clickActions(), "leaving");
    section.listen(w.button->clickActions(), "section");
    leaving.reset();
    QTest::mouseClick(w.button, Qt::LeftButton);
    EXPECT_EQ(section.take(), "section");
    EXPECT_EQ(w.log.take(), "down click");

    ActionLog next;
    w.button->clickActions().clearActions();
    next.listen(w.button->clickActions(), "next");
    QTest::mouseClick(w.button, Qt::LeftButton);
    EXPECT_EQ(next.senders(), QList<QObject *>({w.button}));
    EXPECT_EQ(next.take(), "next");
    EXPECT_EQ(section.take(), "");
}

TEST(OTButton, EachStateDrawsItsOwnImage) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ButtonWindow w;
    w.button->setText(QString());
    w.button->setDrawsPanel(false);
    w.button->setImage(writeSquare(dir, "plain", "#ff0000"));
    w.button->setPressedImage(writeSquare(dir, "pressed", "#0000ff"));
    w.button->setDownImage(writeSquare(dir, "down", "#00ff00"));
    w.button->setOverImage(writeSquare(dir, "over", "#ffff00"));
    w.button->setCanPressDown(true);
    w.button->setCanUnpress(true);

    EXPECT_EQ(centreColor(w.button), QColor(Qt::red));
    QTest::mouseMove(w.button);
    EXPECT_EQ(w.button->imageMode(), QIcon::Active);
    EXPECT_EQ(centreColor(w.button), QColor(Qt::yellow));
    QTest::mousePress(w.button, Qt::LeftButton);
    EXPECT_EQ(w.button->imageMode(), QIcon::Selected);
    EXPECT_EQ(centreColor(w.button), QColor(Qt::blue));
    QTest::mouseRelease(w.button, Qt::LeftButton);
    QTest::mouseMove(w.other);
    EXPECT_TRUE(w.button->isButtonDown());
    EXPECT_EQ(centreColor(w.button), QColor(Qt::green));
}
