#include "HistoryFixture.h"

#include "billing/preferences/TAGlobalPreferences.h"
#include "store/TAApplicationHooks.h"

#include <QColor>

TEST_F(HistoryFixture, CustomFieldsLoseTheirDelimitersAndSurviveARoundTrip) {
    TAPreferences *prefs = preferences();
    EXPECT_TRUE(prefs->infoCustomValues().isEmpty());
    EXPECT_TRUE(prefs->infoCustomValueForColumn(QStringLiteral("x")).isNull());

    prefs->addCustomWithColumn(QStringLiteral("VAT, reg"), QStringLiteral("GB|123"));
    prefs->addCustomWithColumn(QStringLiteral("Bank – Zürich 銀行"),
                               QStringLiteral("CH93 0076 2011"));
    prefs->addCustomWithColumn(QString(), QString());
    prefs->addCustomWithColumn(QStringLiteral("Note"), QStringLiteral("a \"quoted\" %@ value"));
    EXPECT_EQ(prefs->infoCustoms(), QStringLiteral("VAT reg,GB123|Bank – Zürich 銀行,CH93 0076 "
                                                   "2011|,|Note,a \"quoted\" %@ value"));

    const QList<QVariantMap> fields = prefs->infoCustomValues();
    ASSERT_EQ(fields.size(), 4);
    EXPECT_EQ(fields.at(0).value(QStringLiteral("column")).toString(), QStringLiteral("VAT reg"));
    EXPECT_EQ(fields.at(0).value(QStringLiteral("value")).toString(), QStringLiteral("GB123"));
    EXPECT_EQ(fields.at(2).value(QStringLiteral("column")).toString(), QString());

    EXPECT_EQ(prefs->infoCustomValueForColumn(QStringLiteral("vat REG")), QStringLiteral("GB123"));
    EXPECT_EQ(prefs->infoCustomValueForColumn(QStringLiteral("BANK – ZÜRICH 銀行")),
              QStringLiteral("CH93 0076 2011"));
    EXPECT_TRUE(prefs->infoCustomValueForColumn(QString()).isNull());

    // Hand-written records that do not split in two are skipped.
    prefs->setInfoCustoms(QStringLiteral("a,b,c|good,1|lonely||x,"));
    const QList<QVariantMap> kept = prefs->infoCustomValues();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(prefs->infoCustomValueForColumn(QStringLiteral("GOOD")), QStringLiteral("1"));
    EXPECT_EQ(kept.at(1).value(QStringLiteral("column")).toString(), QStringLiteral("x"));

    prefs->deleteCustoms();
    EXPECT_TRUE(prefs->infoCustoms().isNull());
    prefs->addCustomWithColumn(QStringLiteral("A"), QStringLiteral("1"));
    EXPECT_EQ(prefs->infoCustoms(), QStringLiteral("A,1"));
}

TEST_F(HistoryFixture, SenderNameAddressAndPhoto) {
    TAPreferences *prefs = preferences();
    EXPECT_EQ(prefs->fullName(), QString());
    EXPECT_EQ(prefs->fullAddress(), QString());
    prefs->setInfoLastName(QStringLiteral("Novák"));
    EXPECT_EQ(prefs->fullName(), QStringLiteral("Novák"));
    prefs->setInfoFirstName(QStringLiteral("Jana"));
    EXPECT_EQ(prefs->fullName(), QStringLiteral("Jana Novák"));

    prefs->setInfoAddressCountry(QStringLiteral("CZ"));
    EXPECT_EQ(prefs->fullAddress(), QStringLiteral("CZ"));
    prefs->setInfoAddressStreet(QStringLiteral("Dlouhá 1"));
    prefs->setInfoAddressPostalCode(QStringLiteral("110 00"));
    EXPECT_EQ(prefs->fullAddress(), QStringLiteral("Dlouhá 1, 110 00, CZ"));

    QImage wide(4000, 1000, QImage::Format_ARGB32);
    wide.fill(QColor(10, 20, 30));
    prefs->setInfoPhotoValue(wide);
    EXPECT_TRUE(prefs->infoPhoto().startsWith("\x89PNG"));
    EXPECT_EQ(prefs->infoPhotoValue().size(), QSize(2000, 500));
    prefs->setInfoPhotoValue(QImage());
    EXPECT_TRUE(prefs->infoPhoto().isNull());
    EXPECT_TRUE(prefs->infoPhotoValue().isNull());
}

TEST_F(HistoryFixture, AddressBookCardFillsTheInfoFieldsThroughTheApplication) {
    struct Book : TAApplicationHooks {
        void updateFromAddressBook(ManagedObject *target) override {
            TAPreferences::AddressCard card;
            card.organisation = QStringLiteral("Acme");
            card.personFlags = 3;
            card.image = QImage(600, 300, QImage::Format_RGB32);
            card.image.fill(Qt::red);
            card.city = QStringLiteral("Brno");
            static_cast<TAPreferences *>(target)->updateFromCard(card);
        }
    } book;
    TAPreferences *prefs = preferences();
    prefs->setInfoFirstName(QStringLiteral("old"));
    prefs->updateFromAddressBook(); // no address book: nothing changes
    EXPECT_EQ(prefs->infoFirstName(), QStringLiteral("old"));

    {
        TAApplicationHooks::ScopedInstance withBook(&book);
        prefs->updateFromAddressBook();
    }
    // Missing values are stored as the empty text, not left null.
    for (const QString &key :
         {TAKey::infoFirstName, TAKey::infoLastName, TAKey::infoEmail, TAKey::infoPhone,
          TAKey::infoAddressCountry, TAKey::infoAddressPostalCode, TAKey::infoAddressStreet}) {
        EXPECT_FALSE(prefs->isNullForKey(key)) << key.toStdString();
        EXPECT_EQ(prefs->valueForKey(key).toString(), QStringLiteral("")) << key.toStdString();
    }
    EXPECT_EQ(prefs->infoCompany(), QStringLiteral("Acme"));
    EXPECT_TRUE(prefs->infoIsCompany());
    EXPECT_EQ(prefs->infoAddressCity(), QStringLiteral("Brno"));
    EXPECT_EQ(prefs->infoPhotoValue().size(), QSize(60, 30));
}

TEST(GlobalPreferencesTest, DefaultsAndStoredValuesLiveInTheSettingsFile) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("user.ini"));
    {
        QSettings settings(path, QSettings::IniFormat);
        TAGlobalPreferences prefs(&settings);
        EXPECT_TRUE(prefs.showWelcomeWindow());
        EXPECT_EQ(prefs.idleTime(), 300);
        prefs.setShowWelcomeWindow(false);
        prefs.setIdleTime(0); // zero is a real value, not "absent"
    }
    QSettings reread(path, QSettings::IniFormat);
    TAGlobalPreferences prefs(&reread);
    EXPECT_FALSE(prefs.showWelcomeWindow());
    EXPECT_EQ(prefs.idleTime(), 0);
    reread.setValue(QStringLiteral("idleTime"), QStringLiteral("garbage"));
    EXPECT_EQ(prefs.idleTime(), 300);
}
