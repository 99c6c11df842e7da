#include "agent/quarantine/VaultCopy.h"

#include "agent/quarantine/ContentDigest.h"
#include "agent/quarantine/VaultCipher.h"

#include <cerrno>
#include <unistd.h>
#include <vector>

namespace korvale::agent {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;

/// Bytes read, 0 at the end, -1 with errno.
ssize_t readPiece(int file, std::span<std::uint8_t> piece, off_t offset) {
    for (;;) {
        const ssize_t count = ::pread(file, piece.data(), piece.size(), offset);
        if (count >= 0 || errno != EINTR) {
            return count;
        }
    }
}

bool writeAll(int file, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            errno = count == 0 ? ENOSPC : errno;
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

/// The digest is made of the plain side: before the cipher on the way in, after it on the way out.
CopyResult copyThrough(int source, off_t offset, int target, VaultCipher& cipher, bool inwards) {
    CopyResult result;
    ContentDigest digest;
    std::vector<std::uint8_t> buffer(kPiece);
    for (;;) {
        const ssize_t count = readPiece(source, buffer, offset);
        if (count < 0) {
            result.error = errno;
            return result;
        }
        if (count == 0) {
            break;
        }
        const std::span piece = std::span(buffer).first(static_cast<std::size_t>(count));
        if (inwards) {
            digest.add(piece);
        }
        if (!cipher.apply(piece)) {
            result.error = EIO;
            return result;
        }
        if (!inwards) {
            digest.add(piece);
        }
        if (!writeAll(target, piece)) {
            result.error = errno;
            return result;
        }
        offset += count;
        result.size += count;
    }
    result.sha256 = digest.hex();
    if (result.sha256.empty()) {
        result.error = EIO;
    } else if (::fsync(target) != 0) {
        result.error = errno;
    }
    return result;
}

CopyResult failed(int error) {
    CopyResult result;
    result.error = error;
    return result;
}

} // namespace

CopyResult encipherInto(int source, int target) {
    const auto header = VaultCipher::makeHeader();
    auto cipher = header ? VaultCipher::begin(*header) : std::nullopt;
    if (!cipher) {
        return failed(EIO);
    }
    if (!writeAll(target, *header)) {
        return failed(errno);
    }
    return copyThrough(source, 0, target, *cipher, true);
}

CopyResult decipherInto(int source, int target) {
    VaultCipher::Header header{};
    const ssize_t count = readPiece(source, header, 0);
    if (count < 0) {
        return failed(errno);
    }
    auto cipher =
        count == static_cast<ssize_t>(header.size()) ? VaultCipher::begin(header) : std::nullopt;
    if (!cipher) {
        return failed(EBADMSG);
    }
    return copyThrough(source, static_cast<off_t>(header.size()), target, *cipher, false);
}

} // namespace korvale::agent
