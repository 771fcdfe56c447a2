#include "toolkit/OTFormatter.h"

#include <gtest/gtest.h>

TEST(OTFormatter, PartialValidation) {
    using F = OTFormatter;
    EXPECT_TRUE(F::isPartialStringValid("", 0, "1", 1, 0, true).valid);

    const auto refused = F::isPartialStringValid("12a", 3, "12", 2, 0, false);
    EXPECT_TRUE(refused.refused);
    EXPECT_EQ(refused.errorDescription, "Invalid characters");
    EXPECT_TRUE(F::isPartialStringValid("1,2.3", 5, "1", 1, 0, false).text == "1,2.3");

    // Deleting back onto a group separator takes the character before it too.
    const auto shrunk = F::isPartialStringValid("12345678901", 9, "123456789012", 10, 0, true);
    EXPECT_FALSE(shrunk.valid);
    EXPECT_EQ(shrunk.location, 8);
    EXPECT_EQ(shrunk.text, "1234567901"); // q = 8 - 8 / 5 = 7
    EXPECT_EQ(F::isPartialStringValid("abcdef", 4, "abcdefg", 5, 0, false).text, "abcdf");
    EXPECT_EQ(F::isPartialStringValid("abcdef", 4, "abcdefg", 5, 0, true).text, "abcef");
    EXPECT_EQ(F::isPartialStringValid("abcdef", 4, "abcdefg", 5, 2, true).text, "abcdef");
    EXPECT_EQ(F::isPartialStringValid("abcdef", 5, "abcdefg", 6, 0, true).text, "abcdef");

    auto amount = OTFormatter::amountFormatter();
    EXPECT_EQ(amount->kind(), OTFormatter::Kind::Amount);
    EXPECT_EQ(OTFormatter::percentageFormatter()->kind(), OTFormatter::Kind::Percentage);
    amount->setOriginal("12", 2);
    QString input = "12x";
    int pos = 3;
    EXPECT_EQ(amount->validate(input, pos), QValidator::Invalid);
    input = "12.5";
    pos = 4;
    EXPECT_EQ(amount->validate(input, pos), QValidator::Acceptable);
    EXPECT_EQ(input, "12.5");
}
