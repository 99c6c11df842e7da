// What any user may put into a request: the whole input is the data of its envelope.

#include "Target.h"
#include "agent/app/FakeTasks.h"
#include "agent/app/Gatekeeper.h"
#include "agent/app/Requests.h"
#include "agent/bus/IncomingRequest.h"

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

/// Everybody may do everything: what stands behind it has to bear that.
class OpenGate final : public Gatekeeper {
public:
    explicit OpenGate(std::uint32_t uid) : m_uid(uid) {}
    void admit(const QDBusConnection& /*connection*/, const QString& busName, Task /*task*/,
               const QString& what, const Admitted& admitted, const Refused& /*refused*/) override {
        require(what.size() <= 6); // the log gets a command, not what somebody wrote in its place
        admitted({busName, m_uid, {m_uid}});
    }

private:
    std::uint32_t m_uid;
};

/// Only what the tasks can trust reaches them.
class CheckingTasks final : public FakeTasks {
public:
    void startFolderScan(const Caller& caller, const QString& folder, const Done& done) override {
        require(folder.startsWith(u'/') && !folder.contains(QChar::Null));
        FakeTasks::startFolderScan(caller, folder, done);
    }
    void setLogLevel(LogLevel level) override {
        require(level >= LogLevel::Error && level <= LogLevel::Debug);
        FakeTasks::setLogLevel(level);
    }
};

void ask(const QByteArray& data, std::uint32_t uid, bool scansAreOwn) {
    OpenGate gate(uid);
    CheckingTasks tasks;
    tasks.scansAreOwn = scansAreOwn;
    Requests requests(gate, tasks);
    int replies = 0;
    IncomingRequest request =
        IncomingRequest::of(QDBusMessage(), QDBusConnection(QStringLiteral("none")), data);
    request.replier = [&replies](const QJsonObject& answer) {
        ++replies;
        const QString resp = answer.value(QStringLiteral("RESP")).toString();
        require(!resp.isEmpty());
        korvale::fuzz::taken += resp == QLatin1String("OK") ? 1U : 0U;
    };
    requests.request(request);
    require(replies == 1);
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return korvale::fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    setLogLevel(LogLevel::Error);
    const QByteArray bytes = QByteArrayView(data, static_cast<qsizetype>(size)).toByteArray();
    ask(bytes, 0, false);
    ask(bytes, 1000, false);
    ask(bytes, 1000, true);
    return 0;
}
