#include "foundation/money/OTConvert.h"
#include "foundation/OTFunctions.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTimeZone>

TEST(OTConvert, PlainNumberConversions) {
    EXPECT_DOUBLE_EQ(OTConvert::doubleFromString(" 12.5abc"), 12.5);
    EXPECT_DOUBLE_EQ(OTConvert::doubleFromString("+3e2"), 300);
    EXPECT_DOUBLE_EQ(OTConvert::doubleFromString("abc"), 0);
    EXPECT_DOUBLE_EQ(OTConvert::doubleFromString(QString()), 0);
    EXPECT_EQ(OTConvert::intFromString("42.9"), 42);
    EXPECT_EQ(OTConvert::intFromString(" -7x"), -7);
    EXPECT_EQ(OTConvert::intFromString("99999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(OTConvert::intFromString(QString()), 0);
    EXPECT_EQ(OTConvert::decimalNumberFromInt(-5), Decimal(-5));
    EXPECT_EQ(OTConvert::decimalStringFromString("a1b,2.3-4 \u0663"), QString("1,2.3-4\u0663"));

    EXPECT_EQ(OTConvert::stringFromNumber(QVariant()), "");
    EXPECT_EQ(OTConvert::stringFromNumber(QVariant(7.9)), "7");
    EXPECT_EQ(OTConvert::stringFromNumber(Decimal::fromString(u"-12.5").toVariant()), "-12");
    EXPECT_EQ(OTConvert::stringFromInt(-3), "-3");
    EXPECT_EQ(OTConvert::stringFromFloat(1.5f), "1.500000");
    EXPECT_EQ(OTConvert::stringFromDouble(3.14159), "3.14");
    EXPECT_EQ(OTConvert::stringFromDouble(3.14159, 3), "3.142");
    EXPECT_EQ(OTConvert::stringFromFloat(2.0f, 0), "2");
}

TEST(OTConvert, DateTexts) {
    const QDateTime utc(QDate(2024, 1, 5), QTime(14, 3), Qt::UTC);
    EXPECT_EQ(OTConvert::stringFromDate(utc), "2024-01-05 14:03:00 +0000");
    EXPECT_EQ(OTConvert::stringFromDate(QDateTime()), "");
    EXPECT_EQ(OTConvert::dateFromObject(OTConvert::stringFromDate(utc)), utc);

    const struct {
        const char *text;
        QDateTime expected;
    } parsed[] = {
        {"2024-01-05 14:03:00 +0200", utc.addSecs(-7200)},
        {"2024-01-05 14:03:00 GMT-08:00", utc.addSecs(8 * 3600)},
        {"2024-01-05 14:03:00 GMT", utc},
        {"2024-01-05 14:03:00 PST", utc.addSecs(8 * 3600)},
        {"2024-01-05 14:03:00 CEST", utc.addSecs(-7200)},
        {"2024-01-05 14:03:00", QDateTime(QDate(2024, 1, 5), QTime(14, 3))},
        {"2024-01-05 14:03:00.250 junk", QDateTime(QDate(2024, 1, 5), QTime(14, 3))},
        {"2024-01-05T14:03:00Z", utc},
        {"2024-13-05 14:03:00", QDateTime()},
        {"yesterday", QDateTime()},
    };
    for (const auto &p : parsed)
        EXPECT_EQ(OTConvert::dateFromObject(QString::fromLatin1(p.text)), p.expected) << p.text;
    EXPECT_EQ(OTConvert::dateFromObject(QVariant(utc)), utc);
    EXPECT_FALSE(OTConvert::dateFromObject(QVariant(5)).isValid());
    EXPECT_EQ(OTConvert::dateDescriptionFromObject(QStringLiteral("2024-01-05 16:03:00 +0200")),
              "2024-01-05 14:03:00 +0000");
    EXPECT_EQ(OTConvert::dateDescriptionFromObject(QVariant()), "");

    const QDateTime local(QDate(2024, 1, 5), QTime(14, 3));
    const QLocale en("en_US");
    EXPECT_EQ(OTConvert::stringFromDate(local, OTConvert::ShortStyle, en), "1/5/24");
    EXPECT_EQ(OTConvert::stringFromDate(local, OTConvert::MediumStyle, en), "Jan 5, 2024");
    EXPECT_EQ(OTConvert::stringFromDate(local, OTConvert::LongStyle, en), "January 5, 2024");
    EXPECT_EQ(OTConvert::stringFromDate(local, OTConvert::FullStyle, en),
              "Friday, January 5, 2024");
    EXPECT_EQ(OTConvert::stringFromDateTimeStyle(local, OTConvert::ShortStyle, en), "2:03 PM");
    EXPECT_EQ(OTConvert::stringFromDate(local, OTConvert::MediumStyle, OTConvert::ShortStyle,
                                        QLocale("de_DE")),
              "5. Jan. 2024 14:03");
    EXPECT_EQ(OTConvert::dateDescriptionFromObject(QVariant(local), OTConvert::LongStyle,
                                                   QLocale("fr_FR")),
              "5 janvier 2024");
}

TEST(OTConvert, DataAndPropertyLists) {
    const QString text = QString::fromUtf16(u"Gr\u00FC\u00DFe \u20AC");
    EXPECT_EQ(OTConvert::stringFromData(OTConvert::dataFromString(text, QStringConverter::Utf8),
                                        QStringConverter::Utf8),
              text);
    EXPECT_TRUE(OTConvert::stringFromData("\xff\xfe\xfd", QStringConverter::Utf8).isNull());
    EXPECT_EQ(OTConvert::dataFromString("abc", QStringConverter::Latin1), QByteArray("abc"));

    const QVariantMap plist{
        {"name", QStringLiteral("Acme")},
        {"rate", Decimal::fromString(u"12.50").toVariant()},
        {"items", QVariantList{1, QStringLiteral("two"), QByteArray("\x00\x01", 2)}},
        {"when", QDateTime(QDate(2024, 1, 5), QTime(14, 3), Qt::UTC)},
    };
    const QByteArray data = OTConvert::dataFromPropertyList(plist);
    const QVariantMap back = OTConvert::propertyListFromData(data).toMap();
    EXPECT_EQ(back.value("name").toString(), "Acme");
    EXPECT_EQ(Decimal::fromVariant(back.value("rate")), Decimal::fromString(u"12.5"));
    EXPECT_EQ(back.value("items").toList().value(2).toByteArray(), QByteArray("\x00\x01", 2));
    EXPECT_EQ(back.value("when").toDateTime(), plist.value("when").toDateTime());

    EXPECT_TRUE(OTConvert::dataFromPropertyList(QVariant()).isNull());
    EXPECT_FALSE(OTConvert::propertyListFromData(QByteArray()).isValid());
    EXPECT_FALSE(OTConvert::propertyListFromData(data.left(data.size() / 2)).isValid());
    EXPECT_FALSE(OTConvert::unarchiveObjectFromData("\xff\x00garbage").isValid());

    const QByteArray archived = OTConvert::archiveObjectToData(QVariantList{1, 2, 3});
    EXPECT_EQ(OTConvert::unarchiveObjectFromData(archived).toList().size(), 3);
    EXPECT_EQ(OTConvert::noOfItemsInEncodedArrayData(archived), 3);
    EXPECT_EQ(OTConvert::noOfItemsInEncodedArrayData(data), 0);
    EXPECT_EQ(OTConvert::noOfItemsInEncodedArrayData(QByteArray()), 0);
}

TEST(OTFunctions, EmptinessNamesAndFiles) {
    EXPECT_TRUE(OTFunctions::isEmptyString(QVariant()));
    EXPECT_TRUE(OTFunctions::isEmptyString(QVariant::fromValue(nullptr)));
    EXPECT_TRUE(OTFunctions::isEmptyString(QVariant(QString(""))));
    EXPECT_TRUE(OTFunctions::isEmptyString(QString()));
    EXPECT_FALSE(OTFunctions::isEmptyString(QVariant(QStringLiteral(" "))));
    EXPECT_FALSE(OTFunctions::isEmptyString(QVariant(0)));

    const QString id = OTFunctions::generateUniqueID();
    EXPECT_EQ(id.size(), 36);
    EXPECT_NE(id, OTFunctions::generateUniqueID());
    const QString path = OTFunctions::generateTemporaryFilePath();
    EXPECT_TRUE(path.startsWith(QDir::tempPath()));
    EXPECT_TRUE(OTFunctions::generateTemporaryFileURL().isLocalFile());

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QString folder = OTFunctions::generateTemporaryFilePath();
    ASSERT_TRUE(QDir().mkpath(folder + "/inner"));
    OTFunctions::deleteFilesAtPaths({path, folder, path + ".missing"});
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(QFile::exists(folder));
    OTFunctions::deleteFilesAtURLs({});
}
