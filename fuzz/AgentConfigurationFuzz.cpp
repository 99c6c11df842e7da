// What an administrator, or a half-written file, hands the agent as its configuration.

#include "Target.h"
#include "agent/app/Configuration.h"
#include "agent/base/PathRules.h"

#include <algorithm>
#include <array>
#include <string>
#include <variant>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

constexpr std::array<std::string_view, 14> words{"[engine]",
                                                 "[scan]",
                                                 "[[scan]]",
                                                 "hash_lists = [\"/a\", 5]",
                                                 "exclude = [\"/a/../b\"]",
                                                 "largest_file = 9223372036854775807",
                                                 "file_deadline = -1",
                                                 "log_level = \"debug\"",
                                                 "policy = {}",
                                                 "\"\"\"",
                                                 "'''",
                                                 "\\u0000",
                                                 "1979-05-27T07:32:00Z",
                                                 "nan"};
constexpr korvale::fuzz::Grammar toml{"\n=[]{},. ", '=', korvale::fuzz::Spelling::AsItIs, words};

bool isLine(const std::string& text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

void checkPath(const std::string& path) {
    require(path.starts_with('/') && isLine(path));
}

/// Whoever uses it does not look again.
void check(const Configuration& configuration) {
    for (const std::string& path :
         {configuration.hostCache, configuration.updaterStatus, configuration.state,
          configuration.quarantine, configuration.engineConfiguration}) {
        checkPath(path);
    }
    require(configuration.engineSocket.empty() || configuration.engineSocket.starts_with('/'));
    std::for_each(configuration.hashLists.begin(), configuration.hashLists.end(), checkPath);
    std::for_each(configuration.background.begin(), configuration.background.end(), checkPath);
    PathRules rules;
    std::string error;
    for (const std::string& rule : configuration.exclude) {
        require(rules.add(rule, error));
    }
    static_cast<void>(rules.match("/home/ada/Downloads"));
    require(configuration.fileDeadline >= std::chrono::seconds(1) &&
            configuration.fileDeadline <= std::chrono::hours(1));
    require(configuration.largestFile >= 1 << 20 && configuration.largestFile <= std::int64_t{1}
                                                                                     << 40);
    require(isLine(configuration.deviceName) && isLine(configuration.policyName));
    for (const std::string& unit : configuration.engineUnits) {
        require(unit.find('/') == std::string::npos);
    }
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return toml;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = korvale::fuzz::textOf(data, size);
    const ConfigurationResult result = parseConfiguration(text);
    if (const auto* configuration = std::get_if<Configuration>(&result)) {
        ++korvale::fuzz::taken;
        check(*configuration);
    } else {
        const std::string& problem = std::get<std::string>(result);
        require(problem.starts_with("line ") && problem.find('\n') == std::string::npos);
    }
    require(parseConfiguration(text) == result);
    return 0;
}
