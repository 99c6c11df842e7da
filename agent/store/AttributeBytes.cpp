#include "agent/store/AttributeBytes.h"

namespace korvale::agent {
namespace {

constexpr std::size_t kLength = 4;

void appendLength(std::string& bytes, std::size_t length) {
    for (std::size_t i = 0; i < kLength; ++i) {
        bytes += static_cast<char>(static_cast<unsigned char>(length >> (8 * i)));
    }
}

std::size_t lengthAt(const std::string& bytes, std::size_t offset) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < kLength; ++i) {
        length |= std::size_t{static_cast<unsigned char>(bytes[offset + i])} << (8 * i);
    }
    return length;
}

} // namespace

std::string packAttributes(const std::vector<ExtendedAttribute>& attributes) {
    std::string bytes;
    for (const ExtendedAttribute& attribute : attributes) {
        appendLength(bytes, attribute.name.size());
        appendLength(bytes, attribute.value.size());
        bytes += attribute.name;
        bytes += attribute.value;
    }
    return bytes;
}

std::vector<ExtendedAttribute> unpackAttributes(const std::string& bytes) {
    std::vector<ExtendedAttribute> attributes;
    std::size_t offset = 0;
    while (bytes.size() - offset >= 2 * kLength) {
        const std::size_t name = lengthAt(bytes, offset);
        const std::size_t value = lengthAt(bytes, offset + kLength);
        offset += 2 * kLength;
        if (name + value > bytes.size() - offset) {
            break;
        }
        attributes.push_back({bytes.substr(offset, name), bytes.substr(offset + name, value)});
        offset += name + value;
    }
    return attributes;
}

} // namespace korvale::agent
