// Fonts and drawing need a GUI application; the tests draw offscreen.
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {
class GuiEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "test_render";
        static char *argv[] = {name, nullptr};
        m_app = std::make_unique<QGuiApplication>(argc, argv);
    }
    void TearDown() override { m_app.reset(); }

private:
    std::unique_ptr<QGuiApplication> m_app;
};

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new GuiEnvironment);
} // namespace
