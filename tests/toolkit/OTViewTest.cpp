#include "ActionLog.h"
#include "toolkit/OTImage.h"
#include "toolkit/OTLabel.h"

#include <gtest/gtest.h>

#include <QAccessibleActionInterface>
#include <QTest>

#include <functional>

namespace {

// A window with a palette of its own, so the tests can tell which role a control draws in.
struct ViewWindow {
    ViewWindow() {
        QPalette palette = window.palette();
        palette.setColor(QPalette::Window, Qt::black);
        palette.setColor(QPalette::WindowText, Qt::green);
        palette.setColor(QPalette::Link, Qt::red);
        palette.setColor(QPalette::Highlight, Qt::blue);
        palette.setColor(QPalette::BrightText, Qt::yellow);
        window.setPalette(palette);
        window.setAutoFillBackground(true);
        window.resize(200, 120);
        away = new QWidget(&window);
        away->setGeometry(0, 100, 200, 20);
    }
    void show() {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    QWidget window;
    QWidget *away;
    ActionLog log;
};

using ColorTest = std::function<bool(const QColor &)>;
const ColorTest greenish = [](const QColor &c) {
    return c.green() > 150 && c.red() < 90 && c.blue() < 90;
};
const ColorTest reddish = [](const QColor &c) {
    return c.red() > 150 && c.green() < 90 && c.blue() < 90;
};
const ColorTest bluish = [](const QColor &c) {
    return c.blue() > 150 && c.red() < 90 && c.green() < 90;
};
const ColorTest yellowish = [](const QColor &c) {
    return c.red() > 150 && c.green() > 150 && c.blue() < 90;
};

bool shows(QWidget *widget, const ColorTest &test) {
    const QImage image = widget->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (test(image.pixelColor(x, y)))
                return true;
        }
    }
    return false;
}

QColor centreColor(QWidget *widget) {
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

QIcon filledIcon(const QColor &color) {
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

} // namespace

TEST(OTView, DrawsOnlyTheBackgroundItIsGivenAndTellsItsListOfAClickInside) {
    ViewWindow w;
    auto *view = new OTView(&w.window);
    view->setGeometry(10, 10, 60, 40);
    w.show();
    EXPECT_EQ(centreColor(&w.window).name(), "#000000"); // the palette shows through

    view->setBackgroundColor(QColor("#336699"));
    EXPECT_EQ(centreColor(view).name(), "#336699");
    view->setBackgroundColor(QColor());
    EXPECT_EQ(centreColor(&w.window).name(), "#000000");

    w.log.listen(view->mouseClickedActions(), "clicked");
    QTest::mouseClick(view, Qt::LeftButton);
    EXPECT_EQ(w.log.senders(), QList<QObject *>({view}));
    EXPECT_EQ(w.log.take(), "clicked");
    QTest::mousePress(view, Qt::LeftButton);
    QTest::mouseMove(view, QPoint(30, 90));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(30, 90));
    EXPECT_EQ(w.log.take(), "");
}

TEST(OTLabel, DrawsInPaletteRolesThatFollowLinkHoverAndPress) {
    ViewWindow w;
    auto *label = new OTLabel(QStringLiteral("Overdue invoices"), &w.window);
    label->setGeometry(10, 10, 180, 30);
    w.show();
    EXPECT_TRUE(shows(label, greenish));
    EXPECT_FALSE(shows(label, reddish));

    // Click actions make it a link.
    w.log.listen(label->clickActions(), "click");
    label->update();
    EXPECT_TRUE(shows(label, reddish));
    EXPECT_FALSE(shows(label, greenish));

    label->setOverColorRole(QPalette::Highlight);
    label->setPressedColorRole(QPalette::BrightText);
    QTest::mouseMove(label);
    EXPECT_TRUE(shows(label, bluish));
    QTest::mousePress(label, Qt::LeftButton);
    EXPECT_TRUE(shows(label, yellowish));
    QTest::mouseRelease(label, Qt::LeftButton);
    EXPECT_EQ(w.log.take(), "click");
    QTest::mouseMove(w.away);
    EXPECT_FALSE(shows(label, bluish));
    EXPECT_TRUE(shows(label, reddish));
}

TEST(OTLabel, ALinkIsClickedByMouseKeyboardAndAssistiveTechnology) {
    ViewWindow w;
    auto *label = new OTLabel(QStringLiteral("Pay now"), &w.window);
    label->setGeometry(10, 10, 120, 30);
    w.show();
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(label);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Pay now");
    QTest::mouseMove(label);
    EXPECT_EQ(label->cursor().shape(), Qt::ArrowCursor);

    w.log.listen(label->clickActions(), "click");
    w.log.listen(label->mouseClickedActions(), "view");
    QTest::mouseMove(w.away);
    QTest::mouseMove(label);
    EXPECT_EQ(label->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(accessible->role(), QAccessible::Link);

    QTest::mouseClick(label, Qt::LeftButton);
    EXPECT_EQ(w.log.senders(), QList<QObject *>({label, label}));
    EXPECT_EQ(w.log.take(), "click view");
    QTest::mousePress(label, Qt::LeftButton);
    QTest::mouseRelease(label, Qt::LeftButton, {}, QPoint(60, 90));
    EXPECT_EQ(w.log.take(), "");

    // Keys reach a label only when it may take the focus.
    EXPECT_FALSE(label->canBecomeKeyView());
    label->setCanBecomeKeyView(true);
    label->setFocus();
    ASSERT_TRUE(label->hasFocus());
    QTest::keyClick(label, Qt::Key_Space);
    QTest::keyClick(label, Qt::Key_Return);
    QTest::keyClick(label, Qt::Key_A);
    EXPECT_EQ(w.log.take(), "click view click view");

    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(w.log.take(), "click view");
    label->setEnabled(false);
    EXPECT_TRUE(accessible->actionInterface()->actionNames().isEmpty());
}

TEST(OTImage, ShowsTheOverImageUnderThePointerAndFadesByAlpha) {
    ViewWindow w;
    auto *image = new OTImage(filledIcon(Qt::red), &w.window);
    image->setOverImage(filledIcon(Qt::blue));
    image->setGeometry(10, 10, 32, 32);
    w.show();
    EXPECT_EQ(centreColor(image), QColor(Qt::red));
    QTest::mouseMove(image);
    EXPECT_EQ(centreColor(image), QColor(Qt::blue));
    QTest::mouseMove(w.away);
    EXPECT_EQ(centreColor(image), QColor(Qt::red));

    // Half opaque over the black window: half the red.
    const QPoint centre = image->geometry().center();
    image->setAlpha(0.5);
    EXPECT_NEAR(w.window.grab().toImage().pixelColor(centre).red(), 128, 3);
    image->setAlpha(7);
    EXPECT_EQ(image->alpha(), 1.0);
    image->setAlpha(-1);
    EXPECT_EQ(w.window.grab().toImage().pixelColor(centre), QColor(Qt::black));
}
