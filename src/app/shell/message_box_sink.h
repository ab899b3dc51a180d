#pragma once
// The desktop's message sink: every message of core as a modal message box with the program's
// title, the icon and buttons the message asks for, and the answer as the program's numbers.

#include "shell/message_sink.h"

class QWidget;

namespace torvane::app {

class MessageBoxSink : public shell::MessageSink {
public:
    explicit MessageBoxSink(QWidget* owner = nullptr)
        : owner_(owner) {}
    int Show(const shell::Message& message) override;

private:
    QWidget* owner_;
};

} // namespace torvane::app
