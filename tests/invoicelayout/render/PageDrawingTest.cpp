#include "RenderFixture.h"

#include "invoicelayout/render/LMBackgroundPainter.h"
#include "invoicelayout/render/LMInvoiceOutput.h"
#include "invoicelayout/render/LMInvoiceView.h"

#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMArchivedImage.h"
#include <QPainter>

namespace {

using Background = LMBackgroundPainter;

TEST(BackgroundGeometry, PicturesKeepTheirProportionsWithWholePointOffsets) {
    const QRectF page(0, 100, 600, 800);
    EXPECT_EQ(Background::imageRect(QSizeF(201, 101), page, Background::Center),
              QRectF(199, 449, 201, 101));
    // A wide picture covering the page keeps the height and overhangs at both sides.
    EXPECT_EQ(Background::imageRect(QSizeF(300, 200), page, Background::ScaleToFit),
              QRectF(-300, 100, 1200, 800));
    // Inside the page it keeps the width and is centred vertically.
    EXPECT_EQ(Background::imageRect(QSizeF(300, 200), page, Background::ScaleToFitInside),
              QRectF(0, 300, 600, 400));
    EXPECT_EQ(Background::imageRect(QSizeF(400, 200), page, Background::StretchToFit), page);
    // A tall logo in a wide box: full height, centred across.
    EXPECT_EQ(Background::logoRect(QSizeF(50, 100), QRectF(10, 10, 200, 50)),
              QRectF(98, 10, 25, 50));
}

TEST(BackgroundGeometry, GradientAnglesCountUpwardsOnThePage) {
    const QRectF rect(0, 0, 100, 200);
    const QLineF up = Background::gradientLine(rect, 90);
    EXPECT_NEAR(up.p1().y(), 200, 1e-9);
    EXPECT_NEAR(up.p2().y(), 0, 1e-9);
    const QLineF across = Background::gradientLine(rect, 0);
    EXPECT_NEAR(across.p1().x(), 0, 1e-9);
    EXPECT_NEAR(across.p2().x(), 100, 1e-9);
}

class PageDrawingTest : public RenderFixture {
protected:
    QImage drawn(LMInvoiceTemplateClass *design) {
        TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
        invoice->setInvoiceTemplate(design);
        return LMInvoiceOutput::renderPage(invoice, 1);
    }
};

TEST_F(PageDrawingTest, StaleTypesShowRedAndHiddenOnesNothing) {
    LMInvoiceTemplateClass *design = newTemplate(1);
    element(page(design, 0), 10, QRectF(100, 100, 50, 50));
    LMInvoiceElementClass *hidden = element(page(design, 0), 21, QRectF(300, 100, 50, 50));
    hidden->setBgColor(Qt::blue);
    hidden->setIsHidden(true);
    LMInvoiceElementClass *shown = element(page(design, 0), 21, QRectF(300, 300, 50, 50));
    shown->setBgColor(Qt::blue);
    const QImage image = drawn(design);
    ASSERT_EQ(image.size(), QSize(595, 842));
    EXPECT_EQ(image.pixelColor(125, 125), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(325, 125), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(325, 325), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(302, 325), QColor(Qt::white)) << "shapes sit 3 points in";
}

TEST_F(PageDrawingTest, BackgroundsFallBackToWhiteAndDrawNothingWithoutAPicture) {
    LMInvoiceTemplateClass *design = newTemplate(1);
    design->setBackgroundType(Background::Color);
    EXPECT_EQ(drawn(design).pixelColor(10, 10), QColor(Qt::white));
    design->setBackgroundColor(LMArchivedColor::archive(Qt::green));
    EXPECT_EQ(drawn(design).pixelColor(10, 10), QColor(Qt::green));
    design->setBackgroundType(Background::Image);
    EXPECT_EQ(drawn(design).pixelColor(10, 10), QColor(Qt::white)) << "no picture, no colour";
    QImage picture(10, 10, QImage::Format_RGB32);
    picture.fill(Qt::black);
    design->setBackgroundImage(LMArchivedImage::archive(picture));
    design->setBackgroundImageType(Background::StretchToFit);
    EXPECT_EQ(drawn(design).pixelColor(500, 800), QColor(Qt::black));
}

TEST_F(PageDrawingTest, AnInvoiceWithoutTemplateGetsTheFirstOneForOutput) {
    LMInvoiceTemplateClass *design = newTemplate(2);
    TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
    invoice->setInvoiceTemplate(nullptr);
    EXPECT_EQ(LMInvoiceOutput::pageCount(invoice), 1) << "one blank page";
    LMInvoiceOutput::assignFirstTemplateIfNone(invoice);
    ASSERT_NE(invoice->invoiceTemplate(), nullptr);
    EXPECT_EQ(invoice->invoiceTemplate(),
              TAContextDatabase::getTemplatesInContext(db.context()).first());
    invoice->setInvoiceTemplate(design);
    LMInvoiceOutput::assignFirstTemplateIfNone(invoice);
    EXPECT_EQ(invoice->invoiceTemplate(), design) << "a template is kept";
    EXPECT_EQ(LMInvoiceOutput::pageCount(invoice), 2);
    EXPECT_TRUE(LMInvoiceOutput::renderPage(invoice, 3).isNull());
}

TEST_F(PageDrawingTest, OnScreenPagesLieApartOnTheDeskAndComeFromTheCachedPicture) {
    LMInvoiceTemplateClass *design = newTemplate(2);
    element(page(design, 1), 10, QRectF(0, 0, 595, 842));
    TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
    LMInvoiceView view;
    view.setInvoice(invoice);
    view.setTemplate(design);
    EXPECT_EQ(view.frameSize(), QSizeF(595 + 16, 2 * 842 + 24));
    QImage screen(view.frameSize().toSize(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&screen);
    view.drawRect(&painter);
    EXPECT_FALSE(view.needsToUpdateCache());
    EXPECT_EQ(screen.pixelColor(4, 4), LMInvoiceView::deskColor().toRgb());
    EXPECT_EQ(screen.pixelColor(20, 20), QColor(Qt::white));
    EXPECT_EQ(screen.pixelColor(20, 842 + 20), QColor(Qt::red)) << "the second page";
    const QColor gap = screen.pixelColor(20, 842 + 12);
    EXPECT_LT(gap.lightness(), LMInvoiceView::deskColor().lightness() + 1)
        << "8 points of desk and shadow between pages";
}

} // namespace
