#pragma once
// What the logger tests share: a sink that answers questions from a script, and a link over a
// scripted driver whose readiness wait counts its pauses instead of sleeping.

#include "logger/logger_link.h"
#include "shell/message_sink.h"
#include "support/scripted_driver.h"

#include <chrono>
#include <deque>
#include <string>
#include <vector>

namespace torvane::logger::testing {

class AnsweringSink : public shell::MessageSink {
public:
    int Show(const shell::Message& message) override {
        messages.push_back(message);
        if (message.Buttons == shell::buttons::Ok || answers.empty()) {
            return shell::answers::Ok;
        }
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const auto& message : messages) {
            texts.push_back(message.Text);
        }
        return texts;
    }

    std::deque<int> answers;
    std::vector<shell::Message> messages;
};

struct ScriptedLink {
    ScriptedDriver Driver;
    AnsweringSink Sink;
    std::vector<std::chrono::milliseconds> Pauses;
    LoggerLink Link{Driver, Sink, [this](std::chrono::milliseconds pause) {
                        Pauses.push_back(pause);
                    }};
};

} // namespace torvane::logger::testing
