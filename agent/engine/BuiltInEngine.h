#pragma once

#include "agent/engine/DigestList.h"
#include "agent/engine/Engine.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace korvale::agent {

/// Finds the EICAR test file and contents whose SHA-256 is in a list. Needs nothing else, is always
/// there, and answers at once. Files are read whole only while there is a list.
class BuiltInEngine final : public Engine {
public:
    /// Longer files are not compared with the lists. Bytes.
    static constexpr std::int64_t largestListed = std::int64_t{256} << 20;

    explicit BuiltInEngine(std::vector<std::string> digestFiles = {});

    Judgement judge(int descriptor, std::chrono::milliseconds deadline,
                    std::stop_token stop = {}) override;
    [[nodiscard]] EngineState state() const override;
    /// Reads the lists again, each of them logged when it has faults. A list that cannot be read is
    /// as if it were empty. Waits for the disk; judging goes on with the lists read before.
    EngineState refresh() override;
    /// Reads these lists from now on, and at once.
    void use(std::vector<std::string> digestFiles);

private:
    [[nodiscard]] std::shared_ptr<const DigestList> lists() const;
    [[nodiscard]] std::vector<std::string> digestFiles() const;

    mutable std::mutex m_mutex;
    std::vector<std::string> m_digestFiles;
    std::shared_ptr<const DigestList> m_lists;
    EngineState m_state;
};

/// The 68 bytes themselves, to test another engine with.
[[nodiscard]] std::string eicarTestContent();
/// The same as a gzip file: to find them in it an engine must unpack it.
[[nodiscard]] std::string packedEicarTestContent();

/// Whether a content is the EICAR test file: its 68 bytes first, then at most 60 blanks.
[[nodiscard]] bool isEicarTestFile(std::string_view content);

} // namespace korvale::agent
