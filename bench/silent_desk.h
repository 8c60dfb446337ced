// The person in front of a measurement: nobody.
#pragma once

#include "platform/event_desk.h"

namespace velloria::bench {

class SilentDesk : public platform::EventDesk {
protected:
    void record(const QJsonObject&) override {}
    bool answerYesNo(const QJsonObject&) override { return false; }
    std::optional<QString> answerText(const QJsonObject&) override { return std::nullopt; }
};

} // namespace velloria::bench
