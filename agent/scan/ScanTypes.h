#pragma once

#include "agent/engine/Verdict.h"
#include "agent/scan/CallerCredentials.h"
#include "agent/scan/TreeWalk.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace korvale::agent {

enum class ScanKind {
    Folder,     ///< somebody asked for it and waits
    Background, ///< the agent's own
};

/// What of the configuration concerns scans.
struct ScanOptions {
    PathRules excluded;
    bool otherFileSystems = false;                    ///< enter what is mounted in the tree
    std::int64_t maxFileSize = std::int64_t{1} << 30; ///< bytes; larger files are not scanned
    std::chrono::milliseconds fileDeadline{120'000};  ///< for the engine, for each file
    /// How long a scan waits for an engine that went away, until it goes on without.
    std::chrono::milliseconds patience{60'000};
    bool lowPriority = true; ///< its threads let everything else go first
};

struct ScanRequest {
    ScanKind kind = ScanKind::Folder;
    std::string path;         ///< absolute, raw bytes
    CallerCredentials caller; ///< with whose rights everything is read
    ScanOptions options;
};

/// A bad file, still in its place.
struct FoundFile {
    std::string path;                           ///< absolute, raw bytes
    std::shared_ptr<const WalkedFolder> folder; ///< open: let go of it soon
    std::string name;                           ///< in the folder
    FileIdentity identity;                      ///< of what was judged
    std::uint32_t owner = 0;                    ///< user id
    Judgement judgement;
    /// Only so many are on their way at a time: the scan waits until this is let go of.
    std::shared_ptr<void> permit;
};

struct ScanSummary {
    std::uint64_t id = 0;
    ScanKind kind = ScanKind::Folder;
    std::string path;
    uid_t user = 0;               ///< who asked
    std::uint64_t analysed = 0;   ///< clean or bad, found out now or known from before
    std::uint64_t known = 0;      ///< of these: known from before
    std::uint64_t found = 0;      ///< of these: bad
    std::uint64_t notScanned = 0; ///< too large, or the engine cannot judge them
    std::uint64_t unreadable = 0; ///< files and folders
    std::uint64_t unanswered = 0; ///< the engine did not answer
    std::uint64_t excluded = 0;   ///< files and whole folders
    std::chrono::milliseconds duration{0};
    bool stopped = false;
    bool withEngine = false; ///< the engine was reachable when it began
    std::string trouble;     ///< why it could not begin; empty: it did
};

} // namespace korvale::agent
