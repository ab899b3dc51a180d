#include "shell/single_instance.h"

#include "shell/private_socket.h"

#include <QDir>
#include <QLocalSocket>

namespace torvane::app {
namespace {

// Ends every hand-over, so that one with an empty command, which raises the program, differs
// from a later start that only asks whether a first one runs and hangs up without a word.
constexpr char EndOfCommand = '\n';

} // namespace

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent)
    , serverName_(std::move(serverName)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::Accept);
}

QString SingleInstance::DefaultServerName() {
    // In the user's private folder: a predictable name in the shared temporary folder could be
    // taken first by another user. Where there is none, Listen fails and says so.
    std::string error;
    const std::filesystem::path folder = shell::PrivateRuntimeFolder(error);
    if (folder.empty()) {
        return QDir(QDir::tempPath()).filePath("torvane-no-private-folder/studio.sock");
    }
    return QString::fromStdString((folder / "torvane-studio.sock").string());
}

SingleInstance::ListenResult SingleInstance::Listen() {
    // Ask first: with user-only access Qt builds the socket aside and renames it into place,
    // which would quietly take the name from a running instance. A name that nobody answers on
    // was left by an instance that died, and is taken over.
    if (Send(QByteArray(), 500)) {
        return ListenResult::AnotherRuns;
    }
    QLocalServer::removeServer(serverName_);
    return server_.listen(serverName_) ? ListenResult::Listening : ListenResult::Failed;
}

void SingleInstance::ReportListenFailure(shell::MessageSink& sink) const {
    // A name without a folder is made in the temporary folder.
    const QString socket = QDir::isAbsolutePath(serverName_)
                               ? serverName_
                               : QDir(QDir::tempPath()).filePath(serverName_);
    const QString text = "Cannot make the socket " + QDir::toNativeSeparators(socket) +
                         ": is its folder missing or read-only?\r\nThe program starts, but a "
                         "later start will not find it and will run as a second program.";
    shell::ShowMessage(sink, text.toStdString(), shell::buttons::Ok, shell::icons::Warning);
}

bool SingleInstance::HandOver(const QString& command, int timeoutMs) const {
    return Send(command.toUtf8() + EndOfCommand, timeoutMs);
}

bool SingleInstance::Send(const QByteArray& bytes, int timeoutMs) const {
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (!socket.waitForConnected(timeoutMs)) {
        return false;
    }
    // A command line goes only to the user's own desktop.
    if (!shell::SameUserAtOtherEnd(static_cast<int>(socket.socketDescriptor()))) {
        socket.abort();
        return false;
    }
    if (!bytes.isEmpty()) {
        socket.write(bytes);
        socket.flush();
    }
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState) {
        socket.waitForDisconnected(timeoutMs);
    }
    return true;
}

void SingleInstance::Accept() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        // Another user's program is hung up on unheard: it may not open files in this desktop.
        if (!shell::SameUserAtOtherEnd(static_cast<int>(socket->socketDescriptor()))) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        // The command is everything the other start writes before it hangs up.
        if (socket->state() == QLocalSocket::UnconnectedState) {
            Finish(socket);
            continue;
        }
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] { Finish(socket); });
    }
}

void SingleInstance::Finish(QLocalSocket* socket) {
    QByteArray bytes = socket->readAll();
    socket->deleteLater();
    // Only asked whether this instance runs, or cut off before the end: nothing to do.
    if (!bytes.endsWith(EndOfCommand)) {
        return;
    }
    bytes.chop(1);
    const QString command = QString::fromUtf8(bytes);
    emit RaiseRequested();
    if (!command.isEmpty()) {
        emit CommandReceived(command);
    }
}

} // namespace torvane::app
