#include "agent/base/Log.h"

#include "agent/base/Utf8.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestLine = 4000;

std::atomic<LogLevel> currentLevel{LogLevel::Info};

std::string_view priorityMark(LogLevel level) {
    constexpr std::array<std::string_view, 4> marks{"<3>", "<4>", "<6>", "<7>"};
    return marks.at(static_cast<std::size_t>(level));
}

void appendEscaped(std::string& text, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += "\\x";
        text += digits[value >> 4];
        text += digits[value & 15];
    }
}

} // namespace

std::string printable(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        const std::string_view piece = bytes.substr(0, length == 0 ? 1 : length);
        if (length == 0 || isControl(piece)) {
            appendEscaped(text, piece);
        } else {
            text += piece;
        }
        bytes.remove_prefix(piece.size());
    }
    return text;
}

void setLogLevel(LogLevel level) {
    currentLevel.store(level, std::memory_order_relaxed);
}

LogLevel logLevel() {
    return currentLevel.load(std::memory_order_relaxed);
}

void log(LogLevel level, std::string_view line) {
    if (level > logLevel()) {
        return;
    }
    std::string text(priorityMark(level));
    text += printable(line.substr(0, kLongestLine));
    text += '\n';
    // One write a line: lines of several threads never mix. A line that cannot be written is lost.
    while (::write(STDERR_FILENO, text.data(), text.size()) < 0 && errno == EINTR) {
    }
}

} // namespace korvale::agent
