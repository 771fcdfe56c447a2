#include "shell/application/TASingleInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using Role = TASingleInstance::Role;

// A name of this test run, so that parallel runs and a real program never meet.
QString uniqueName(const char *suffix) {
    return QStringLiteral("com.ostrel.BillfoldTest%1%2")
        .arg(QCoreApplication::applicationPid())
        .arg(QLatin1String(suffix));
}

TASingleInstance::Options localOptions(const QString &name) {
    TASingleInstance::Options options;
    options.name = name;
    options.forceLocalSocket = true;
    return options;
}

// Starts a second instance on the same transport and checks what reaches the first.
void expectHandOver(TASingleInstance &running, const TASingleInstance::Options &options) {
    QSignalSpy opened(&running, &TASingleInstance::openRequested);
    QSignalSpy activated(&running, &TASingleInstance::activateRequested);

    TASingleInstance second(options);
    auto role = second.start({QStringLiteral("relative.tadb"), QStringLiteral("/books/a b.tadb")});
    ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
    EXPECT_EQ(*role, Role::HandedOver);
    ASSERT_TRUE(opened.count() == 1 || opened.wait(5000));
    // Made absolute by the process that was given them: the running one has another folder.
    EXPECT_EQ(opened.first().first().toStringList(),
              (QStringList{QDir::current().absoluteFilePath(QStringLiteral("relative.tadb")),
                           QStringLiteral("/books/a b.tadb")}));

    TASingleInstance third(options);
    auto plain = third.start({});
    ASSERT_TRUE(plain.ok()) << plain.error().message.toStdString();
    EXPECT_EQ(*plain, Role::HandedOver);
    ASSERT_TRUE(activated.count() == 1 || activated.wait(5000));
    EXPECT_EQ(opened.count(), 1);
}

// A socket file as a killed process leaves it: bound, never listened on, never removed.
bool leaveDeadSocket(const QString &path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = QFile::encodeName(path);
    if (fd < 0 || encoded.size() >= qsizetype(sizeof address.sun_path))
        return false;
    std::copy(encoded.begin(), encoded.end(), address.sun_path);
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    ::close(fd);
    return bound;
}

} // namespace

TEST(TASingleInstance, LocalSocketHandsFilesAndActivationToTheRunningInstance) {
    const auto options = localOptions(uniqueName("Local"));
    {
        TASingleInstance running(options);
        auto role = running.start({});
        ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
        EXPECT_EQ(*role, Role::Running);
        EXPECT_EQ(running.transport(), TASingleInstance::Transport::LocalSocket);
        EXPECT_TRUE(running.localServerName().endsWith(QString::number(::getuid())));
        expectHandOver(running, options);

        // Garbage on the socket (an oversized length) is dropped and the instance carries on.
        QLocalSocket stranger;
        stranger.connectToServer(running.localServerName());
        ASSERT_TRUE(stranger.waitForConnected(2000));
        stranger.write(QByteArray("\xff\xff\xff\xff garbage", 13));
        stranger.flush();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return stranger.state() == QLocalSocket::UnconnectedState; }, 5000));
        expectHandOver(running, options);
    }
    // Once the running instance has gone, the next start runs.
    TASingleInstance next(options);
    auto role = next.start({});
    ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
    EXPECT_EQ(*role, Role::Running);
}

TEST(TASingleInstance, SocketLeftByACrashDoesNotBlockTheNextStart) {
    const auto options = localOptions(uniqueName("Stale"));
    TASingleInstance probe(options);
    const QString socketPath = QDir::temp().filePath(probe.localServerName());
    ASSERT_TRUE(leaveDeadSocket(socketPath));
    ASSERT_TRUE(QFile::exists(socketPath));

    TASingleInstance running(options);
    auto role = running.start({});
    ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
    EXPECT_EQ(*role, Role::Running);
    expectHandOver(running, options);
}

TEST(TASingleInstance, SessionBusHandsFilesAndActivationToTheRunningInstance) {
    const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    if (daemon.isEmpty())
        GTEST_SKIP() << "dbus-daemon is not installed (Debian package dbus-daemon)";
    QProcess bus;
    bus.start(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"),
                       QStringLiteral("--print-address")});
    ASSERT_TRUE(bus.waitForStarted(5000));
    ASSERT_TRUE(bus.waitForReadyRead(5000)) << bus.readAllStandardError().toStdString();
    const QString address = QString::fromUtf8(bus.readLine()).trimmed();
    ASSERT_FALSE(address.isEmpty());

    TASingleInstance::Options options;
    options.name = uniqueName("Bus");
    options.busAddress = address;
    {
        TASingleInstance running(options);
        auto role = running.start({});
        ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
        EXPECT_EQ(*role, Role::Running);
        EXPECT_EQ(running.transport(), TASingleInstance::Transport::SessionBus);
        expectHandOver(running, options);
    }
    // Leaving frees the name.
    TASingleInstance next(options);
    auto role = next.start({});
    ASSERT_TRUE(role.ok()) << role.error().message.toStdString();
    EXPECT_EQ(*role, Role::Running);

    bus.terminate();
    bus.waitForFinished(5000);
}
