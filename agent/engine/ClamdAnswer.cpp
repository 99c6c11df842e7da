#include "agent/engine/ClamdAnswer.h"

#include "agent/base/Log.h"

#include <algorithm>
#include <cctype>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestName = 256;
constexpr std::size_t kLongestReason = 200;

bool isDigest(std::string_view text) {
    const auto hex = [](unsigned char byte) { return std::isxdigit(byte) != 0; };
    return text.size() >= 32 && std::all_of(text.begin(), text.end(), hex);
}

bool isNumber(std::string_view text) {
    const auto digit = [](unsigned char byte) { return std::isdigit(byte) != 0; };
    return !text.empty() && std::all_of(text.begin(), text.end(), digit);
}

/// "Name(44d8…:68)" without what is in the parentheses.
std::string_view withoutDetails(std::string_view name) {
    const std::size_t open = name.rfind('(');
    if (open == std::string_view::npos || !name.ends_with(')')) {
        return name;
    }
    const std::string_view details = name.substr(open + 1, name.size() - open - 2);
    const std::size_t colon = details.find(':');
    const bool ours = colon != std::string_view::npos && isDigest(details.substr(0, colon)) &&
                      isNumber(details.substr(colon + 1));
    return ours ? name.substr(0, open) : name;
}

Judgement notJudged(Verdict verdict, std::string_view reason) {
    return {verdict, {}, "clamd: " + printable(reason.substr(0, kLongestReason)), {}};
}

} // namespace

Verdict verdictOf(std::string_view virusName) {
    if (virusName.starts_with("Heuristics.Limits.Exceeded")) {
        return Verdict::NotScanned;
    }
    const bool unsure = virusName.starts_with("Heuristics.") || virusName.starts_with("PUA.");
    return unsure ? Verdict::Abnormal : Verdict::Unsafe;
}

Judgement judgementOf(std::string_view reply) {
    constexpr std::string_view found = " FOUND";
    const std::size_t bracket = reply.find("]: ");
    if (!reply.starts_with("fd[") || bracket == std::string_view::npos) {
        // Errors about the command itself come without a descriptor.
        return notJudged(reply.ends_with("ERROR") ? Verdict::NotScanned : Verdict::NoAnswer, reply);
    }
    const std::string_view text = reply.substr(bracket + 3);
    if (text == "OK") {
        return {Verdict::Clean, {}, {}, {}};
    }
    if (!text.ends_with(found)) {
        return notJudged(text.ends_with("ERROR") ? Verdict::NotScanned : Verdict::NoAnswer, text);
    }
    const std::string_view name = withoutDetails(text.substr(0, text.size() - found.size()));
    if (name.empty()) {
        return notJudged(Verdict::NoAnswer, text);
    }
    const Verdict verdict = verdictOf(name);
    if (!isBad(verdict)) {
        return notJudged(verdict, name);
    }
    return {verdict, printable(name.substr(0, kLongestName)), {}, {}};
}

} // namespace korvale::agent
