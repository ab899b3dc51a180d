#pragma once
// Steps that report an unexpected failure as a run-time error and give false, as the window's
// file work does, instead of letting an exception leave core.

#include "shell/message_sink.h"

#include <exception>
#include <new>

namespace torvane::load {

template <typename Step> bool RunReportingErrors(shell::MessageSink& sink, Step&& step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        shell::ShowRunTimeError(sink, {7, "Out of memory"});
    } catch (const std::exception& error) {
        shell::ShowRunTimeError(sink, {5, error.what()});
    }
    return false;
}

} // namespace torvane::load
