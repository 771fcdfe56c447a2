#pragma once

#include "foundation/Result.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <optional>

class QLocalServer;
class QLocalSocket;

// One running program per user. The first process to start becomes the running instance and
// listens; a later one hands its file arguments (or a plain "come to the front") to it and
// exits, so that opening a document from the file manager never starts a second program on
// the same files.
//
// The session bus carries the request when there is one (service and interface
// `com.ostrel.Billfold`, object `/com/ostrel/Billfold`, methods `Open(as)` and `Activate()`);
// without a bus, a local socket private to the user does.
class TASingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Transport { SessionBus, LocalSocket };
    enum class Role {
        // This process runs the program and receives the requests of later starts.
        Running,
        // Another process runs it and has the request: this one should exit with status 0.
        HandedOver,
    };

    struct Options {
        // The bus name, and the start of the local socket's name.
        QString name = QStringLiteral("com.ostrel.Billfold");
        // The local socket is used when there is no session bus or when this is set.
        bool forceLocalSocket = false;
        // A bus other than the user's session bus (a private test bus); empty for the session.
        QString busAddress;
        // How long a later start waits for the running instance to take its request.
        int timeoutMs = 5000;
    };

    explicit TASingleInstance(QObject *parent = nullptr);
    explicit TASingleInstance(Options options, QObject *parent = nullptr);
    ~TASingleInstance() override;

    // Becomes the running instance, or hands the paths (made absolute against the working
    // folder) to the one that runs: Open with paths, Activate with none. An error means
    // neither worked; the caller may then run on its own.
    Result<Role> start(const QStringList &paths);

    Transport transport() const { return m_transport; }
    // The local socket's name for this user.
    QString localServerName() const;

    // Receiving side, used by the bus object and the local server.
    void receiveOpen(const QStringList &paths);
    void receiveActivate();

signals:
    void openRequested(const QStringList &paths);
    void activateRequested();

private:
    std::optional<QDBusConnection> connectBus();
    Result<Role> startOnBus(QDBusConnection bus, const QStringList &paths);
    Result<Role> startOnLocalSocket(const QStringList &paths);
    Result<void> listenLocally();
    Result<void> handOverBus(QDBusConnection bus, const QStringList &paths);
    Result<void> handOverLocally(const QStringList &paths);
    void readRequest(QLocalSocket *socket);

    Options m_options;
    Transport m_transport = Transport::SessionBus;
    std::optional<Role> m_role;
    QString m_connectionName;
    QPointer<QLocalServer> m_server;
};
