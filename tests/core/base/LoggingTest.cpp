#include "core/base/Logging.h"

#include "fakes/RecordingLogSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using testing::ElementsAre;

struct Escaped {
    const char* name;
    QString text;
    std::string line;
};
class ControlCharacters : public testing::TestWithParam<Escaped> {};

TEST_P(ControlCharacters, AreWrittenAsTheirNumber) {
    RecordingLogSink sink;
    OSLoggingLogMessage(LogLevel::Info, "Displaying (%@)", {GetParam().text});
    EXPECT_THAT(sink.lines(), ElementsAre("INFO \"Displaying (" + GetParam().line + ")\""));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ControlCharacters,
    testing::Values(Escaped{"LineFeed", QStringLiteral("a\nERROR \"forged\""),
                            "a\\x0aERROR \"forged\""},
                    Escaped{"CarriageReturn", QStringLiteral("a\rb"), "a\\x0db"},
                    Escaped{"Tab", QStringLiteral("a\tb"), "a\\x09b"},
                    Escaped{"Nul", QString(QChar(0)), "\\x00"},
                    Escaped{"Escape", QStringLiteral("\x1b[31m"), "\\x1b[31m"},
                    Escaped{"LastC0", QString(QChar(0x1f)), "\\x1f"},
                    Escaped{"Delete", QString(QChar(0x7f)), "\\x7f"},
                    Escaped{"FirstC1", QString(QChar(0x80)), "\\x80"},
                    Escaped{"LastC1", QString(QChar(0x9f)), "\\x9f"},
                    Escaped{"NotNoBreakSpace", QString(QChar(0xa0)), "\xc2\xa0"},
                    Escaped{"NotLettersAndBackslash", QStringLiteral("d\\x0a \u00e9\u65e5"),
                            "d\\x0a \u00e9\u65e5"}),
    [](const auto& instance) { return instance.param.name; });

TEST(Logging, EveryControlCharacterIsEscapedAndNothingElse) {
    for (int code = 0; code < 0x100; ++code) {
        const bool control = code < 0x20 || (code >= 0x7f && code <= 0x9f);
        EXPECT_EQ(escapeControlCharacters(QString(QChar(code))).size(), control ? 4 : 1) << code;
    }
}

TEST(Logging, ALineIsTheLevelWordABlankAndTheQuotedMessage) {
    RecordingLogSink sink;
    OSLoggingLogMessage(LogLevel::Error, "a %s", {QStringLiteral("b")});
    OSLoggingLogMessage(LogLevel::Warn, "c");
    OSLoggingLogMessage(LogLevel::Info, "%i%%", {QStringLiteral("5")});
    OSLoggingLogMessage(LogLevel::Debug, "");
    EXPECT_THAT(sink.lines(),
                ElementsAre("ERROR \"a b\"", "WARN \"c\"", "INFO \"5%\"", "DEBUG \"\""));
}

TEST(Logging, WritesWhateverTheLevelSinceCallersAskFirst) {
    RecordingLogSink sink;
    setLogLevel(LogLevel::Error);
    EXPECT_TRUE(logs(LogLevel::Error));
    EXPECT_FALSE(logs(LogLevel::Warn));
    OSLoggingLogMessage(LogLevel::Debug, "not filtered");
    setLogLevel(LogLevel::Info);
    EXPECT_THAT(sink.lines(), ElementsAre("DEBUG \"not filtered\""));
}

TEST(Logging, ArgumentsOfASuppressedLineAreNotEvenComputed) {
    RecordingLogSink sink;
    int computed = 0;
    const auto number = [&computed] { return QString::number(++computed); };
    setLogLevel(LogLevel::Warn);
    logLine(LogLevel::Info, "%@", number);
    logLine(LogLevel::Warn, "%@ %s %i %u", number, "text", -1, 2U);
    setLogLevel(LogLevel::Info);
    EXPECT_EQ(computed, 1);
    EXPECT_THAT(sink.lines(), ElementsAre("WARN \"1 text -1 2\""));
}

TEST(Logging, ErrorsAreWrittenAtEveryLevel) {
    for (const LogLevel level :
         {LogLevel::Error, LogLevel::Warn, LogLevel::Info, LogLevel::Debug}) {
        setLogLevel(level);
        EXPECT_TRUE(logs(LogLevel::Error));
    }
    setLogLevel(LogLevel::Info);
}

TEST(Logging, InitialLevelIsTheBuilds) {
    EXPECT_EQ(static_cast<int>(logLevel()), KORVALE_LOG_LEVEL);
}

TEST(Logging, TraceLinesHaveNoLevelWordAndNoQuotesButCannotForgeALineEither) {
    RecordingLogSink sink;
    logTrace("dictkey=%@ dictvalue=%@", {QStringLiteral("k"), QStringLiteral("v\nINFO \"x\"")});
    EXPECT_THAT(sink.lines(), ElementsAre("dictkey=k dictvalue=v\\x0aINFO \"x\""));
}

TEST(Logging, UninitializedLoggingWritesBothTexts) {
    RecordingLogSink sink;
    UninitializedLogging("core", "too early");
    EXPECT_THAT(sink.lines(), ElementsAre("Uninitialized Logging [core] too early"));
}

TEST(Logging, WithoutASinkLinesGoToStandardError) {
    testing::internal::CaptureStderr();
    OSLoggingLogMessage(LogLevel::Info, "early");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"early\"\n");
}

} // namespace
} // namespace korvale
