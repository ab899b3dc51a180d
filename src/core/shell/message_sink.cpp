#include "shell/message_sink.h"

namespace torvane::shell {

int ShowMessage(MessageSink& sink, std::string_view text, int buttons, int icon) {
    Message message{std::string(text), buttons, icon};
    if (text.empty()) {
        const RunTimeError& error = sink.PendingError();
        message.Text = "Error(" + std::to_string(error.Number) + ")\r" + error.Description;
        message.Icon = icons::Stop;
    }
    return sink.Show(message);
}

int ShowRunTimeError(MessageSink& sink, RunTimeError error) {
    sink.SetPendingError(std::move(error));
    return ShowMessage(sink, {}, buttons::Ok, icons::None);
}

} // namespace torvane::shell
