// Buffers of file events, as the kernel hands them over.

#include "Target.h"
#include "agent/watch/FileEvents.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <span>
#include <string>
#include <sys/fanotify.h>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array<std::string_view, 10> words{"\x18\0\0\0"sv,
                                                 "\x03\0\x18\0"sv,
                                                 "\xff\xff\xff\xff"sv,
                                                 "\0\0\0\0"sv,
                                                 "\x08\0\0\0\x01\0\0\0HANDLE!!"sv,
                                                 "\x02\0\x20\0"sv,
                                                 "\0\x40\0\0\0\0\0\0"sv, // an overflow
                                                 ".."sv,
                                                 "a/b"sv,
                                                 "file\0"sv};
constexpr korvale::fuzz::Grammar events{"\0\x18\x02"sv, '\x03', korvale::fuzz::Spelling::AsItIs,
                                        words};

void check(const FileEvent& event) {
    if (event.descriptor >= 0) {
        return;
    }
    constexpr std::size_t head = sizeof(unsigned int) + sizeof(int);
    require(event.folder.size() >= head && event.folder.size() <= head + 128);
    require(!event.name.empty() && event.name != "." && event.name != "..");
    require(event.name.find('/') == std::string::npos &&
            event.name.find('\0') == std::string::npos);
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return events;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = korvale::fuzz::textOf(data, size);
    const FileEvents found = parseFileEvents(std::span(bytes.data(), bytes.size()));
    require(found.events.size() * sizeof(fanotify_event_metadata) <= size);
    for (const FileEvent& event : found.events) {
        check(event);
    }
    korvale::fuzz::taken += found.events.empty() ? 0U : 1U;
    return 0;
}
