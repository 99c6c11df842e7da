#include "agent_sim/ReplyFaults.h"

#include "agent/bus/Envelope.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace korvale::sim {
namespace {

QDBusMessage faulty(const char* kind) {
    const QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
        QStringLiteral("com.korvale.agent_server"), QStringLiteral("Request"));
    return faultyReply(QLatin1String(kind))(request);
}

QByteArray dataOf(const char* kind) {
    const QVariantMap entries = faulty(kind).arguments().value(0).toMap();
    return entries.value(QStringLiteral("<DATA>")).toByteArray();
}

TEST(ReplyFaults, EveryKindIsKnown) {
    for (const QString& kind : faultyReplyKinds()) {
        EXPECT_NE(faultyReply(kind), nullptr) << kind.toStdString();
    }
    EXPECT_EQ(faultyReply(QStringLiteral("nonsense")), nullptr);
}

TEST(ReplyFaults, SomeAreNoDictionary) {
    EXPECT_EQ(faulty("error").type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(faulty("not-dictionary").arguments(), QVariantList{QStringLiteral("OK")});
    EXPECT_EQ(faulty("wrong-signature").arguments().size(), 2);
    EXPECT_TRUE(faulty("no-arguments").arguments().isEmpty());
}

TEST(ReplyFaults, SomeAreDictionariesWithoutUsableData) {
    EXPECT_TRUE(faulty("no-data").arguments().value(0).toMap().isEmpty());
    EXPECT_EQ(faulty("text-data").arguments().value(0).toMap().value(QStringLiteral("<DATA>")),
              QVariant(QStringLiteral(R"({"RESP":"OK"})")));
    EXPECT_TRUE(dataOf("empty-data").isEmpty());
    EXPECT_TRUE(QJsonDocument::fromJson(dataOf("bad-json")).isNull());
    EXPECT_TRUE(QJsonDocument::fromJson(dataOf("bad-utf8")).isNull());
    EXPECT_TRUE(QJsonDocument::fromJson(dataOf("list")).isArray());
    EXPECT_FALSE(QJsonDocument::fromJson(dataOf("wrong-types"))
                     .object()
                     .value(QStringLiteral("RESP"))
                     .isString());
}

} // namespace
} // namespace korvale::sim
