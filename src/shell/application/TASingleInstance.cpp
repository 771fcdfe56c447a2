#include "shell/application/TASingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDataStream>
#include <QEventLoop>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <QtEndian>

#include <functional>

#include <unistd.h>

namespace {

const QString kObjectPath = QStringLiteral("/com/ostrel/Billfold");
const QString kInterface = QStringLiteral("com.ostrel.Billfold");
const QString kOpen = QStringLiteral("open");
const QString kActivate = QStringLiteral("activate");
// A request is a handful of paths; anything larger is not from this program.
constexpr quint32 kMaxRequestBytes = 1 << 20;
constexpr char kAcknowledged = '\x01';

QStringList absolutePaths(const QStringList &paths) {
    QStringList absolute;
    for (const QString &path : paths)
        absolute << QFileInfo(path).absoluteFilePath();
    return absolute;
}

// The local socket's request: a big-endian length, then the command and the paths in
// QDataStream form.
QByteArray encodeRequest(const QStringList &paths) {
    QByteArray payload;
    QDataStream out(&payload, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << (paths.isEmpty() ? kActivate : kOpen) << paths;
    QByteArray frame(sizeof(quint32), Qt::Uninitialized);
    qToBigEndian(quint32(payload.size()), frame.data());
    return frame + payload;
}

// Runs the event loop until the condition holds, the socket drops or the time is up. The
// running instance may live in this very thread (in tests), so blocking waits would starve it.
bool waitFor(QLocalSocket &socket, const std::function<bool()> &done, int timeoutMs) {
    QEventLoop loop;
    auto check = [&] {
        if (done() || socket.state() == QLocalSocket::UnconnectedState)
            loop.quit();
    };
    QObject::connect(&socket, &QLocalSocket::connected, &loop, check);
    QObject::connect(&socket, &QLocalSocket::readyRead, &loop, check);
    QObject::connect(&socket, &QLocalSocket::errorOccurred, &loop, check);
    QObject::connect(&socket, &QLocalSocket::disconnected, &loop, check);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!done() && socket.state() != QLocalSocket::UnconnectedState)
        loop.exec();
    return done();
}

} // namespace

// The object the running instance shows on the bus. Only public slots are exported, so the
// two methods live here rather than on TASingleInstance itself.
class TASingleInstanceBusObject : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.ostrel.Billfold")
public:
    explicit TASingleInstanceBusObject(TASingleInstance *owner)
        : QObject(owner)
        , m_owner(owner) {}

public slots:
    void Open(const QStringList &paths) { m_owner->receiveOpen(paths); }
    void Activate() { m_owner->receiveActivate(); }

private:
    TASingleInstance *m_owner;
};

TASingleInstance::TASingleInstance(QObject *parent)
    : TASingleInstance(Options{}, parent) {}

TASingleInstance::TASingleInstance(Options options, QObject *parent)
    : QObject(parent)
    , m_options(std::move(options)) {}

TASingleInstance::~TASingleInstance() {
    if (m_server)
        m_server->close();
    if (m_transport == Transport::SessionBus && m_role == Role::Running) {
        // Released by a call rather than by hanging up, so that a start right after this
        // finds the name free.
        QDBusConnection bus = m_connectionName.isEmpty() ? QDBusConnection::sessionBus()
                                                         : QDBusConnection(m_connectionName);
        bus.unregisterObject(kObjectPath);
        bus.interface()->unregisterService(m_options.name);
    }
    if (!m_connectionName.isEmpty())
        QDBusConnection::disconnectFromBus(m_connectionName);
}

QString TASingleInstance::localServerName() const {
    return m_options.name + QLatin1Char('-') + QString::number(::getuid());
}

Result<TASingleInstance::Role> TASingleInstance::start(const QStringList &paths) {
    const QStringList absolute = absolutePaths(paths);
    const auto bus = m_options.forceLocalSocket ? std::nullopt : connectBus();
    m_transport = bus ? Transport::SessionBus : Transport::LocalSocket;
    Result<Role> role = bus ? startOnBus(*bus, absolute) : startOnLocalSocket(absolute);
    if (role)
        m_role = *role;
    return role;
}

std::optional<QDBusConnection> TASingleInstance::connectBus() {
    if (m_options.busAddress.isEmpty()) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        return bus.isConnected() ? std::optional(bus) : std::nullopt;
    }
    // A connection of its own, so that two instances in one process meet as two clients.
    m_connectionName = QStringLiteral("billfold-single-instance-%1").arg(quintptr(this));
    QDBusConnection bus = QDBusConnection::connectToBus(m_options.busAddress, m_connectionName);
    if (bus.isConnected())
        return bus;
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_connectionName.clear();
    return std::nullopt;
}

