#include "platform/RegularFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace korvale {

namespace {

/// Small enough to be still in the processor's cache when the block's consumer looks at it.
constexpr std::size_t blockSize = std::size_t{128} << 10;
constexpr std::size_t leastRoom = 4095;

/// Reads up to `room.size()` bytes at `offset`; 0 at the end, no value on an error.
std::optional<std::size_t> readAt(int descriptor, std::span<char> room, std::size_t offset) {
    ssize_t count = 0;
    do {
        count = pread(descriptor, room.data(), room.size(), static_cast<off_t>(offset));
    } while (count < 0 && errno == EINTR);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

FileBytes withRoomFor(std::size_t size, const FileBytes& present) {
    FileBytes result{std::make_shared_for_overwrite<char[]>(size + 1), present.size, size};
    std::copy_n(present.bytes.get(), present.size, result.bytes.get());
    return result;
}

} // namespace

std::optional<RegularFile> RegularFile::open(const QString& path, std::size_t limit) {
    return open(QFile::encodeName(path).constData(), limit);
}

std::optional<RegularFile> RegularFile::open(const char* path, std::size_t limit) {
    // O_NONBLOCK: a FIFO without a writer would hold up the program right here.
    const int descriptor = ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    RegularFile file(descriptor, limit);
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::size_t>(status.st_size) > limit) {
        return std::nullopt;
    }
    file.m_size = static_cast<std::size_t>(status.st_size);
    return file;
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)),
      m_size(other.m_size),
      m_limit(other.m_limit) {}

RegularFile::~RegularFile() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool RegularFile::readBlocks(const BlockConsumer& consume) const {
    try {
        const auto block = std::make_unique_for_overwrite<char[]>(blockSize);
        std::size_t total = 0;
        while (const auto count = readAt(m_descriptor, {block.get(), blockSize}, total)) {
            total += *count;
            if (*count == 0 || total > m_limit) {
                return *count == 0;
            }
            consume({block.get(), *count});
        }
    } catch (const std::bad_alloc&) { // no memory is no file
    }
    return false;
}

std::optional<FileBytes> RegularFile::readAll(const BlockConsumer& consume,
                                              FileBytes former) const {
    try {
        return readWhole(consume, std::move(former));
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

std::optional<FileBytes> RegularFile::readWhole(const BlockConsumer& consume,
                                                FileBytes content) const {
    content.size = 0;
    // Files of /proc have no size of their own.
    if (const std::size_t room = std::max(m_size, leastRoom);
        !content.bytes || content.room < room) {
        content = withRoomFor(room, content);
    }
    // The one byte more shows the end of the file, or that it has grown.
    while (const auto count = readAt(m_descriptor,
                                     {content.bytes.get() + content.size,
                                      std::min(blockSize, content.room + 1 - content.size)},
                                     content.size)) {
        if (*count == 0) {
            return content;
        }
        if (consume) {
            consume({content.bytes.get() + content.size, *count});
        }
        content.size += *count;
        if (content.size > m_limit) {
            return std::nullopt;
        }
        if (content.size > content.room) {
            content = withRoomFor(std::min(m_limit, content.room * 2 + leastRoom), content);
        }
    }
    return std::nullopt;
}

} // namespace korvale
