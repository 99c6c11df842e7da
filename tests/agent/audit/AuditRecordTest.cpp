#include "agent/audit/AuditRecord.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

constexpr std::uint16_t kAny = 1326;

AuditRecord parsed(std::string_view fields) {
    const auto record = parseAuditRecord(kAny, std::string("audit(1.002:3): ").append(fields));
    EXPECT_TRUE(record) << fields;
    return record.value_or(AuditRecord());
}

TEST(AuditRecordTest, FieldsAreRead) {
    const AuditRecord record = parsed(R"(pid=77 code=0x80000000 exe="/usr/bin/a b" sig=31)");
    EXPECT_EQ(record.type, kAny);
    EXPECT_EQ(record.number("pid"), 77U);
    EXPECT_EQ(record.number("code"), 0x80000000U);
    EXPECT_EQ(record.text("exe"), "/usr/bin/a b");
    EXPECT_EQ(record.plain("sig"), "31");
    EXPECT_FALSE(record.plain("arch"));
    EXPECT_FALSE(record.text("arch"));
    EXPECT_FALSE(record.number("arch"));
}

TEST(AuditRecordTest, WhatIsNotPlainIsWrittenAsHexDigits) {
    const AuditRecord record = parsed("comm=6576696C2022636F0A78 exe=2F746D702F6100");
    EXPECT_EQ(record.text("comm"), "evil \"co\nx");
    EXPECT_EQ(record.text("exe"), "/tmp/a") << "an end of text within is dropped";
    EXPECT_EQ(parsed(R"(comm="6576696C")").text("comm"), "6576696C") << "in quotes it is a name";
}

TEST(AuditRecordTest, WhatIsNeitherQuotedNorHexIsNoText) {
    for (const char* const odd : {"comm=(null)", "comm=657", "comm=65zz", "comm=", "comm=-1+1"}) {
        EXPECT_FALSE(parsed(odd).text("comm")) << odd;
    }
}

TEST(AuditRecordTest, WhatIsNoNumberIsNone) {
    for (const char* const odd :
         {"pid=", "pid=-1", "pid=12a", "pid=0x", "pid=99999999999999999999", "pid=+1", "pid=?"}) {
        EXPECT_FALSE(parsed(odd).number("pid")) << odd;
    }
}

TEST(AuditRecordTest, TextInQuotesIsNoField) {
    const AuditRecord record = parsed(R"(comm="x pid=1 y=" pid=2)");
    EXPECT_EQ(record.number("pid"), 2U);
    EXPECT_FALSE(record.plain("y"));
}

TEST(AuditRecordTest, OfANameThatComesTwiceTheFirstCounts) {
    EXPECT_EQ(parsed("pid=1 pid=2").number("pid"), 1U);
}

TEST(AuditRecordTest, WordsThatAreNoFieldAreLeftOut) {
    const AuditRecord record = parsed("avc:  denied  { read } for  pid=5 =x \"y z\" last=1");
    EXPECT_EQ(record.number("pid"), 5U);
    EXPECT_EQ(record.number("last"), 1U);
}

TEST(AuditRecordTest, WhatIsNoRecordIsNone) {
    for (const char* const odd :
         {"", "audit", "audit(1.2:3):", "pid=1", "type=1326 audit(1.2:3): pid=1",
          "audit(1.2:3): comm=\"never closed", "audit(1.2:3): comm=\""}) {
        EXPECT_FALSE(parseAuditRecord(kAny, odd)) << odd;
    }
}

TEST(AuditRecordTest, ManyFieldsTakeABoundedPlace) {
    std::string text = "audit(1.2:3): ";
    for (int number = 0; number < 5000; ++number) {
        text += 'f' + std::to_string(number) + "=1 ";
    }
    const auto record = parseAuditRecord(kAny, text);
    ASSERT_TRUE(record);
    EXPECT_TRUE(record->plain("f63"));
    EXPECT_FALSE(record->plain("f64"));
}

} // namespace
} // namespace korvale::agent
