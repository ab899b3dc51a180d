#pragma once
// Limits the size of files this process writes, as a full disk would, for as long as the object
// lives; the write that passes the limit fails with EFBIG instead of raising SIGXFSZ.

#include <csignal>
#include <sys/resource.h>

namespace torvane::testing {

class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        savedSignal_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limited = saved_;
        limited.rlim_cur = bytes;
        active_ = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, savedSignal_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    bool Active() const { return active_; }

private:
    rlimit saved_{};
    void (*savedSignal_)(int) = nullptr;
    bool active_ = false;
};

} // namespace torvane::testing
