#include "model/StateVocabulary.h"

#include "fakes/FakeTexts.h"

#include <array>
#include <gtest/gtest.h>

namespace korvale {
namespace {

TEST(StateVocabulary, FileStatesHaveAnOrderOfPrecedence) {
    struct Case {
        std::uint32_t state;
        const char16_t* word;
    };
    static constexpr std::array cases{
        Case{0, u"Unknown"},          Case{1, u"Unsafe"},       Case{2, u"Abnormal"},
        Case{3, u"Abnormal"},         Case{4, u"Waived"},       Case{5, u"Waived"},
        Case{6, u"Waived"},           Case{8, u"Quarantined"},  Case{12, u"Quarantined"},
        Case{9, u"Quarantined"},      Case{15, u"Quarantined"}, Case{16, u"Unknown"},
        Case{0xFFFFFFF0, u"Unknown"},
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(stateStringFromValue(expected.state), QString::fromUtf16(expected.word))
            << expected.state;
    }
}

TEST(StateVocabulary, ProcessStatesAreWholeNumbers) {
    struct Case {
        std::uint32_t state;
        const char16_t* word;
    };
    static constexpr std::array cases{
        Case{0, u"Alert"},   Case{1, u"Ignored"},
        Case{2, u"Blocked"}, Case{3, u"Terminated"},
        Case{4, u"Unknown"}, Case{static_cast<std::uint32_t>(-1), u"Unknown"},
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(procStateStringFromValue(expected.state), QString::fromUtf16(expected.word))
            << expected.state;
    }
}

TEST(StateVocabulary, EventsHaveTheirOwnBits) {
    struct Case {
        std::uint32_t event;
        std::uint32_t fileState;
        const char16_t* text;
    };
    static constexpr std::array cases{
        Case{1, 0, u"EventThreatStringFromValueDetected"},
        Case{2, 0, u"Quarantined"},
        Case{3, 0, u"Quarantined"},
        Case{4, 0, u"Waived"},
        Case{5, 0, u"Waived"},
        Case{8, 0, u"EventThreatStringFromValueRemoved"},
        Case{12, 0, u"EventThreatStringFromValueRemoved"},
        Case{10, 8, u"Quarantined"},
        Case{0, 0, u"EventThreatStringFromValueStateChange (0)"},
        Case{0, 31, u"EventThreatStringFromValueStateChange (0)"},
        Case{32, 1, u"EventThreatStringFromValueStateChange (32)"},
        Case{0xFFFFFFE0, 1, u"EventThreatStringFromValueStateChange (4294967264)"},
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(eventThreatStringFromValue(expected.event, expected.fileState),
                  QString::fromUtf16(expected.text))
            << expected.event << ' ' << expected.fileState;
    }
}

TEST(StateVocabulary, AStateChangeNamesEveryBitAndEndsInABlank) {
    struct Case {
        std::uint32_t fileState;
        const char16_t* text;
    };
    static constexpr std::array cases{
        Case{0, u"EventThreatStringFromValueNone"},
        Case{9, u"Unsafe Quarantined "},
        Case{24, u"Quarantined EventThreatStringFromValueRunning "},
        Case{31, u"Unsafe Abnormal Waived Quarantined EventThreatStringFromValueRunning "},
        Case{32, u""}, // not 0, but no word either
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(eventThreatStringFromValue(16, expected.fileState),
                  QString::fromUtf16(expected.text))
            << expected.fileState;
        EXPECT_EQ(eventThreatStringFromValue(31, expected.fileState),
                  QString::fromUtf16(expected.text))
            << expected.fileState;
    }
}

TEST(StateVocabulary, WordsAreInTheUsersLanguage) {
    const FakeTexts texts{
        {"Quarantined", QStringLiteral("In Quarantäne")},
        {"EventThreatStringFromValueStateChange", QStringLiteral("100 %@ anders")},
        {"Alert", QStringLiteral("Alarm")}};
    EXPECT_EQ(stateStringFromValue(8), QStringLiteral("In Quarantäne"));
    EXPECT_EQ(procStateStringFromValue(0), QStringLiteral("Alarm"));
    EXPECT_EQ(eventThreatStringFromValue(16, 8), QStringLiteral("In Quarantäne "));
    EXPECT_EQ(eventThreatStringFromValue(64, 0), QStringLiteral("100 %@ anders (64)"));
}

TEST(StateVocabulary, EveryExploitTypeHasItsName) {
    static constexpr std::array names{
        u"Unknown",         u"StackPivot",   u"StackProtect", u"OverwriteCode",    u"OopAllocate",
        u"OopMap",          u"OopWrite",     u"OopWritePe",   u"OopOverwriteCode", u"OopUnmap",
        u"OopThreadCreate", u"OopThreadApc", u"LsassRead",    u"TrackDataRead",    u"CpAllocate",
        u"CpMap",           u"CpWrite",      u"CpWritePe",    u"CpOverwriteCode",  u"CpUnmap",
        u"CpThreadCreate",  u"CpThreadApc",  u"ZeroAllocate", u"DYLDInjection",
    };
    for (std::size_t type = 0; type < names.size(); ++type) {
        EXPECT_EQ(memdefTypeString(QString::number(type)), QString::fromUtf16(names[type]));
    }
}

TEST(StateVocabulary, ATypeIsComparedAsText) {
    for (const char16_t* type : {u"24", u"", u"05", u" 5", u"5.0", u"-1", u"StackPivot"}) {
        EXPECT_EQ(memdefTypeString(type), std::nullopt) << QString::fromUtf16(type).toStdString();
    }
}

} // namespace
} // namespace korvale
