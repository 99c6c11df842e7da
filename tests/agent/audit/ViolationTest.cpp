#include "agent/audit/Violation.h"

#include <gtest/gtest.h>
#include <linux/audit.h>

namespace korvale::agent {
namespace {

std::optional<Violation> of(std::uint16_t type, const std::string& fields) {
    const auto record = parseAuditRecord(type, "audit(1795323249.711:2): " + fields);
    EXPECT_TRUE(record) << fields;
    return record ? violationOf(*record) : std::nullopt;
}

/// As kernels 6.1 and 6.18 write it.
std::string killed(const std::string& code = "0x80000000",
                   const std::string& exe = R"(exe="/usr/bin/viewer")") {
    return "auid=4294967295 uid=1000 gid=1000 ses=4294967295 subj=unconfined pid=22908 "
           "comm=\"viewer\" " +
           exe + " sig=31 arch=c000003e syscall=110 compat=0 ip=0x7fa61c76d829 code=" + code;
}

TEST(ViolationTest, AProcessThatItsFilterKilledIsTerminated) {
    const Violation violation{22908, "/usr/bin/viewer", true, "system call 110"};
    EXPECT_EQ(of(AUDIT_SECCOMP, killed()), violation);
    EXPECT_EQ(of(AUDIT_SECCOMP, killed("0x0")), violation) << "its thread alone";
}

TEST(ViolationTest, ACallThatWasOnlyLoggedOrRefusedIsNone) {
    for (const char* const code :
         {"0x7ffc0000", "0x50001", "0x30000", "0x7fff0000", "0x7fc00000", "", "?"}) {
        EXPECT_FALSE(of(AUDIT_SECCOMP, killed(code))) << code;
    }
}

TEST(ViolationTest, WithoutAnExecutableTheNameCounts) {
    EXPECT_EQ(of(AUDIT_SECCOMP, killed("0x0", "exe=(null)"))->program, "viewer");
    EXPECT_EQ(of(AUDIT_SECCOMP, killed("0x0", ""))->program, "viewer");
    EXPECT_EQ(of(AUDIT_SECCOMP, killed("0x0", "exe=2F746D702F61202864656C6574656429"))->program,
              "/tmp/a (deleted)");
}

TEST(ViolationTest, WithoutAProcessOrANameThereIsNone) {
    EXPECT_FALSE(of(AUDIT_SECCOMP, R"(exe="/a" code=0x0)"));
    EXPECT_FALSE(of(AUDIT_SECCOMP, R"(pid=0 exe="/a" code=0x0)"));
    EXPECT_FALSE(of(AUDIT_SECCOMP, R"(pid=4294967297 exe="/a" code=0x0)"));
    EXPECT_FALSE(of(AUDIT_SECCOMP, "pid=5 code=0x0"));
    EXPECT_FALSE(of(AUDIT_SECCOMP, R"(pid=5 exe="" comm="" code=0x0)"));
}

TEST(ViolationTest, WhatAProfileDeniesIsBlocked) {
    EXPECT_EQ(of(AUDIT_AVC,
                 R"(apparmor="DENIED" operation="open" class="file" profile="/usr/sbin/cupsd" )"
                 R"(name="/etc/shadow" pid=812 comm="cupsd" requested_mask="r" denied_mask="r" )"
                 "fsuid=0 ouid=0"),
              (Violation{812, "/usr/sbin/cupsd", false, "open /etc/shadow"}));
    EXPECT_EQ(of(AUDIT_AVC,
                 R"(apparmor="DENIED" operation="capable" profile="/usr/sbin/cups-browsed" )"
                 R"(pid=901 comm="cups-browsed" capability=23  capname="sys_nice")"),
              (Violation{901, "/usr/sbin/cups-browsed", false, "capable sys_nice"}));
    EXPECT_EQ(of(AUDIT_AVC, R"(apparmor="DENIED" operation="exec" profile="/usr/bin/man//filter" )"
                            R"(name=2F746D702F6576696C20ff pid=33 comm="sh" requested_mask="x")"),
              (Violation{33, "/usr/bin/man", false, "exec /tmp/evil \xff"}));
}

TEST(ViolationTest, WhomAProfileKillsIsTerminated) {
    const auto violation =
        of(AUDIT_AVC, R"(apparmor="KILLED" operation="open" profile="/usr/bin/a" pid=4 comm="a")");
    ASSERT_TRUE(violation);
    EXPECT_TRUE(violation->terminated);
}

TEST(ViolationTest, AProfileWithANameOfItsOwnIsNoPath) {
    EXPECT_EQ(of(AUDIT_AVC, R"(apparmor="DENIED" operation="open" profile="lsb_release" )"
                            R"(name="/x" pid=4 comm="python3")")
                  ->program,
              "python3");
    EXPECT_EQ(
        of(AUDIT_AVC, R"(apparmor="DENIED" operation="open" profile="lsb_release" pid=4)")->program,
        "lsb_release");
}

TEST(ViolationTest, WhatIsOnlyToldOrAboutProfilesIsNone) {
    for (const char* const outcome : {"ALLOWED", "AUDIT", "STATUS", "HINT", "ERROR", "denied"}) {
        EXPECT_FALSE(of(AUDIT_AVC, std::string("apparmor=\"") + outcome +
                                       R"(" operation="open" profile="/a" pid=4 comm="a")"))
            << outcome;
    }
    // Another security module's records have the same type.
    EXPECT_FALSE(of(AUDIT_AVC, R"(avc:  denied  { read } for  pid=5 comm="apparmor=DENIED")"));
}

TEST(ViolationTest, OtherRecordsAreNone) {
    EXPECT_FALSE(of(1701, killed())) << "a crash by itself is no violation";
    EXPECT_FALSE(of(1300, killed()));
}

} // namespace
} // namespace korvale::agent
