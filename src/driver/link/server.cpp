#include "server.h"

#include <array>
#include <atomic>
#include <optional>

#include "channel.h"
#include "messages.h"
#include "request_handler.h"
#include "socket.h"

namespace torvane::link {

struct Server::Impl {
    link::Listener Listener;
    WakeSignal Wake;
    std::atomic<bool> Stopping{false};
};

namespace {

// One client's link, from its hello to its end.
class Session {
public:
    Session(DeviceCalls& device, std::chrono::milliseconds timeout)
        : device_(device)
        , timeout_(timeout) {}
    ~Session() { End(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool IsOpen() const { return channel_.IsOpen(); }
    // Bytes of a request already taken off the socket: poll() would not report them.
    bool HasBufferedRequest() const { return channel_.HasPartialFrame(); }
    int Descriptor() const { return channel_.Descriptor(); }

    // Reads the hello of a new client and opens the device for it.
    void Admit(Socket socket) {
        channel_ = Channel(std::move(socket));
        Frame hello;
        if (!ReceiveHello(channel_, hello)) {
            channel_.Close();
            return;
        }
        std::uint32_t magic = 0;
        std::uint16_t version = 0;
        PayloadReader in(hello.Payload);
        const bool understood =
            GetAll(in, magic, version) && magic == ProtocolMagic && version == ProtocolVersion;
        if (!understood) {
            SendHelloAnswer(channel_, hello.Id, Admission::VersionRefused, TLM_ERR_OPEN_FAILED,
                            TlmStatus{}, Due());
            channel_.Close();
            return;
        }
        status_ = TlmStatus{};
        const std::int32_t result = device_.Open(status_);
        const bool sent =
            SendHelloAnswer(channel_, hello.Id, Admission::Accepted, result, status_, Due());
        if (result != TLM_OK) {
            // A refused open is no link: the device never saw one begin, so it hears no Closed().
            channel_.Close();
            return;
        }
        deviceOpen_ = true;
        if (!sent || device_.DropLinkNow()) {
            End();
        }
    }

    // Tells a client that arrived while the link is held that the logger is busy.
    void TurnAway(Socket socket) const {
        Channel channel(std::move(socket));
        Frame hello;
        if (ReceiveHello(channel, hello)) {
            SendHelloAnswer(channel, hello.Id, Admission::Busy, TLM_ERR_OPEN_FAILED, TlmStatus{},
                            Due());
        }
    }

    // Serves the request that has begun to arrive; any fault ends the link.
    void ServeRequest() {
        Frame request;
        if (channel_.Receive(request, Due()) != FrameStatus::Ok || request.Answer ||
            request.Kind == MessageKind::Hello) {
            End();
            return;
        }
        Frame answer{request.Kind, true, request.Id, {}};
        PayloadWriter payload;
        if (request.Kind == MessageKind::Close) {
            PutAll(payload, std::int32_t{TLM_OK}, status_);
        } else if (!AnswerRequest(device_, status_, request, payload)) {
            End();
            return;
        }
        answer.Payload = std::move(payload.Bytes());
        if (channel_.Send(answer, Due()) != FrameStatus::Ok || request.Kind == MessageKind::Close ||
            device_.DropLinkNow()) {
            End();
        }
    }

    void End() {
        channel_.Close();
        if (deviceOpen_) {
            deviceOpen_ = false;
            device_.Closed();
        }
    }

private:
    Deadline Due() const { return Clock::now() + timeout_; }

    bool ReceiveHello(Channel& channel, Frame& hello) const {
        return channel.Receive(hello, Due()) == FrameStatus::Ok && !hello.Answer &&
               hello.Kind == MessageKind::Hello;
    }

    static bool SendHelloAnswer(Channel& channel, std::uint32_t id, Admission admission,
                                std::int32_t result, const TlmStatus& status, Deadline deadline) {
        PayloadWriter payload;
        PutAll(payload, static_cast<std::uint8_t>(admission), ProtocolVersion, result, status);
        const Frame answer{MessageKind::Hello, true, id, std::move(payload.Bytes())};
        return channel.Send(answer, deadline) == FrameStatus::Ok;
    }

    DeviceCalls& device_;
    std::chrono::milliseconds timeout_;
    Channel channel_;
    TlmStatus status_{};
    bool deviceOpen_ = false;
};

} // namespace

Server::Server()
    : impl_(std::make_unique<Impl>())
    , timeout_(ExchangeTimeoutFromEnvironment()) {
}

Server::~Server() = default;

bool Server::Listen(const Endpoint& endpoint, std::string& error) {
    if (impl_->Wake.Descriptor() < 0) {
        error = "cannot make the wake-up pipe";
        return false;
    }
    if (!impl_->Listener.Open(endpoint, error)) {
        return false;
    }
    bound_ = impl_->Listener.Bound();
    return true;
}

bool Server::Run(DeviceCalls& device) {
    if (impl_->Listener.Descriptor() < 0) {
        return false;
    }
    Session session(device, timeout_);
    for (;;) {
        if (impl_->Stopping.load()) {
            // Clients that come now find nothing rather than a listener that never answers.
            session.End();
            impl_->Listener.Close();
            return true;
        }
        if (session.HasBufferedRequest()) {
            session.ServeRequest();
            continue;
        }
        const std::array<int, 3> watched{impl_->Wake.Descriptor(), impl_->Listener.Descriptor(),
                                         session.Descriptor()};
        const std::uint32_t ready = WaitReadable(watched, std::nullopt);
        if (impl_->Stopping.load()) {
            continue;
        }
        if (ready == 0) {
            return false; // poll itself failed
        }
        // The current client first: if it has just gone, a client waiting behind it is admitted
        // rather than turned away.
        if ((ready & 4u) != 0) {
            session.ServeRequest();
        }
        if ((ready & 2u) != 0) {
            Socket client = impl_->Listener.Accept();
            if (client.IsOpen() && session.IsOpen()) {
                session.TurnAway(std::move(client));
            } else if (client.IsOpen()) {
                session.Admit(std::move(client));
            }
        }
    }
}

void Server::Stop() noexcept {
    impl_->Stopping.store(true);
    impl_->Wake.Notify();
}

} // namespace torvane::link
