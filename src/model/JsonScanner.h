#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace korvale {

/// The first stage of reading JSON: finds where things begin, without looking at what they mean. It
/// keeps its work space for the next text. One thread at a time.
class JsonScanner {
public:
    JsonScanner();
    ~JsonScanner();
    JsonScanner(const JsonScanner&) = delete;
    JsonScanner& operator=(const JsonScanner&) = delete;

    /// The places, in rising order, of each bracket, colon and comma outside of strings, of each
    /// opening quote, and of the first character of all else that is not blank. Behind the span's
    /// end the text's size stands as one more place. Valid until the next call.
    /// No value when a string is not closed, is not UTF-8 or holds a control character, nor for a
    /// blank text or one for whose places there is no memory.
    /// Nothing behind the first `size` of `bytes` is read.
    [[nodiscard]] std::optional<std::span<const std::uint32_t>> scan(const char* bytes,
                                                                     std::size_t size);

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace korvale
