#include "shell/single_instance.h"

#include <QDir>
#include <QLocalSocket>

namespace torvane::app {

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent)
    , serverName_(std::move(serverName)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::Accept);
}

QString SingleInstance::DefaultServerName() {
    // The user's name keeps two users on one machine apart; the home folder guards against two
    // users of the same name on a shared temporary folder.
    const QString user = qEnvironmentVariable("USER", "user");
    return "torvane-studio-" + user + "-" + QString::number(qHash(QDir::homePath()), 16);
}

bool SingleInstance::Listen() {
    // Ask first: with user-only access Qt builds the socket aside and renames it into place,
    // which would quietly take the name from a running instance. A name that nobody answers on
    // was left by an instance that died, and is taken over.
    if (HandOver(QString(), 500)) {
        return false;
    }
    QLocalServer::removeServer(serverName_);
    return server_.listen(serverName_);
}

bool SingleInstance::HandOver(const QString& command, int timeoutMs) const {
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (!socket.waitForConnected(timeoutMs)) {
        return false;
    }
    socket.write(command.toUtf8());
    socket.flush();
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState) {
        socket.waitForDisconnected(timeoutMs);
    }
    return true;
}

void SingleInstance::Accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        // The command is everything the other start writes before it hangs up.
        if (socket->state() == QLocalSocket::UnconnectedState) {
            Finish(socket);
            continue;
        }
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] { Finish(socket); });
    }
}

void SingleInstance::Finish(QLocalSocket* socket) {
    const QString command = QString::fromUtf8(socket->readAll());
    socket->deleteLater();
    emit RaiseRequested();
    if (!command.isEmpty()) {
        emit CommandReceived(command);
    }
}

} // namespace torvane::app
