#include "shell/application/TAMenuValidation.h"

#include <gtest/gtest.h>

namespace {

using Tag = TAMenuValidation::Tag;
using State = TAMenuValidation::State;

bool enabled(int tag, const State &state) {
    return TAMenuValidation::validateMenuItem(tag, state);
}

constexpr int kAllTags[] = {Tag::ImportLumarin3,
                            Tag::ImportLumarin3Alternate,
                            Tag::NeedsDocument2103,
                            Tag::NeedsDocument2104,
                            Tag::NeedsDocument21055,
                            Tag::NeedsUnlocked2105,
                            Tag::NeedsUnlocked2106,
                            Tag::Unconditional2121,
                            Tag::Print,
                            0,
                            42};

} // namespace

TEST(TAMenuValidation, ModalWindowDisablesEverythingEvenWhenAllElseAllows) {
    const State state{.modalWindow = true,
                      .hasDocument = true,
                      .lockedWithPassword = false,
                      .importSourceExists = true,
                      .sectionCanPrint = true};
    for (int tag : kAllTags)
        EXPECT_FALSE(enabled(tag, state)) << tag;
}

TEST(TAMenuValidation, WithoutDocumentOnlyTheUnconditionalCommandsStayOn) {
    // The import file and a printing section must not count without a document behind them.
    const State state{.importSourceExists = true, .sectionCanPrint = true};
    for (int tag : {Tag::ImportLumarin3, Tag::ImportLumarin3Alternate, Tag::NeedsDocument2103,
                    Tag::NeedsDocument2104, Tag::NeedsDocument21055, Tag::NeedsUnlocked2105,
                    Tag::NeedsUnlocked2106, Tag::Print})
        EXPECT_FALSE(enabled(tag, state)) << tag;
    EXPECT_TRUE(enabled(Tag::Unconditional2121, state));
    EXPECT_TRUE(enabled(42, state));
}

TEST(TAMenuValidation, PasswordLockKeeps2121AndTheDocumentCommandsButNotTheUnlockedOnes) {
    const State locked{.hasDocument = true,
                       .lockedWithPassword = true,
                       .importSourceExists = true,
                       .sectionCanPrint = true};
    EXPECT_TRUE(enabled(Tag::Unconditional2121, locked));
    EXPECT_FALSE(enabled(Tag::NeedsUnlocked2105, locked));
    EXPECT_FALSE(enabled(Tag::NeedsUnlocked2106, locked));
    EXPECT_FALSE(enabled(Tag::ImportLumarin3, locked));
    EXPECT_FALSE(enabled(Tag::ImportLumarin3Alternate, locked));
    EXPECT_TRUE(enabled(Tag::NeedsDocument2103, locked));
    EXPECT_TRUE(enabled(Tag::NeedsDocument2104, locked));
    EXPECT_TRUE(enabled(Tag::NeedsDocument21055, locked));

    State unlocked = locked;
    unlocked.lockedWithPassword = false;
    EXPECT_TRUE(enabled(Tag::NeedsUnlocked2105, unlocked));
    EXPECT_TRUE(enabled(Tag::NeedsUnlocked2106, unlocked));
    EXPECT_TRUE(enabled(Tag::ImportLumarin3, unlocked));
}

TEST(TAMenuValidation, ImportNeedsItsSourceAndPrintingNeedsTheSection) {
    State state{.hasDocument = true};
    EXPECT_FALSE(enabled(Tag::ImportLumarin3, state));
    EXPECT_FALSE(enabled(Tag::ImportLumarin3Alternate, state));
    EXPECT_FALSE(enabled(Tag::Print, state));
    state.importSourceExists = true;
    state.sectionCanPrint = true;
    EXPECT_TRUE(enabled(Tag::ImportLumarin3Alternate, state));
    EXPECT_TRUE(enabled(Tag::Print, state));
}
