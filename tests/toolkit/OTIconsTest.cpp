#include "toolkit/OTIcons.h"
#include "toolkit/OTSvgIconEngine.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>

namespace {

// Takes the icon themes away for the test's life, so that every icon is our own drawing.
class NoIconTheme {
public:
    NoIconTheme()
        : m_paths(QIcon::themeSearchPaths())
        , m_theme(QIcon::themeName()) {
        QIcon::setThemeSearchPaths({m_empty.path()});
        QIcon::setThemeName(QStringLiteral("billfold-test-none"));
    }
    ~NoIconTheme() {
        QIcon::setThemeSearchPaths(m_paths);
        QIcon::setThemeName(m_theme);
    }

private:
    QTemporaryDir m_empty;
    QStringList m_paths;
    QString m_theme;
};

class ScopedPalette {
public:
    explicit ScopedPalette(const QPalette &palette)
        : m_saved(QApplication::palette()) {
        QApplication::setPalette(palette);
    }
    ~ScopedPalette() { QApplication::setPalette(m_saved); }

private:
    QPalette m_saved;
};

QPalette paletteWithText(QColor window, QColor text) {
    QPalette palette(window);
    palette.setColor(QPalette::Active, QPalette::WindowText, text);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, text);
    return palette;
}

struct Ink {
    int visible = 0;  // pixels with any coverage
    QColor strongest; // the colour of the most opaque pixel
};

Ink inkOf(const QPixmap &pixmap) {
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    Ink ink;
    int bestAlpha = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QColor c = image.pixelColor(x, y);
            if (c.alpha() > 0)
                ++ink.visible;
            if (c.alpha() > bestAlpha) {
                bestAlpha = c.alpha();
                ink.strongest = c;
            }
        }
    }
    return ink;
}

} // namespace

TEST(OTIcons, EveryKeyNamesOneIconThatDrawsAtSmallAndLargeSizes) {
    NoIconTheme noTheme;
    QSet<QString> keys;
    for (OTIcons::Name name : OTIcons::allNames()) {
        QString key = OTIcons::key(name);
        SCOPED_TRACE(key.toStdString());
        EXPECT_FALSE(keys.contains(key));
        keys.insert(key);
        ASSERT_EQ(OTIcons::nameForKey(key), name);

        QIcon icon = OTIcons::icon(key);
        ASSERT_FALSE(icon.isNull());
        for (int side : {16, 64}) {
            QPixmap pixmap = icon.pixmap(QSize(side, side), 1.0);
            ASSERT_EQ(pixmap.size(), QSize(side, side));
            // A shape, not a blank square nor a filled one.
            Ink ink = inkOf(pixmap);
            EXPECT_GT(ink.visible, side * side / 20);
            EXPECT_LT(ink.visible, side * side);
        }
    }
    EXPECT_EQ(keys.size(), 17);
    EXPECT_TRUE(keys.contains("groupTimers"));
    EXPECT_FALSE(OTIcons::nameForKey("groupArchive"));
    EXPECT_TRUE(OTIcons::icon(QStringLiteral("groupArchive")).isNull());
}

TEST(OTIcons, SymbolicIconsTakeThePaletteTextColourWhenDrawn) {
    NoIconTheme noTheme;
    QIcon icon = OTIcons::icon(OTIcons::Name::Print);
    QColor onLight, onDark;
    {
        ScopedPalette light(paletteWithText(QColor("#f6f5f4"), QColor("#202020")));
        onLight = inkOf(icon.pixmap(QSize(24, 24), 1.0)).strongest;
    }
    {
        // The same QIcon object: a dark theme switched on while the program runs.
        ScopedPalette dark(paletteWithText(QColor("#242424"), QColor("#eeeeee")));
        onDark = inkOf(icon.pixmap(QSize(24, 24), 1.0)).strongest;
        QColor disabled = inkOf(icon.pixmap(QSize(24, 24), 1.0, QIcon::Disabled)).strongest;
        EXPECT_NE(disabled.rgb(), onDark.rgb());
    }
    EXPECT_EQ(onLight.rgb(), QColor("#202020").rgb());
    EXPECT_EQ(onDark.rgb(), QColor("#eeeeee").rgb());
}

TEST(OTIcons, PixmapsAreSharpOnHighDensityScreens) {
    NoIconTheme noTheme;
    QIcon icon = OTIcons::icon(OTIcons::Name::GroupInvoice);
    QPixmap pixmap = icon.pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(32, 32));
    EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(16, 16));
    // Drawn at 32 pixels, not 16 blown up: a 1-unit line covers single pixel columns.
    EXPECT_GT(inkOf(pixmap).visible, inkOf(icon.pixmap(QSize(16, 16), 1.0)).visible * 3);
}

TEST(OTIcons, ApplicationIconKeepsItsColoursInADarkPalette) {
    NoIconTheme noTheme;
    ScopedPalette dark(paletteWithText(QColor("#242424"), QColor("#eeeeee")));
    QIcon icon = OTIcons::applicationIcon();
    ASSERT_FALSE(icon.isNull());
    for (int side : {16, 256}) {
        QImage image = icon.pixmap(QSize(side, side), 1.0).toImage();
        ASSERT_EQ(image.size(), QSize(side, side));
        int coloured = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                QColor c = image.pixelColor(x, y);
                if (c.alpha() == 255 && c.hsvSaturation() > 100)
                    ++coloured;
            }
        }
        EXPECT_GT(coloured, side * side / 50) << side;
    }
}
