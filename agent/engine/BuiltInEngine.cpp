#include "agent/engine/BuiltInEngine.h"

#include "agent/base/Log.h"
#include "agent/base/SmallFile.h"
#include "agent/engine/ReadableFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kEicarLongest = 128;
constexpr unsigned kVeil = 0x15;

// Veiled, or every scanner would find the test file in this program.
constexpr std::string_view kVeiledEicar =
    "\x4d\x20\x5a\x34\x45\x30\x55\x54\x45\x4e\x21\x49\x45\x4f\x4d\x20\x21\x3d\x45\x4b\x3c\x22\x56"
    "\x56\x3c\x22\x68\x31\x50\x5c\x56\x54\x47\x38\x46\x41\x54\x5b\x51\x54\x47\x51\x38\x54\x5b\x41"
    "\x5c\x43\x5c\x47\x40\x46\x38\x41\x50\x46\x41\x38\x53\x5c\x59\x50\x34\x31\x5d\x3e\x5d\x3f";
static_assert(kVeiledEicar.size() == 68);

// What "gzip -9n" makes of it, veiled likewise.
constexpr std::string_view kVeiledPackedEicar(
    "\x0a\x9e\x1d\x15\x15\x15\x15\x15\x17\x16\x9e\x25\xe0\x42\x19\x45\x60\x65\x19\x9d\x23\x9c\x1c"
    "\x9d\x9f\x25\x20\xc4\x1d\x9d\xc6\x21\x62\x63\xc3\x21\xba\x40\x64\xe0\x61\x63\x19\xc7\x18\x1b"
    "\x64\xe1\x66\x64\x19\x67\xc4\x60\xe1\x1e\xe4\x19\xe6\x19\x1f\x18\xc3\x18\x64\x18\x1b\xc4\x60"
    "\xe6\xe1\x64\x40\x41\xe4\xc5\xe3\xc5\x17\x15\x29\xda\x44\x7d\x51\x15\x15\x15");
static_assert(kVeiledPackedEicar.size() == 88);

std::string unveiled(std::string_view veiled) {
    std::string plain(veiled);
    for (char& byte : plain) {
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ kVeil);
    }
    return plain;
}

Judgement clean() {
    return {Verdict::Clean, {}, {}, {}};
}

bool isEicar(int descriptor) {
    std::array<char, kEicarLongest + 1> content{};
    const ssize_t count = ::pread(descriptor, content.data(), content.size(), 0);
    return count > 0 && isEicarTestFile({content.data(), static_cast<std::size_t>(count)});
}

} // namespace

std::string eicarTestContent() {
    return unveiled(kVeiledEicar);
}

std::string packedEicarTestContent() {
    return unveiled(kVeiledPackedEicar);
}

bool isEicarTestFile(std::string_view content) {
    constexpr std::string_view blanks = " \t\r\n\x1a";
    if (content.size() < kVeiledEicar.size() || content.size() > kEicarLongest) {
        return false;
    }
    const auto same = [](char veiled, char plain) {
        return (static_cast<unsigned char>(veiled) ^ kVeil) == static_cast<unsigned char>(plain);
    };
    return std::equal(kVeiledEicar.begin(), kVeiledEicar.end(), content.begin(), same) &&
           content.find_first_not_of(blanks, kVeiledEicar.size()) == std::string_view::npos;
}

BuiltInEngine::BuiltInEngine(std::vector<std::string> digestFiles)
    : m_digestFiles(std::move(digestFiles)) {
    BuiltInEngine::refresh();
}

Judgement BuiltInEngine::judge(int descriptor, std::chrono::milliseconds deadline,
                               std::stop_token stop) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    const ReadableFile file = ReadableFile::look(descriptor);
    if (!file.trouble.empty()) {
        return {Verdict::NotScanned, {}, file.trouble, {}};
    }
    if (file.identity.size <= static_cast<std::int64_t>(kEicarLongest) && isEicar(descriptor)) {
        return {Verdict::Unsafe, "EICAR-Test-File", {}, {}};
    }
    const auto list = lists();
    if (list->size() == 0 || file.identity.size == 0 || file.identity.size > largestListed) {
        return clean();
    }
    const auto digest = sha256Of(descriptor, largestListed, end, stop);
    if (!digest) {
        return {Verdict::NoAnswer, {}, "it could not be read in time", {}};
    }
    if (const auto name = list->find(*digest)) {
        return {Verdict::Unsafe, *name, {}, toHex(*digest)};
    }
    return clean();
}

EngineState BuiltInEngine::state() const {
    const std::lock_guard lock(m_mutex);
    return m_state;
}

EngineState BuiltInEngine::refresh() {
    auto list = std::make_shared<DigestList>();
    std::string key = "built-in 1";
    for (const std::string& path : digestFiles()) {
        std::string error;
        const auto text = readSmallFile(path, DigestList::largestFile, error);
        if (!text) {
            logWarning("list of digests: " + error);
            continue;
        }
        if (const std::size_t bad = list->add(*text); bad > 0) {
            logWarning("list of digests: " + path + ": " + std::to_string(bad) +
                       " lines are not understood");
        }
        key += ' ' + toHex(sha256Of(*text).value_or(Sha256Digest{}));
    }
    list->sort();
    const std::lock_guard lock(m_mutex);
    m_lists = std::move(list);
    m_state.reachable = true;
    m_state.version = "built-in";
    m_state.signatureKey = std::move(key);
    return m_state;
}

void BuiltInEngine::use(std::vector<std::string> digestFiles) {
    {
        const std::lock_guard lock(m_mutex);
        m_digestFiles = std::move(digestFiles);
    }
    refresh();
}

std::vector<std::string> BuiltInEngine::digestFiles() const {
    const std::lock_guard lock(m_mutex);
    return m_digestFiles;
}

std::shared_ptr<const DigestList> BuiltInEngine::lists() const {
    const std::lock_guard lock(m_mutex);
    return m_lists;
}

} // namespace korvale::agent
