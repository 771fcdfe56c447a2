// Fonts and drawing need a GUI application; the tests draw offscreen.
#include "support/OffscreenGuiApplication.h"

#include <gtest/gtest.h>

#include <memory>

namespace {
class GuiEnvironment : public ::testing::Environment {
public:
    void SetUp() override { m_app = std::make_unique<OffscreenGuiApplication>("test_render"); }
    void TearDown() override { m_app.reset(); }

private:
    std::unique_ptr<OffscreenGuiApplication> m_app;
};

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new GuiEnvironment);
} // namespace
