#pragma once

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace korvale {

/// A file's bytes, with at least one writable byte behind them.
struct FileBytes {
    std::shared_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t room = 0; ///< for so many bytes, the one behind them aside
};

/// A regular file opened for reading; links are followed. Anything else of that name (a folder,
/// FIFO, socket or device), a file larger than its limit and one that memory does not hold are as
/// absent as no file; opening never blocks. Everything that others may write is read through this
/// class.
class RegularFile {
public:
    using BlockConsumer = std::function<void(std::span<const char>)>;

    static constexpr std::size_t maxFileSize = std::size_t{256} << 20;

    /// No value when there is no such file, it may not be read, or it has more than `limit` bytes.
    [[nodiscard]] static std::optional<RegularFile> open(const QString& path,
                                                         std::size_t limit = maxFileSize);
    [[nodiscard]] static std::optional<RegularFile> open(const char* path, std::size_t limit);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    RegularFile& operator=(RegularFile&&) = delete;
    ~RegularFile();

    /// In bytes, when it was opened; others may write to it meanwhile.
    [[nodiscard]] std::size_t size() const { return m_size; }

    /// Reads the whole file from its beginning in blocks that are gone after `consume`. False when
    /// a read fails or the file has grown too large; some blocks may have been consumed then.
    [[nodiscard]] bool readBlocks(const BlockConsumer& consume) const;

    /// Reads the whole file from its beginning; `consume`, if any, sees each block as it comes in.
    /// The bytes of another file that nobody needs any more, `former`, leave their memory to it.
    [[nodiscard]] std::optional<FileBytes> readAll(const BlockConsumer& consume = {},
                                                   FileBytes former = {}) const;

private:
    RegularFile(int descriptor, std::size_t limit) : m_descriptor(descriptor), m_limit(limit) {}

    [[nodiscard]] std::optional<FileBytes> readWhole(const BlockConsumer& consume,
                                                     FileBytes content) const;

    int m_descriptor;
    std::size_t m_size = 0;
    std::size_t m_limit;
};

} // namespace korvale
