#include "agent_sim/ReplyFaults.h"

#include "agent/bus/Envelope.h"
#include "agent_sim/AgentRooms.h"

#include <array>

namespace korvale::sim {
namespace {

struct Kind {
    QLatin1String name;
    FaultyReply make;
};

QDBusMessage enveloped(const QDBusMessage& request, const char* data) {
    return request.createReply(envelope(QByteArray(data)));
}

constexpr std::array kKinds{
    Kind{QLatin1String("not-dictionary"),
         [](const QDBusMessage& request) { return request.createReply(QStringLiteral("OK")); }},
    Kind{QLatin1String("wrong-signature"),
         [](const QDBusMessage& request) {
             return request.createReply(
                 QVariantList{envelope(QByteArray(R"({"RESP":"OK"})")), QStringLiteral("more")});
         }},
    Kind{QLatin1String("no-arguments"),
         [](const QDBusMessage& request) { return request.createReply(); }},
    Kind{QLatin1String("bad-json"),
         [](const QDBusMessage& request) { return enveloped(request, R"({"RESP":"OK)"); }},
    Kind{QLatin1String("bad-utf8"),
         [](const QDBusMessage& request) {
             return enveloped(request, "{\"RESP\":\"\xff\xfe\",\"VALU\":\"\xc3\"}");
         }},
    Kind{QLatin1String("list"),
         [](const QDBusMessage& request) { return enveloped(request, R"(["RESP","OK"])"); }},
    Kind{QLatin1String("wrong-types"),
         [](const QDBusMessage& request) {
             return enveloped(request, R"({"RESP":1,"VALU":{"a":[0]},"PNAME":5,"PMODE":[],)"
                                       R"("PNOTF":true})");
         }},
    Kind{QLatin1String("empty-data"),
         [](const QDBusMessage& request) { return enveloped(request, ""); }},
    Kind{QLatin1String("no-data"),
         [](const QDBusMessage& request) { return request.createReply(QVariantMap()); }},
    Kind{QLatin1String("text-data"),
         [](const QDBusMessage& request) {
             return request.createReply(
                 QVariantMap{{QStringLiteral("<DATA>"), QStringLiteral(R"({"RESP":"OK"})")}});
         }},
    Kind{QLatin1String("error"),
         [](const QDBusMessage& request) {
             return request.createErrorReply(QStringLiteral("com.korvale.agent_server.Failed"),
                                             QStringLiteral("The agent was told to fail."));
         }},
};

} // namespace

FaultyReply faultyReply(const QString& kind) {
    for (const Kind& known : kKinds) {
        if (known.name == kind) {
            return known.make;
        }
    }
    return nullptr;
}

QStringList faultyReplyKinds() {
    QStringList names;
    for (const Kind& known : kKinds) {
        names.append(known.name);
    }
    return names;
}

} // namespace korvale::sim
