#include "ListGenerator.h"

#include <array>
#include <string_view>
#include <vector>

namespace korvale::bench {

namespace {

/// SplitMix64: the same numbers with every compiler and library.
class Numbers {
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }

private:
    std::uint64_t m_state;
};

constexpr std::array<std::string_view, 8> roots{
    "/home/anna.schmidt/Downloads", "/home/j.müller/Dokumente/Büro", "/opt/vendor/releases",
    "/var/lib/flatpak/app",         "/home/佐藤/ドキュメント",       "/usr/local/share",
    "/mnt/backup/2024-06/home",     "/home/élodie/Téléchargements"};
constexpr std::array<std::string_view, 10> folders{
    "node_modules", "build-output",  "Überweisungen", "invoices_2024", ".cache",
    "python3.11",   "site-packages", "projets été",   "installer",     "Собрание"};
constexpr std::array<std::string_view, 6> extensions{".exe", ".dll",    ".so",
                                                     ".bin", ".tar.gz", ".docm"};
/// Every combination of the agent's bits; the common ones more often. 0 and 16 make no row.
constexpr std::array<int, 24> states{1,  1, 1,  2, 2, 9,  9,  9,  10, 5, 6, 13,
                                     14, 3, 11, 4, 8, 12, 17, 25, 18, 7, 0, 16};

/// Characters, not bytes, as continuation bytes do not start one.
std::size_t characters(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text) {
        count += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1 : 0;
    }
    return count;
}

void appendHex(std::string& out, std::uint64_t value, int digits) {
    for (int i = digits - 1; i >= 0; --i) {
        out += "0123456789abcdef"[(value >> (4 * static_cast<unsigned>(i))) & 0xFU];
    }
}

void appendPath(std::string& out, Numbers& numbers, std::size_t record) {
    const std::size_t begin = out.size();
    out += roots[numbers.below(roots.size())];
    const std::size_t length = 80 + numbers.below(41);
    // Room for the file name: a slash, 8 and 16 digits and the longest extension.
    while (characters(std::string_view(out).substr(begin)) + 15 + 33 < length) {
        out += '/';
        out += folders[numbers.below(folders.size())];
    }
    out += '/';
    appendHex(out, record, 8);
    const std::string_view extension = extensions[numbers.below(extensions.size())];
    while (characters(std::string_view(out).substr(begin)) + extension.size() < length) {
        out += static_cast<char>('a' + numbers.below(26));
    }
    out += extension;
}

struct Threat {
    std::uint64_t id;
    int state;
};

void appendRecord(std::string& out, const Threat& threat, int state, Numbers& numbers) {
    out += R"(":{"State":)";
    out += std::to_string(state);
    out += R"(,"ID":")";
    Numbers digits(threat.id);
    for (int i = 0; i < 4; ++i) {
        appendHex(out, digits.next(), 16);
    }
    out += R"(","Score":)";
    const std::uint64_t score = numbers.below(2001);
    out += score < 1000 ? "-0." : "0.";
    out += std::to_string(100 + score % 900);
    out += "}";
}

} // namespace

std::string fileStateList(const ListShape& shape, std::uint64_t pass) {
    Numbers numbers(shape.seed);
    std::vector<Threat> threats;
    std::string out = "{";
    out.reserve(shape.records * 240);
    const auto sharing = static_cast<std::uint64_t>((1.0 - 1.0 / shape.pathsPerRow) * 1'000'000);
    for (std::size_t record = 0; record < shape.records; ++record) {
        out += record == 0 ? "\"" : ",\"";
        appendPath(out, numbers, record);
        const bool shared = !threats.empty() && numbers.below(1'000'000) < sharing;
        if (!shared) {
            threats.push_back({numbers.next(), states[numbers.below(states.size())]});
        }
        const Threat& threat = shared ? threats[numbers.below(threats.size())] : threats.back();
        const bool changed = pass != 0 && (record + pass) % 1000 == 0;
        appendRecord(out, threat, changed ? threat.state ^ 8 : threat.state, numbers);
    }
    out += '}';
    return out;
}

std::string eventList(std::size_t first, std::size_t records) {
    std::string out = "{";
    for (std::size_t i = first; i < first + records; ++i) {
        Numbers numbers(i);
        out += i == first ? "\"" : ",\"";
        appendPath(out, numbers, i);
        out += R"(":{"When":"2024-06-11 09:)";
        out += std::to_string(10 + i % 50);
        out += R"(","Category":"Threat","State":9,"Event":)";
        out += std::to_string(1 + i % 2);
        out += '}';
    }
    out += '}';
    return out;
}

} // namespace korvale::bench
