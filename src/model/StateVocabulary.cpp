#include "model/StateVocabulary.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"

#include <algorithm>
#include <array>
#include <span>

namespace korvale {
namespace {

struct Word {
    std::uint32_t value; ///< a bit, or a whole state
    const char* key;
};

// Tables that are read from the top are in the order of precedence.

constexpr std::array fileStateWords{
    Word{FileStateBit::quarantined, "Quarantined"},
    Word{FileStateBit::waived, "Waived"},
    Word{FileStateBit::abnormal, "Abnormal"},
    Word{FileStateBit::unsafe, "Unsafe"},
};

constexpr std::array processStateWords{
    Word{ProcessState::alert, "Alert"},
    Word{ProcessState::ignored, "Ignored"},
    Word{ProcessState::blocked, "Blocked"},
    Word{ProcessState::terminated, "Terminated"},
};

constexpr std::array eventWords{
    Word{EventBit::quarantined, "Quarantined"},
    Word{EventBit::removed, "EventThreatStringFromValueRemoved"},
    Word{EventBit::waived, "Waived"},
    Word{EventBit::detected, "EventThreatStringFromValueDetected"},
};

constexpr std::array stateChangeWords{
    Word{FileStateBit::unsafe, "Unsafe"},
    Word{FileStateBit::abnormal, "Abnormal"},
    Word{FileStateBit::waived, "Waived"},
    Word{FileStateBit::quarantined, "Quarantined"},
    Word{FileStateBit::running, "EventThreatStringFromValueRunning"},
};

struct MemdefType {
    QStringView type;
    QStringView name;
};

constexpr std::array memdefTypes{
    MemdefType{u"0", u"Unknown"},          MemdefType{u"1", u"StackPivot"},
    MemdefType{u"2", u"StackProtect"},     MemdefType{u"3", u"OverwriteCode"},
    MemdefType{u"4", u"OopAllocate"},      MemdefType{u"5", u"OopMap"},
    MemdefType{u"6", u"OopWrite"},         MemdefType{u"7", u"OopWritePe"},
    MemdefType{u"8", u"OopOverwriteCode"}, MemdefType{u"9", u"OopUnmap"},
    MemdefType{u"10", u"OopThreadCreate"}, MemdefType{u"11", u"OopThreadApc"},
    MemdefType{u"12", u"LsassRead"},       MemdefType{u"13", u"TrackDataRead"},
    MemdefType{u"14", u"CpAllocate"},      MemdefType{u"15", u"CpMap"},
    MemdefType{u"16", u"CpWrite"},         MemdefType{u"17", u"CpWritePe"},
    MemdefType{u"18", u"CpOverwriteCode"}, MemdefType{u"19", u"CpUnmap"},
    MemdefType{u"20", u"CpThreadCreate"},  MemdefType{u"21", u"CpThreadApc"},
    MemdefType{u"22", u"ZeroAllocate"},    MemdefType{u"23", u"DYLDInjection"},
};

/// Key of the first word whose bit is set in `bits`; nullptr if there is none.
const char* firstKey(std::span<const Word> words, std::uint32_t bits) {
    const auto word = std::ranges::find_if(
        words, [bits](const Word& candidate) { return (bits & candidate.value) != 0; });
    return word != words.end() ? word->key : nullptr;
}

QString stateChangeText(std::uint32_t fileState) {
    if (fileState == 0) {
        return localizedText("EventThreatStringFromValueNone");
    }
    QString text;
    for (const Word& word : stateChangeWords) {
        if ((fileState & word.value) != 0) {
            text += formatText(u"%@ ", {localizedText(word.key)});
        }
    }
    return text;
}

} // namespace

const char* stateKeyFromValue(std::uint32_t fileState) {
    const char* key = firstKey(fileStateWords, fileState);
    return key != nullptr ? key : "Unknown";
}

QString stateStringFromValue(std::uint32_t fileState) {
    return localizedText(stateKeyFromValue(fileState));
}

const char* procStateKeyFromValue(std::uint32_t processState) {
    const auto* const word = std::ranges::find(processStateWords, processState, &Word::value);
    return word != processStateWords.end() ? word->key : "Unknown";
}

QString procStateStringFromValue(std::uint32_t processState) {
    return localizedText(procStateKeyFromValue(processState));
}

const char* eventKeyFromValue(std::uint32_t event) {
    const char* key = (event & EventBit::stateChange) == 0 ? firstKey(eventWords, event) : nullptr;
    return key != nullptr ? key : "EventThreatStringFromValueStateChange";
}

QString eventThreatStringFromValue(std::uint32_t event, std::uint32_t fileState) {
    if ((event & EventBit::stateChange) != 0) {
        return stateChangeText(fileState);
    }
    if (const char* key = firstKey(eventWords, event)) {
        return localizedText(key);
    }
    return formatText(u"%@ (%u)", {localizedText("EventThreatStringFromValueStateChange"),
                                   QString::number(event)});
}

std::optional<QString> memdefTypeString(QStringView type) {
    const auto* const entry = std::ranges::find(memdefTypes, type, &MemdefType::type);
    return entry != memdefTypes.end() ? std::optional(entry->name.toString()) : std::nullopt;
}

} // namespace korvale
