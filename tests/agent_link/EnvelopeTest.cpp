#include "agent_link/Envelope.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

QVariantMap replyWith(const QVariant& data) {
    return {{QStringLiteral("<DATA>"), data}};
}

TEST(Envelope, HoldsCompactJsonUnderOneEntry) {
    const QVariantMap envelope = createXPCRequest({
        {QStringLiteral("CMD_"), QStringLiteral("SCAN")},
        {QStringLiteral("START"), QStringLiteral("/home/a b/\u00fc\u4e2d \"x\"\n")},
    });
    ASSERT_EQ(envelope.size(), 1);
    EXPECT_EQ(envelope.firstKey(), QStringLiteral("<DATA>"));
    EXPECT_EQ(envelope.first().metaType(), QMetaType::fromType<QByteArray>());
    EXPECT_EQ(envelope.first().toByteArray().toStdString(),
              "{\"CMD_\":\"SCAN\",\"START\":\"/home/a b/\u00fc\u4e2d \\\"x\\\"\\n\"}");
}

TEST(Envelope, WhatCannotBeSerialisedGivesEmptyData) {
    const QString loneSurrogate(QChar(0xd800));
    for (const RequestMembers& members : {RequestMembers{{QStringLiteral("VALU"), loneSurrogate}},
                                          RequestMembers{{loneSurrogate, QStringLiteral("x")}}}) {
        const QVariantMap envelope = createXPCRequest(members);
        ASSERT_TRUE(envelope.contains(QStringLiteral("<DATA>")));
        EXPECT_EQ(envelope.first().metaType(), QMetaType::fromType<QByteArray>());
        EXPECT_TRUE(envelope.first().toByteArray().isEmpty());
    }
}

TEST(Envelope, ReadsBackWhatItHolds) {
    const auto object = decodeXPCResponse(createXPCRequest({
        {QStringLiteral("CMD_"), QStringLiteral("SLOG")},
        {QStringLiteral("VALU"), QStringLiteral("3")},
    }));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->size(), 2U);
    EXPECT_EQ((*object)["CMD_"].utf8(), "SLOG");
    EXPECT_EQ((*object)["VALU"].utf8(), "3");
}

TEST(Envelope, FurtherEntriesAreNotLookedAt) {
    QVariantMap envelope = replyWith(QByteArray(R"({"RESP":"OK"})"));
    envelope.insert(QStringLiteral("<MORE>"), 1);
    EXPECT_TRUE(ServiceReply(envelope).isOk());
}

TEST(Envelope, MalformedDataReadsLikeAnObjectWithoutMembers) {
    const QByteArray megabyte = R"({"RESP":"OK","VALU":")" + QByteArray(1 << 20, 'x');
    const QVariantMap cases[] = {
        {},
        {{QStringLiteral("DATA"), QByteArray(R"({"RESP":"OK","VALU":"x"})")}},
        replyWith(QStringLiteral(R"({"RESP":"OK","VALU":"x"})")), // a text, not bytes
        replyWith(5),
        replyWith(QVariantList{1, 2}),
        replyWith(QByteArray()),
        replyWith(QByteArray("RESP=OK")),
        replyWith(QByteArray(R"({"RESP":"OK","VALU":"x"}x)")),
        replyWith(QByteArray("{\"RESP\":\"OK\",\"VALU\":\"\xff\xfe\"}")), // not UTF-8
        replyWith(QByteArray("{\"RESP\":\"OK\",\"VALU\":\"x\"}\0", 26)),  // a C text's NUL
        replyWith(QByteArray(R"(["RESP","OK"])")),
        replyWith(QByteArray(R"("OK")")),
        replyWith(QByteArray(100000, '[')),
        replyWith(megabyte), // never ends
    };
    for (const QVariantMap& envelope : cases) {
        const ServiceReply reply(envelope);
        EXPECT_FALSE(reply.isOk());
        EXPECT_FALSE(reply.text("VALU"));
        EXPECT_EQ(reply.integer("VALU"), 0);
    }
}

TEST(Envelope, AMegabyteOfTextIsRead) {
    const QByteArray megabyte(1 << 20, 'x');
    const ServiceReply reply(replyWith(R"({"VALU":")" + megabyte + "\"}"));
    EXPECT_EQ(reply.text("VALU"), QString::fromLatin1(megabyte));
}

TEST(ServiceReply, OnlyTheExactTextOkIsSuccess) {
    const std::pair<const char*, bool> cases[] = {
        {R"({"RESP":"OK"})", true},
        {R"({"RESP":"ok"})", false},
        {R"({"RESP":"OK "})", false},
        {R"({"RESP":["OK"]})", false},
        {R"({"RESP":1})", false},
        {R"({"RESP":true})", false},
        {R"({"RESP":null})", false},
        {R"({"resp":"OK"})", false},
        {R"({})", false},
        {R"({"RESP":"no","RESP":"OK"})", true},
    };
    for (const auto& [json, ok] : cases) {
        EXPECT_EQ(ServiceReply(replyWith(QByteArray(json))).isOk(), ok) << json;
    }
}

TEST(ServiceReply, AnotherTypeThanTextCountsAsMissing) {
    for (const char* value : {"5", "true", "null", "{}", "[\"x\"]"}) {
        const ServiceReply reply(replyWith("{\"VALU\":" + QByteArray(value) + "}"));
        EXPECT_FALSE(reply.text("VALU")) << value;
    }
    EXPECT_EQ(ServiceReply(replyWith(QByteArray(R"({"VALU":""})"))).text("VALU"), QString());
}

TEST(ServiceReply, ReadsIntegersFromAnyType) {
    const std::pair<const char*, int> cases[] = {
        {"\"2\"", 2}, {"3", 3},       {"1.9", 1},  {"\" -7x\"", -7},
        {"true", 1},  {"\"all\"", 0}, {"null", 0}, {"[]", 0},
    };
    for (const auto& [value, integer] : cases) {
        const ServiceReply reply(replyWith("{\"VALU\":" + QByteArray(value) + "}"));
        EXPECT_EQ(reply.integer("VALU"), integer) << value;
    }
}

} // namespace
} // namespace korvale