Result<TASingleInstance::Role> TASingleInstance::startOnBus(QDBusConnection bus,
                                                            const QStringList &paths) {
    auto *object = new TASingleInstanceBusObject(this);
    if (!bus.registerObject(kObjectPath, object, QDBusConnection::ExportAllSlots))
        return Error{ErrorCode::Generic, tr("Billfold could not offer its object on the session "
                                            "bus: %1")
                                             .arg(bus.lastError().message())};
    const auto reply =
        bus.interface()->registerService(m_options.name, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        bus.unregisterObject(kObjectPath);
        return Error{ErrorCode::Generic,
                     tr("Billfold could not take its name on the session bus: %1")
                         .arg(reply.error().message())};
    }
    if (reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return Role::Running;
    bus.unregisterObject(kObjectPath);
    delete object;
    if (auto handed = handOverBus(bus, paths); !handed)
        return handed.error();
    return Role::HandedOver;
}

Result<void> TASingleInstance::handOverBus(QDBusConnection bus, const QStringList &paths) {
    QDBusMessage call = QDBusMessage::createMethodCall(m_options.name, kObjectPath, kInterface,
                                                       paths.isEmpty() ? QStringLiteral("Activate")
                                                                       : QStringLiteral("Open"));
    if (!paths.isEmpty())
        call << paths;
    // BlockWithGui keeps events flowing while the running instance answers.
    const QDBusMessage reply = bus.call(call, QDBus::BlockWithGui, m_options.timeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        return Error{ErrorCode::Generic,
                     tr("Billfold is running but did not answer: %1. Quit it, or end it in the "
                        "system monitor, and start Billfold again.")
                         .arg(reply.errorMessage())};
    return {};
}

Result<TASingleInstance::Role> TASingleInstance::startOnLocalSocket(const QStringList &paths) {
    // Asked first, since listening with access options replaces a socket that is in use.
    if (handOverLocally(paths))
        return Role::HandedOver;
    // Nobody answers on the socket: a crashed or hung instance left it behind.
    QLocalServer::removeServer(localServerName());
    if (auto listening = listenLocally(); !listening)
        return listening.error();
    return Role::Running;
}

Result<void> TASingleInstance::listenLocally() {
    auto *server = new QLocalServer(this);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(localServerName())) {
        const QString reason = server->errorString();
        delete server;
        return Error{ErrorCode::Generic, tr("Billfold could not listen for later starts on %1: %2")
                                             .arg(localServerName(), reason)};
    }
    connect(server, &QLocalServer::newConnection, this, [this, server] {
        while (QLocalSocket *socket = server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this,
                    [this, socket] { readRequest(socket); });
            readRequest(socket);
        }
    });
    m_server = server;
    return {};
}

Result<void> TASingleInstance::handOverLocally(const QStringList &paths) {
    QLocalSocket socket;
    socket.connectToServer(localServerName());
    const int timeout = m_options.timeoutMs;
    if (!waitFor(
            socket, [&] { return socket.state() == QLocalSocket::ConnectedState; }, timeout))
        return Error{ErrorCode::Generic, socket.errorString()};
    socket.write(encodeRequest(paths));
    if (!waitFor(
            socket, [&] { return socket.bytesAvailable() > 0; }, timeout))
        return Error{ErrorCode::Generic, tr("The running Billfold did not answer.")};
    char answer = 0;
    if (!socket.getChar(&answer) || answer != kAcknowledged)
        return Error{ErrorCode::Generic, tr("The running Billfold refused the request.")};
    socket.disconnectFromServer();
    return {};
}

void TASingleInstance::readRequest(QLocalSocket *socket) {
    quint32 length = 0;
    if (socket->bytesAvailable() < qint64(sizeof length))
        return;
    socket->peek(reinterpret_cast<char *>(&length), sizeof length);
    length = qFromBigEndian(length);
    if (length > kMaxRequestBytes) {
        socket->abort();
        return;
    }
    if (socket->bytesAvailable() < qint64(sizeof length + length))
        return;
    socket->skip(sizeof length);
    QDataStream in(socket->read(length));
    in.setVersion(QDataStream::Qt_6_0);
    QString command;
    QStringList paths;
    in >> command >> paths;
    if (in.status() != QDataStream::Ok || (command != kOpen && command != kActivate)) {
        socket->abort();
        return;
    }
    socket->putChar(kAcknowledged);
    socket->flush();
    if (command == kOpen)
        receiveOpen(paths);
    else
        receiveActivate();
}

// Requests are passed on from the event loop, so that the other process has its answer
// before a document opens and perhaps asks for a password.
void TASingleInstance::receiveOpen(const QStringList &paths) {
    QMetaObject::invokeMethod(
        this, [this, paths] { emit openRequested(paths); }, Qt::QueuedConnection);
}

void TASingleInstance::receiveActivate() {
    QMetaObject::invokeMethod(
        this, [this] { emit activateRequested(); }, Qt::QueuedConnection);
}

#include "TASingleInstance.moc"
