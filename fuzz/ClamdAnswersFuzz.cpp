// What clamd, or whoever sits on its socket, may write: taken apart, judged, and never trusted.

#include "Target.h"
#include "agent/base/Log.h"
#include "agent/engine/ClamdAnswer.h"
#include "agent/engine/ClamdConfiguration.h"
#include "agent/engine/ClamdReplies.h"
#include "agent/engine/DigestList.h"
#include "agent/engine/Signatures.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

constexpr std::array<std::string_view, 14> words{"1: ",
                                                 "2: fd[12]: OK",
                                                 "fd[",
                                                 "]: OK",
                                                 " FOUND",
                                                 "Eicar-Test-Signature FOUND",
                                                 " ERROR",
                                                 "ClamAV 1.0.7/27500/Mon Nov  4 09:33:11 2024",
                                                 "MaxFileSize 25M",
                                                 "MaxScanSize 0",
                                                 "PONG",
                                                 "INSTREAM size limit exceeded.",
                                                 "18446744073709551616",
                                                 "\x1b[31m"};
constexpr korvale::fuzz::Grammar clamd{": \n[]/", ' ', korvale::fuzz::Spelling::AsItIs, words};

/// All replies of the bytes, handed over in pieces of that size.
std::vector<ClamdReply> repliesOf(std::string_view bytes, std::size_t piece) {
    ClamdReplies parser;
    std::vector<ClamdReply> replies;
    while (!bytes.empty() && parser.feed(bytes.substr(0, piece), replies)) {
        bytes.remove_prefix(std::min(piece, bytes.size()));
    }
    require(bytes.empty() == parser.fault().empty());
    return replies;
}

void judge(std::string_view reply) {
    const Judgement judgement = judgementOf(reply);
    const bool ok = reply.starts_with("fd[") && reply.ends_with("]: OK");
    require(judgement.verdict != Verdict::Clean || ok);
    require(isBad(judgement.verdict) == !judgement.name.empty());
    require(!isBad(judgement.verdict) || reply.ends_with(" FOUND"));
    require(isJudged(judgement.verdict) == judgement.reason.empty());
    require(printable(judgement.name) == judgement.name);
    require(printable(judgement.reason) == judgement.reason);
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return clamd;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(static_cast<const char*>(static_cast<const void*>(data)), size);
    const auto replies = repliesOf(bytes, ClamdReplies::longestReply);
    // A reply that is too long may be noticed sooner or later, but none may be read otherwise.
    if (size <= ClamdReplies::longestReply) {
        require(repliesOf(bytes, 1) == replies);
        require(repliesOf(bytes, 7) == replies);
    }
    korvale::fuzz::taken += replies.empty() ? 0U : 1U;
    for (const ClamdReply& reply : replies) {
        require(reply.number > 0);
        judge(reply.text);
    }
    judge(bytes);
    static_cast<void>(signatureTimeOf(bytes));
    const std::int64_t largest = parseClamdConfiguration(bytes).largestFile();
    require(largest > 0 && largest < std::int64_t{1} << 31);
    DigestList list;
    static_cast<void>(list.add(bytes));
    list.sort();
    static_cast<void>(list.find(Sha256Digest{}));
    return 0;
}
