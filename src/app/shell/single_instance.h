#pragma once
// One running desktop per user. The first start listens on a local socket that only its user
// can reach; a later start connects, hands over its command line as "LOAD" + the line (or
// nothing when it has none) and ends. The first instance raises itself, or its topmost dialog,
// on every hand-over, and receives the command as its frame's link command.

#include "shell/message_sink.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

class QLocalSocket;

namespace torvane::app {

class SingleInstance : public QObject {
    Q_OBJECT
public:
    // serverName: one per user; DefaultServerName() unless a test wants its own.
    explicit SingleInstance(QString serverName = DefaultServerName(), QObject* parent = nullptr);

    static QString DefaultServerName();

    enum class ListenResult {
        Listening,   // this process is the first instance
        AnotherRuns, // another instance answered; asking does not raise it
        Failed,      // nobody answered, yet the socket cannot be made here
    };
    Q_ENUM(ListenResult)

    // Becomes the first instance unless another one answers. A name left behind by an instance
    // that died is taken over.
    ListenResult Listen();
    // Tells the operator why Listen failed: the program runs, but a later start will not find it.
    void ReportListenFailure(shell::MessageSink& sink) const;
    // Connects to the running instance and hands over the command ("" only raises it). False
    // when no instance answers within the time limit.
    bool HandOver(const QString& command, int timeoutMs = 3000) const;

signals:
    // A later start asked to be seen: raise the program.
    void RaiseRequested();
    // A later start handed over a non-empty command ("LOAD" + its command line).
    void CommandReceived(const QString& command);

private:
    // Connects and writes the bytes (none for a mere question); false when nobody answers.
    bool Send(const QByteArray& bytes, int timeoutMs) const;
    void Accept();
    void Finish(QLocalSocket* socket);

    QString serverName_;
    QLocalServer server_;
};

} // namespace torvane::app
