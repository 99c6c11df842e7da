// What the kernel's audit stream says, with names that any user may have chosen: one record, the
// first line its type.

#include "Target.h"
#include "agent/audit/Violation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <linux/audit.h>
#include <string>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

constexpr std::array<std::string_view, 16> words{"audit(1795323249.711:2): ",
                                                 "apparmor=\"DENIED\"",
                                                 "apparmor=\"KILLED\"",
                                                 "apparmor=\"ALLOWED\"",
                                                 "pid=22908",
                                                 "pid=4294967297",
                                                 "code=0x80000000",
                                                 "code=0x7ffc0000",
                                                 "code=0x0",
                                                 "comm=6576696C2022636F0A78",
                                                 "exe=\"/usr/bin/viewer\"",
                                                 "exe=(null)",
                                                 "profile=\"/usr/bin/man//filter\"",
                                                 "name=2F746D702F",
                                                 "1326\n",
                                                 "1400\n"};
constexpr korvale::fuzz::Grammar audit{" \"\n", '=', korvale::fuzz::Spelling::AsItIs, words};

std::uint16_t typeOf(std::string_view& input) {
    std::uint16_t type = 0;
    const std::size_t length = std::min(input.find('\n'), input.size());
    std::from_chars(input.data(), input.data() + length, type);
    input.remove_prefix(std::min(length + 1, input.size()));
    return type;
}

void check(const Violation& violation, std::uint16_t type, std::string_view text) {
    require(type == AUDIT_SECCOMP || type == AUDIT_AVC);
    require(violation.process > 0 && !violation.program.empty());
    require(violation.program.size() <= text.size() && violation.deed.size() <= text.size() + 32);
    require(violation.program.find('\0') == std::string::npos ||
            text.find('\0') != std::string::npos);
    // Nothing is a violation that the kernel does not call one.
    require(type != AUDIT_AVC || text.find("\"DENIED\"") != std::string_view::npos ||
            text.find("\"KILLED\"") != std::string_view::npos ||
            text.find("apparmor=44454E494544") != std::string_view::npos ||
            text.find("apparmor=4B494C4C4544") != std::string_view::npos);
    require(type != AUDIT_SECCOMP || violation.terminated);
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return audit;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text = korvale::fuzz::textOf(data, size);
    const std::uint16_t type = typeOf(text);
    const auto record = parseAuditRecord(type, text);
    if (!record) {
        return 0;
    }
    require(text.starts_with("audit("));
    for (const char* const name : {"pid", "comm", "exe", "code", "profile", "name"}) {
        const auto plain = record->plain(name);
        require(plain || (!record->text(name) && !record->number(name)));
    }
    if (const auto violation = violationOf(*record)) {
        ++korvale::fuzz::taken;
        check(*violation, type, text);
        require(violationOf(*record) == violation);
    }
    return 0;
}
