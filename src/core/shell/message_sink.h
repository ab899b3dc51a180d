#pragma once
// The program's one way to tell the operator something. Core code never shows anything: it
// hands a message to a sink, which the desktop shows as a message box and the command-line
// tool prints.

#include <string>
#include <string_view>
#include <vector>

namespace torvane::shell {

namespace buttons {
inline constexpr int Ok = 0;
inline constexpr int OkCancel = 1;
inline constexpr int YesNoCancel = 3;
inline constexpr int YesNo = 4;
} // namespace buttons

namespace icons {
inline constexpr int None = 0;
inline constexpr int Stop = 16;
inline constexpr int Question = 32;
inline constexpr int Warning = 48;
inline constexpr int Information = 64;
} // namespace icons

namespace answers {
inline constexpr int Ok = 1;
inline constexpr int Cancel = 2;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
} // namespace answers

struct Message {
    std::string Text;
    int Buttons = buttons::Ok;
    int Icon = icons::None;
};

// An unexpected failure that a routine could not handle itself: a number and a description.
struct RunTimeError {
    int Number = 0;
    std::string Description;
};

class MessageSink {
public:
    virtual ~MessageSink() = default;
    // Shows the message and returns the operator's answer (answers::...).
    virtual int Show(const Message& message) = 0;

    // The failure that an empty message text reports; cleared by ClearPendingError.
    void SetPendingError(RunTimeError error) { pending_ = std::move(error); }
    void ClearPendingError() { pending_ = {}; }
    const RunTimeError& PendingError() const { return pending_; }

private:
    RunTimeError pending_;
};

// The rules of the program's message box: an empty text reports the pending run-time error as
// "Error(n)", a carriage return and its description, always with the stop icon.
int ShowMessage(MessageSink& sink, std::string_view text, int buttons, int icon);

// Reports an unexpected failure through the empty-text rule.
int ShowRunTimeError(MessageSink& sink, RunTimeError error);

// Keeps every message and answers with a scripted answer (default OK); for tests and for
// batch runs that must not stop to ask.
class RecordingSink : public MessageSink {
public:
    explicit RecordingSink(int answer = answers::Ok)
        : answer_(answer) {}
    int Show(const Message& message) override {
        Messages.push_back(message);
        return answer_;
    }
    void SetAnswer(int answer) { answer_ = answer; }
    std::vector<Message> Messages;

private:
    int answer_;
};

} // namespace torvane::shell
