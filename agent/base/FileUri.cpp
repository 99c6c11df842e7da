#include "agent/base/FileUri.h"

namespace korvale::agent {
namespace {

constexpr std::string_view kScheme = "file://";
constexpr std::string_view kDigits = "0123456789ABCDEF";

bool isPlain(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') ||
           std::string_view("-._~/").find(byte) != std::string::npos;
}

/// 0 to 15; -1 for no hex digit.
int digit(char byte) {
    if (byte >= '0' && byte <= '9') {
        return byte - '0';
    }
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

std::string fileUri(std::string_view path) {
    std::string uri(kScheme);
    for (const char byte : path) {
        if (isPlain(byte)) {
            uri += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            uri += '%';
            uri += kDigits[value >> 4];
            uri += kDigits[value & 15];
        }
    }
    return uri;
}

std::optional<std::string> pathOfUri(std::string_view uri) {
    if (!uri.starts_with(kScheme) || !uri.substr(kScheme.size()).starts_with('/')) {
        return std::nullopt;
    }
    uri.remove_prefix(kScheme.size());
    std::string path;
    while (!uri.empty()) {
        char byte = uri.front();
        std::size_t length = 1;
        if (byte == '%') {
            if (uri.size() < 3 || digit(uri[1]) < 0 || digit(uri[2]) < 0) {
                return std::nullopt;
            }
            byte =
                static_cast<char>(static_cast<unsigned char>(digit(uri[1]) * 16 + digit(uri[2])));
            length = 3;
        }
        if (byte == '\0') {
            return std::nullopt;
        }
        path += byte;
        uri.remove_prefix(length);
    }
    return path;
}

} // namespace korvale::agent
