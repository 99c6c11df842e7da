// A reply of the agent, given to the handler of every request, and as an unsolicited message.

#include "InputFiles.h"
#include "Surroundings.h"
#include "agent_link/Envelope.h"
#include "agent_link/RequestChannel.h"
#include "agent_link/ServiceCommands.h"
#include "core/StatusPoll.h"
#include "model/HostCache.h"
#include "model/Values.h"

#include <vector>

using namespace korvale;

namespace {

class KeepingChannel final : public RequestChannel {
public:
    void send(const QVariantMap& /*envelope*/, ReplyHandler handler) override {
        handlers.push_back(std::move(handler));
    }
    std::unique_ptr<ReplyQueue> sendOnPrivateQueue(const QVariantMap& /*envelope*/,
                                                   ReplyHandler /*handler*/) override {
        return std::make_unique<ReplyQueue>();
    }
    [[nodiscard]] std::uint32_t serviceLife() const override { return 1; }

    std::vector<ReplyHandler> handlers;
};

/// Position of the log level that the menu shows, as it asks for the agent's.
constexpr int checkedLevel = 2;

void sendEverything(ServiceCommands& service, StatusPoll& poll) {
    const auto ignored = [](int /*before*/, int /*now*/) {};
    service.forwardFolderScan(QStringLiteral("/f"));
    service.scanBackground();
    service.stopScan();
    service.checkUpdates();
    service.checkPolicyUpdates();
    service.readLogLevel(checkedLevel, ignored);
    service.logging(3, ignored);
    service.checkDriverConnection();
    poll.timerFired(); // name, policy, its time, version
}

/// A reply dictionary: the whole input is its data, or its data under another type or name.
void answerAll(const QVariantMap& envelope) {
    static const fuzz::InputFolder folder;
    const ServiceReply reply(envelope);
    AppState state;
    state.driverConnected = false;
    fuzz::NoDefaults defaults;
    fuzz::StoppedClock clock;
    HostCache hostCache(defaults, folder.path());
    fuzz::SilentDisplays displays;
    KeepingChannel channel;
    ServiceCommands service(state, channel, displays, displays);
    StatusPoll poll(state, {clock, hostCache, service, displays, displays, displays},
                    UpdaterStatusFolder(folder.path()));
    sendEverything(service, poll);
    fuzz::require(channel.handlers.size() == 12);
    for (const ReplyHandler& handler : channel.handlers) {
        handler(&reply);
        fuzz::require(!state.driverConnected); // no reply ever says that it is
    }
    fuzz::require(reply.isOk() == (reply.text("RESP") == QStringLiteral("OK")));
    const std::int32_t told = reply.integer("VALU");
    fuzz::require(state.currentLogLevel == (reply.isOk() ? 3 : told == checkedLevel ? -1 : told));
    fuzz::require(state.customName == reply.text("VALU").value_or(QString()));
    fuzz::require(state.policyShowNotifications == (reply.text("PNOTF") == QStringLiteral("OK")));
    fuzz::require(state.customName.isValidUtf16() && state.policyName.isValidUtf16());
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::CheckingSink sink;
    const QByteArray bytes = QByteArrayView(data, static_cast<qsizetype>(size)).toByteArray();
    const QString entry = QStringLiteral("<DATA>");
    const auto decoded = decodeXPCResponse({{entry, bytes}});
    fuzz::taken += decoded ? 1U : 0U;
    if (decoded) {
        static_cast<void>(textOnly((*decoded)["SondarNotificationMessage"]));
    }
    answerAll({{entry, bytes}});
    fuzz::require(!decodeXPCResponse({{entry, QString::fromUtf8(bytes)}})); // no byte string
    fuzz::require(!decodeXPCResponse({{QString::fromUtf8(bytes), bytes}}) || bytes == "<DATA>");
    return 0;
}
