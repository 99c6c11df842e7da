#include "core/BundleIdentity.h"

#include "core/base/TextFormat.h"
#include "model/Values.h"

#include <algorithm>

namespace korvale {
namespace {

BundleIdentity identity;

void fill(std::span<char> destination, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    auto count = std::min(destination.size(), static_cast<std::size_t>(bytes.size()));
    if (count < static_cast<std::size_t>(bytes.size())) {
        // No part of a character is kept: the first byte that is left out must begin one.
        while (count > 0 && (static_cast<unsigned char>(bytes[static_cast<qsizetype>(count)]) &
                             0xC0U) == 0x80U) {
            --count;
        }
    }
    std::copy_n(bytes.begin(), count, destination.begin());
}

} // namespace

const BundleIdentity& bundleIdentity() {
    return identity;
}

int OSLoggingStartup(const InfoDictionary& info, const QString& processName) {
    identity = {};
    BundleIdentifierInitPath(identity.identifier, info);
    BundleIdentifierInitVersion(identity.version, info);
    BundleIdentifierInitName(identity.name, info, processName);
    return 0;
}

void BundleIdentifierInitPath(std::span<char> destination, const InfoDictionary& info) {
    fill(destination, cellText(info["CFBundleIdentifier"]).value_or(QString()));
}

void BundleIdentifierInitVersion(std::span<char> destination, const InfoDictionary& info) {
    fill(destination, formatText(u"%@ (%@)", {valueText(info["CFBundleShortVersionString"]),
                                              valueText(info["CFBundleVersion"])}));
}

void BundleIdentifierInitName(std::span<char> destination, const InfoDictionary& info,
                              const QString& processName) {
    const std::optional<QString> displayName = cellText(info["CFBundleDisplayName"]);
    const std::optional<QString> name = displayName ? displayName : cellText(info["CFBundleName"]);
    fill(destination, name.value_or(processName));
}

QString bufferText(std::span<const char> buffer) {
    const auto end = std::find(buffer.begin(), buffer.end(), '\0');
    return QString::fromUtf8(buffer.data(), std::distance(buffer.begin(), end));
}

} // namespace korvale
