#pragma once

#include "agent_link/Envelope.h"
#include "agent_link/ServiceChannel.h"
#include "core/base/AppState.h"
#include "fakes/BusAgent.h"
#include "fakes/PrivateBus.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/WaitUntil.h"
#include "platform/SystemBus.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace korvale {

/// The program's side of the link on a bus of its own.
class LinkFixture : public testing::Test {
protected:
    /// What became of one request.
    struct Outcome {
        int replies = 0;
        bool dictionary = false;
        bool ok = false;
        QString value;
    };

    void joinBus() {
        daemon.start();
        bus.start();
        channel.connectToService();
        ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
    }

    /// Sends a request; `outcome` has to live as long as the fixture.
    void request(Outcome& outcome, const QString& code = QStringLiteral("CHKU")) {
        channel.send(createXPCRequest({{QStringLiteral("CMD_"), code}}),
                     [&outcome](const ServiceReply* reply) {
                         ++outcome.replies;
                         outcome.dictionary = reply != nullptr;
                         outcome.ok = reply != nullptr && reply->isOk();
                         outcome.value =
                             reply != nullptr ? reply->text("VALU").value_or(QString()) : QString();
                     });
    }
    Outcome requestAndWait() {
        Outcome outcome;
        request(outcome);
        EXPECT_TRUE(waitUntil([&outcome] { return outcome.replies > 0; }));
        return outcome;
    }

    [[nodiscard]] long logged(const std::string& line) const {
        const std::vector<std::string> lines = log.lines();
        return std::count(lines.begin(), lines.end(), line);
    }
    [[nodiscard]] long interruptions() const {
        return logged("INFO \"client received event: Connection interrupted\"");
    }
    [[nodiscard]] long invalidations() const {
        return logged("INFO \"client received event: Connection invalid\"");
    }

    static BusAgent::Answer answerWith(const QByteArray& json) {
        return [json](const QDBusMessage& message) -> std::optional<QDBusMessage> {
            return message.createReply(envelopeWith(json));
        };
    }
    static std::optional<QDBusMessage> never(const QDBusMessage& /*request*/) {
        return std::nullopt;
    }

    PrivateBus daemon;
    AppState state;
    fakes::RecordingDisplays displays{state};
    RecordingLogSink log;
    SystemBus bus;
    ServiceChannel channel{bus, displays};
};

} // namespace korvale
