// libFuzzer target of the link on libtlm's side: the input is all that a logger sends back. A
// thread plays the logger on a private socket: it takes the connection, sends the input and hangs
// up; libtlm meanwhile opens the link and makes the calls of a download window (status, file
// count and list, the transfer, the setting), reading whatever answers arrive.
//
// Beyond the sanitizers: every call returns, with a result code of tlm.h or a device result.

#include "fuzz_workspace.h"

#include "tlm.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace {

using namespace torvane;

class FakeLogger {
public:
    FakeLogger()
        : work_("fuzz-link-client") {
        const std::string path = (work_.Root() / "logger.sock").string();
        listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
        fuzz::Require(::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) ==
                              0 &&
                          ::listen(listener_, 4) == 0,
                      "the fake logger listens");
        ::setenv("TORVANE_LOGGER", ("unix:" + path).c_str(), 1);
        ::setenv("TORVANE_LOGGER_TIMEOUT_MS", "200", 1);
    }
    ~FakeLogger() { ::close(listener_); }

    // Answers the next connection with bytes, then hangs up once the other end has.
    std::thread Serve(std::vector<std::uint8_t> bytes) const {
        return std::thread([this, bytes = std::move(bytes)] {
            const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            if (client < 0) {
                return;
            }
            std::size_t sent = 0;
            while (sent < bytes.size()) {
                const ssize_t count =
                    ::send(client, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
                if (count <= 0) {
                    break;
                }
                sent += static_cast<std::size_t>(count);
            }
            ::shutdown(client, SHUT_WR);
            char drain[4096];
            while (::recv(client, drain, sizeof drain, 0) > 0) {
            }
            ::close(client);
        });
    }

private:
    fuzz::Workspace work_;
    int listener_ = -1;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FakeLogger logger;
    std::thread serving = logger.Serve({data, data + size});
    TlmStatus status{};
    if (TLM_Open(&status) == TLM_OK) {
        GetStatus(&status);
        const std::int32_t count = GetTheNumberofFiles(&status);
        TlmDownloadEntry entries[16]{};
        GetTheDownloadList(&status, static_cast<std::int16_t>(count > 0 && count < 16 ? count : 16),
                           entries);
        TlmSettingData setting{};
        GetTheSettingData(&status, &setting);
        std::uint8_t error[TLM_ERROR_INFO_SIZE];
        GetTheErrorInfo(&status, error, sizeof error);
    }
    TLM_Close(&status);
    serving.join();
    return 0;
}
