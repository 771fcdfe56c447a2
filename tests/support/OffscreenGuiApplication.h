#pragma once

#include <QByteArray>
#include <QGuiApplication>

#include <memory>

// Fonts and drawing need a GUI application; tests draw on the offscreen platform unless the
// environment names another. Makes none when the process has an application already.
class OffscreenGuiApplication {
public:
    explicit OffscreenGuiApplication(const char *name)
        : m_name(name) {
        if (QCoreApplication::instance())
            return;
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        m_argv[0] = m_name.data();
        m_app = std::make_unique<QGuiApplication>(m_argc, m_argv);
    }

    OffscreenGuiApplication(const OffscreenGuiApplication &) = delete;
    OffscreenGuiApplication &operator=(const OffscreenGuiApplication &) = delete;

private:
    // The application keeps references to these: they must outlive it.
    QByteArray m_name;
    int m_argc = 1;
    char *m_argv[2] = {nullptr, nullptr};
    std::unique_ptr<QGuiApplication> m_app;
};
