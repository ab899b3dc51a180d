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
        Messages.push_back(message);
        if (message.Buttons == shell::buttons::Ok || Answers.empty()) {
            return shell::answers::Ok;
        }
        const int answer = Answers.front();
        Answers.pop_front();
        return answer;
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const auto& message : Messages) {
            texts.push_back(message.Text);
        }
        return texts;
    }

    std::deque<int> Answers;
    std::vector<shell::Message> Messages;
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
