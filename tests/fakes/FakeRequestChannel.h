#pragma once

#include "agent_link/Envelope.h"
#include "agent_link/RequestChannel.h"

#include <QByteArray>

#include <optional>
#include <utility>
#include <vector>

namespace korvale::fakes {

/// Keeps what is sent; the test answers when it likes.
class FakeRequestChannel final : public RequestChannel {
public:
    struct Request {
        QByteArray json;
        bool onPrivateQueue = false;
        ReplyHandler handler;
    };

    void send(const QVariantMap& envelope, ReplyHandler handler) override {
        keep(envelope, false, std::move(handler));
    }
    std::unique_ptr<ReplyQueue> sendOnPrivateQueue(const QVariantMap& envelope,
                                                   ReplyHandler handler) override {
        setUp();
        keep(envelope, true, std::move(handler));
        if (failsAtOnce) {
            answerWithError();
        }
        return std::make_unique<ReplyQueue>();
    }

    [[nodiscard]] std::uint32_t serviceLife() const override { return life; }

    /// Answers the latest request.
    void answer(const QByteArray& json) const {
        const ServiceReply reply(QVariantMap{{QStringLiteral("<DATA>"), json}});
        requests.back().handler(&reply);
    }
    void answerWithError() const { requests.back().handler(nullptr); }

    [[nodiscard]] std::vector<QByteArray> sent() const {
        std::vector<QByteArray> texts;
        for (const Request& request : requests) {
            texts.push_back(request.json);
        }
        return texts;
    }

    std::vector<Request> requests;
    bool failsAtOnce = false;            ///< as without any connection; private queue only
    std::function<void()> setUp = [] {}; ///< what reaching the bus takes; private queue only
    std::uint32_t life = 0;

private:
    void keep(const QVariantMap& envelope, bool onPrivateQueue, ReplyHandler handler) {
        requests.push_back({envelope.value(QStringLiteral("<DATA>")).toByteArray(), onPrivateQueue,
                            std::move(handler)});
    }
};

} // namespace korvale::fakes
