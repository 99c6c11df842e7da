#include "agent/ctl/CommandTable.h"

#include <array>

namespace korvale::agent {
namespace {

constexpr std::array kThreatsOptions{Option{"--all", OptionKind::True, "all"}};
constexpr std::array kRestoreOptions{
    Option{"--to", OptionKind::Path, "uri"},
    Option{"--beside", OptionKind::True, "beside"},
    Option{"--no-waive", OptionKind::False, "waive"},
};
constexpr std::array kWaiveOptions{
    Option{"--reason", OptionKind::Text, "reason"},
    Option{"--end", OptionKind::True, "end"},
};
constexpr std::array kDeleteOptions{Option{"--yes", OptionKind::Yes, ""}};
constexpr std::array kScanOptions{Option{"--wait", OptionKind::Wait, ""}};

constexpr std::array kCommands{
    Command{"status", "Status", WordsAre::None, {}, "", "how the agent is and what it does"},
    Command{"threats", "Threats", WordsAre::None, kThreatsOptions, "[--all]",
            "what was found; --all: what is gone, too"},
    Command{"quarantine",
            "Quarantine",
            WordsAre::Threats,
            {},
            "THREAT...",
            "move files where nobody can open them"},
    Command{"restore", "Restore", WordsAre::Threats, kRestoreOptions,
            "[--to PATH] [--beside] [--no-waive] THREAT...",
            "put files back and waive them; --beside: under another name if need be"},
    Command{"waive", "Waive", WordsAre::Threats, kWaiveOptions, "[--reason TEXT] [--end] THREAT...",
            "say that a content is harmless; --end: take that back"},
    Command{"delete", "Delete", WordsAre::Threats, kDeleteOptions, "[--yes] THREAT...",
            "delete files for ever; --yes: without asking first"},
    Command{"scan", "Scan", WordsAre::MaybePath, kScanOptions, "[--wait] [FOLDER]",
            "scan a folder, or in the background what the configuration names"},
    Command{"stop", "StopScan", WordsAre::MaybeNumber, {}, "[SCAN]", "stop one scan or all"},
    Command{"devices", "Devices", WordsAre::None, {}, "", "devices that came"},
    Command{"policy", "Policy", WordsAre::None, {}, "", "the configuration in use"},
    Command{"why",
            "Why",
            WordsAre::Path,
            {},
            "PATH",
            "whether a path is watched, by which rule, and the last verdict"},
};

} // namespace

std::span<const Command> commandTable() {
    return kCommands;
}

} // namespace korvale::agent
