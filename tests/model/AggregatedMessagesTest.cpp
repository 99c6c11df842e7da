#include "fakes/OpenCounter.h"
#include "model/BatchFixture.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

namespace korvale {
namespace {

constexpr int fileStates = 1;
constexpr int scannerState = 2;
constexpr int analysisCount = 4;
constexpr int processStates = 16;
constexpr int devices = 2048;

class AggregatedMessagesTest : public BatchFixture {
protected:
    void remove(const char* name) const {
        QFile::remove(folder.filePath(QString::fromLatin1(name)));
    }

    void writeThreat() const { write("file_states.log", R"({"/tmp/a": {"State": 1}})"); }
    void writeProcesses(int pid) const {
        write("process_states.log",
              "{\"r\": {\"State\": 2, \"PID\": " + QByteArray::number(pid) + "}}");
    }
    void writeDevices(int when) const {
        write("external_device_control_events.log",
              "{\"d\": {\"When\": " + QByteArray::number(when) + "}}");
    }
    void writeEvents(int key) const {
        write("file_process_events.log",
              "{\"" + QByteArray::number(key) + "\": {\"Category\": \"Threat\"}}");
    }

    /// What one batch with this mask made the tables and displays do, in order.
    QStringList pass(int mask) {
        write("header.log", "{\"MessageMask\": " + QByteArray::number(mask) + "}");
        return pass();
    }
    QStringList pass() {
        calls.clear();
        displays.shown.clear();
        messages.parseTimerAggregatedMessage();
        EXPECT_EQ(displays.shown.takeLast(), QStringLiteral("counters")); // always, and last
        return calls;
    }
};

QStringList lines(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts) {
        list << QString::fromLatin1(text);
    }
    return list;
}

TEST_F(AggregatedMessagesTest, WithoutAHeaderOnlyTheDisplayIsRefreshed) {
    writeThreat();
    writeProcesses(1);
    state.justStart = true;
    EXPECT_EQ(pass(), lines({}));
    for (const char* broken : {"", "{", "5", "{\"MessageMask\": 1,}", "\xFF"}) {
        write("header.log", broken);
        EXPECT_EQ(pass(), lines({})) << broken;
    }
}

TEST_F(AggregatedMessagesTest, AMaskOfZeroReadsNothing) {
    writeThreat();
    writeProcesses(1);
    writeEvents(1);
    writeDevices(1);
    write("analysis_count.log", R"({"AnalyzedCount": 5})");
    EXPECT_EQ(pass(0), lines({}));
    EXPECT_EQ(state.analyzedCount, 0);
}

/// The names of the files in a folder that are opened while it lives.
class Opens {
public:
    explicit Opens(const QString& folder) : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(inotify_add_watch(m_descriptor, QFile::encodeName(folder).constData(), IN_OPEN),
                  0);
    }
    ~Opens() { close(m_descriptor); }
    Opens(const Opens&) = delete;
    Opens& operator=(const Opens&) = delete;

    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> names;
        alignas(inotify_event) std::array<char, 65536> events{};
        const ssize_t size = ::read(m_descriptor, events.data(), events.size());
        for (ssize_t at = 0; at < size;) {
            inotify_event event{};
            std::memcpy(&event, events.data() + at, sizeof event);
            if (event.len > 0) { // not the folder itself
                names.emplace(events.data() + at + sizeof event);
            }
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return names;
    }

private:
    int m_descriptor;
};

TEST_F(AggregatedMessagesTest, AMaskOfZeroOpensTheHeaderAlone) {
    writeThreat();
    writeProcesses(1);
    writeEvents(1);
    writeDevices(1);
    write("analysis_count.log", "{}");
    write("scanner_state.log", "{}");
    write("header.log", R"({"MessageMask": 0})");
    const Opens opens(folder.path());
    pass();
    EXPECT_THAT(opens.names(), testing::ElementsAre("header.log"));
}

TEST_F(AggregatedMessagesTest, EachBitOpensItsOwnFilesAndNoOthers) {
    writeThreat();
    writeProcesses(1);
    writeEvents(1);
    writeDevices(1);
    write("analysis_count.log", "{}");
    write("scanner_state.log", "{}");
    const auto opened = [this](int mask) {
        write("header.log", "{\"MessageMask\": " + QByteArray::number(mask) + "}");
        const Opens opens(folder.path());
        pass();
        std::set<std::string> names = opens.names();
        names.erase("header.log");
        return names;
    };
    using testing::ElementsAre;
    EXPECT_THAT(opened(fileStates), ElementsAre("file_process_events.log", "file_states.log"));
    EXPECT_THAT(opened(scannerState), ElementsAre("scanner_state.log"));
    EXPECT_THAT(opened(analysisCount), ElementsAre("analysis_count.log"));
    EXPECT_THAT(opened(processStates),
                ElementsAre("file_process_events.log", "process_states.log"));
    EXPECT_THAT(opened(devices), ElementsAre("external_device_control_events.log"));
}

TEST_F(AggregatedMessagesTest, OfFifteenHundredEventsTheRestWaitsForTheFileToChange) {
    const auto writeMany = [this](int count) {
        QByteArray events = "{";
        for (int i = 0; i < count; ++i) {
            events += "\"/tmp/" + QByteArray::number(i) + "\": {\"Category\": \"Threat\"},";
        }
        events.back() = '}';
        write("file_process_events.log", events);
    };
    writeMany(1500);
    EXPECT_EQ(pass(processStates), lines({"events add 1000", "events update"}));
    EXPECT_EQ(pass(processStates), lines({})) << "the file is the same";
    writeMany(1501);
    EXPECT_EQ(pass(processStates), lines({"events add 501", "events update"}));
    EXPECT_EQ(state.eventCount, 1501);
}

TEST_F(AggregatedMessagesTest, TheMaskIsReadWhateverItsType) {
    struct Case {
        const char* header;
        bool readsCount;
    };
    static constexpr Case cases[]{
        {R"({"MessageMask": 4})", true},
        {R"({"MessageMask": 4.9})", true},
        {R"({"MessageMask": "4"})", true},
        {R"({"MessageMask": -1})", true},
        {R"({"MessageMask": 4294967300})", true},
        {R"({"MessageMask": "x4"})", false},
        {R"({"MessageMask": null})", false},
        {R"({"MessageMask": [4]})", false},
        {R"({"MessageMask": true})", false},
        {R"({})", false},
        {R"([4])", false},
        {R"({"MessageMask": 4, "MessageMask": 3})", false},
    };
    write("analysis_count.log", R"({"AnalyzedCount": 5})");
    for (const Case& expected : cases) {
        state.analyzedCount = 0;
        write("header.log", expected.header);
        pass();
        EXPECT_EQ(state.analyzedCount, expected.readsCount ? 5 : 0) << expected.header;
    }
}

TEST_F(AggregatedMessagesTest, StartUpReadsEverythingInAFixedOrder) {
    writeThreat();
    writeProcesses(1);
    writeEvents(1);
    writeDevices(1);
    write("analysis_count.log", R"({"AnalyzedCount": 7})");
    state.justStart = true;
    EXPECT_EQ(pass(0), lines({"threats load 1", "threats update", "devices add 1", "devices update",
                              "processes load 1", "processes update"}));
    EXPECT_EQ(state.analyzedCount, 7);
    EXPECT_EQ(state.threatDetectCount, 1);
    EXPECT_EQ(state.exploitAttempt, 1);
    EXPECT_EQ(state.externalDevicesCount, 1);
    EXPECT_EQ(state.eventCount, 0) << "events at start-up are remembered, not shown";
    EXPECT_EQ(remembered.cacheEvents.size(), 1U);
}

TEST_F(AggregatedMessagesTest, EverythingMaskedComesInTheSameOrder) {
    writeThreat();
    writeProcesses(1);
    writeEvents(1);
    writeDevices(1);
    state.statusState = StatusState::Inspecting;
    write("scanner_state.log", R"({"ScannerState": 1})");
    EXPECT_EQ(pass(0xFFFF),
              lines({"threats load 1", "threats update", "devices add 1", "devices update",
                     "processes load 1", "processes update", "events add 1", "events update"}));
    EXPECT_EQ(displays.shown.last(), QStringLiteral("status 5"));
}

TEST_F(AggregatedMessagesTest, AfterStartUpOnlyMaskedListsAreRead) {
    writeThreat();
    writeProcesses(1);
    writeDevices(1);
    EXPECT_EQ(pass(fileStates), lines({"threats load 1", "threats update"}));
    EXPECT_EQ(pass(processStates), lines({"processes load 1", "processes update"}));
    EXPECT_EQ(pass(devices), lines({"devices add 1", "devices update"}));
}

TEST_F(AggregatedMessagesTest, AnUnchangedThreatListIsNotParsedButEventsAreLookedAt) {
    writeThreat();
    pass(fileStates);
    writeEvents(1);
    EXPECT_EQ(pass(fileStates), lines({"events add 1", "events update"}));
    EXPECT_EQ(pass(fileStates), lines({}));
}

TEST_F(AggregatedMessagesTest, AMissingOrEmptyThreatListIsParsedOnEveryPass) {
    writeThreat();
    pass(fileStates);
    remove("file_states.log");
    EXPECT_EQ(pass(fileStates), lines({"threats load nothing", "threats update"}));
    EXPECT_EQ(pass(fileStates), lines({"threats load nothing", "threats update"}));
    EXPECT_EQ(state.threatDetectCount, 0);
    write("file_states.log", "{}");
    EXPECT_EQ(pass(fileStates), lines({"threats load 0", "threats update"}));
    EXPECT_EQ(pass(fileStates), lines({"threats load 0", "threats update"}));
    write("file_states.log", "{\"/tmp/a\": {\"State\": 1}");
    EXPECT_EQ(pass(fileStates), lines({"threats load nothing", "threats update"}))
        << "invalid JSON";
}

TEST_F(AggregatedMessagesTest, AChecksumOutlivesAnEmptyList) {
    writeThreat();
    pass(fileStates);
    remove("file_states.log");
    pass(fileStates);
    writeThreat();
    EXPECT_EQ(pass(fileStates), lines({})) << "the table stays empty until the list differs";
    EXPECT_EQ(state.threatDetectCount, 0);
}

TEST_F(AggregatedMessagesTest, TheOrderOfMembersAndWhiteSpaceIsNoChange) {
    write("process_states.log", R"({"a": {"PID": 1, "State": 2}, "b": {"PID": 2}})");
    pass(processStates);
    write("process_states.log", R"({ "b":{"PID":2.0},"a":{"State":2,"PID":1} })");
    EXPECT_EQ(pass(processStates), lines({}));
    write("process_states.log", R"({"a": {"PID": 1, "State": 3}, "b": {"PID": 2}})");
    EXPECT_EQ(pass(processStates), lines({"processes load 2", "processes update"}));
}

TEST_F(AggregatedMessagesTest, AMissingProcessListKeepsItsRowsAndEventsAreStillLookedAt) {
    writeProcesses(1);
    pass(processStates);
    remove("process_states.log");
    writeEvents(1);
    EXPECT_EQ(pass(processStates), lines({"events add 1", "events update"}));
    write("process_states.log", "{}");
    writeEvents(2);
    EXPECT_EQ(pass(processStates), lines({"events add 1", "events update"}));
    EXPECT_EQ(state.exploitAttempt, 1);
}

TEST_F(AggregatedMessagesTest, AnUnchangedProcessListDoesNotHideEvents) {
    writeProcesses(1);
    pass(processStates);
    writeEvents(1);
    EXPECT_EQ(pass(processStates), lines({"events add 1", "events update"}));
}

TEST_F(AggregatedMessagesTest, EventsAreNotLookedAtForOtherBits) {
    writeEvents(1);
    writeDevices(1);
    EXPECT_EQ(pass(devices | scannerState | analysisCount | 8 | 32 | 64 | 1024),
              lines({"devices add 1", "devices update"}));
    EXPECT_EQ(pass(processStates), lines({"events add 1", "events update"}));
}

TEST_F(AggregatedMessagesTest, EventsAtStartUpAreLookedAtWithoutAnyOtherList) {
    writeEvents(1);
    state.justStart = true;
    pass(0);
    EXPECT_EQ(remembered.cacheEvents.size(), 1U);
}

TEST_F(AggregatedMessagesTest, AChangedEventListWithoutNewRowsDoesNotRedraw) {
    writeEvents(1);
    pass(processStates);
    write("file_process_events.log", R"({"1": {"Category": "Threat", "When": "later"}})");
    EXPECT_EQ(pass(processStates), lines({}));
}

TEST_F(AggregatedMessagesTest, AMissingDeviceListKeepsItsRows) {
    writeDevices(1);
    pass(devices);
    remove("external_device_control_events.log");
    EXPECT_EQ(pass(devices), lines({}));
    write("external_device_control_events.log", "{}");
    EXPECT_EQ(pass(devices), lines({}));
    EXPECT_EQ(state.externalDevicesCount, 1);
}

TEST_F(AggregatedMessagesTest, ADeviceListWithoutRowsStillRedraws) {
    write("external_device_control_events.log", R"({"a": 1})");
    EXPECT_EQ(pass(devices), lines({"devices update"}));
}

TEST_F(AggregatedMessagesTest, DevicesAndProcessesShareOneChecksum) {
    writeDevices(1);
    writeProcesses(1);
    const QStringList both =
        lines({"devices add 1", "devices update", "processes load 1", "processes update"});
    EXPECT_EQ(pass(devices | processStates), both);
    EXPECT_EQ(pass(devices | processStates), both) << "each is compared with the other";
    EXPECT_EQ(pass(processStates), lines({}));
    EXPECT_EQ(pass(devices), lines({"devices add 1", "devices update"}));
    EXPECT_EQ(pass(devices), lines({}));
    EXPECT_EQ(pass(processStates), lines({"processes load 1", "processes update"}));
}

TEST_F(AggregatedMessagesTest, TheSameContentAsDevicesAndProcessesIsParsedOnce) {
    const QByteArray content = R"({"x": {"State": 2, "When": 1}})";
    write("external_device_control_events.log", content);
    write("process_states.log", content);
    EXPECT_EQ(pass(devices | processStates), lines({"devices add 1", "devices update"}));
}

TEST_F(AggregatedMessagesTest, AnIdleScannerEndsTheInspection) {
    struct Case {
        StatusState before;
        const char* scanner;
        bool ends;
    };
    static constexpr Case cases[]{
        {StatusState::Inspecting, R"({"ScannerState": 1})", true},
        {StatusState::Inspecting, R"({"ScannerState": "1"})", true},
        {StatusState::Inspecting, R"({"ScannerState": true})", true},
        {StatusState::Inspecting, R"({"ScannerState": 0})", false},
        {StatusState::Inspecting, R"({"ScannerState": 4294967297})", false},
        {StatusState::Inspecting, R"({"ScannerState": -4294967295})", false},
        {StatusState::Inspecting, R"({"ScannerState": 2})", false},
        {StatusState::Inspecting, R"({})", false},
        {StatusState::Inspecting, R"([1])", false},
        {StatusState::Inspecting, R"(broken)", false},
        {StatusState::UpdaterMessage, R"({"ScannerState": 1})", false},
        {StatusState::NotRunning, R"({"ScannerState": 1})", false},
        {StatusState::NoNetwork, R"({"ScannerState": 1})", false},
    };
    for (const Case& expected : cases) {
        state.statusState = expected.before;
        write("scanner_state.log", expected.scanner);
        pass(scannerState);
        EXPECT_EQ(displays.shown, expected.ends ? lines({"status 5"}) : lines({}))
            << expected.scanner;
        state.statusState = expected.before;
        pass(0);
        EXPECT_TRUE(displays.shown.isEmpty()) << "bit 2 is needed";
    }
}

TEST_F(AggregatedMessagesTest, TheAnalysedCountIsReadWhateverItsType) {
    struct Case {
        const char* content;
        std::int64_t count;
    };
    static constexpr Case cases[]{
        {R"({"AnalyzedCount": 12345678901})", 12345678901},
        {R"({"AnalyzedCount": "17"})", 17},
        {R"({"AnalyzedCount": -3.7})", -3},
        {R"({"Other": 1})", 0},
        {R"({"AnalyzedCount": null})", 0},
        {R"({"AnalyzedCount": {}})", 0},
        {R"([])", 0},
    };
    for (const Case& expected : cases) {
        state.analyzedCount = 99;
        write("analysis_count.log", expected.content);
        pass(analysisCount);
        EXPECT_EQ(state.analyzedCount, expected.count) << expected.content;
    }
    state.analyzedCount = 99;
    for (const char* absent : {"", "{\"AnalyzedCount\": 1", "7"}) {
        write("analysis_count.log", absent);
        pass(analysisCount);
        EXPECT_EQ(state.analyzedCount, 99) << absent;
    }
}

TEST_F(AggregatedMessagesTest, AListOnTopHasNoRecords) {
    writeThreat();
    writeProcesses(1);
    pass(fileStates | processStates);
    write("file_states.log", R"([{"State": 1}])");
    write("process_states.log", R"([{"PID": 1}])");
    write("external_device_control_events.log", R"([{"When": 1}])");
    write("file_process_events.log", R"([{"Category": "Threat"}])");
    EXPECT_EQ(pass(fileStates | processStates | devices),
              lines({"threats load 0", "threats update", "devices update", "processes load 0",
                     "processes update"}));
}

TEST_F(AggregatedMessagesTest, NewThreatsAndExploitsAreNotified) {
    writeThreat();
    write("process_states.log", R"({"r": {"State": 0, "PID": 1, "Path": "/x"}})");
    pass(fileStates | processStates);
    EXPECT_EQ(displays.shown.size(), 2);
}

TEST_F(AggregatedMessagesTest, TheExploitsNotificationNamesTheTypeOfTheEventList) {
    write("process_states.log", R"({"r": {"State": 0, "PID": 1, "Path": "/x"}})");
    write("file_process_events.log", R"({"e": {"Category": "Exploit", "ItemType": "3"}})");
    EXPECT_EQ(pass(processStates),
              lines({"processes load 1", "processes update", "events add 1", "events update"}));
    EXPECT_EQ(displays.shown.size(), 1);
}

TEST_F(AggregatedMessagesTest, TheTypeIsThatOfTheEventListOnDiskChangedOrNot) {
    const FakeTexts texts{{"NotificationMessageExploitDetectedPID", QStringLiteral("%@ %@ %@")}};
    const auto notified = [this](int pid) {
        write("process_states.log",
              "{\"r\": {\"Path\": \"/x\", \"PID\": " + QByteArray::number(pid) + "}}");
        pass(processStates);
        return displays.shown.value(0).section(u'|', 0, 0);
    };
    write("file_process_events.log", R"({"a": {"ItemType": "3"}, "b": {"ItemType": "12"}})");
    const QString first = notified(1);
    EXPECT_TRUE(first.startsWith(QStringLiteral("notify x 1 "))) << qPrintable(first);
    EXPECT_EQ(notified(2), QString(first).replace(u'1', u'2'));
    write("file_process_events.log", R"({"b": {"ItemType": "12"}, "a": {"ItemType": "3"}})");
    EXPECT_EQ(notified(3), QStringLiteral("notify x 3 LsassRead")) << "only the order is another";
    EXPECT_EQ(notified(4), QStringLiteral("notify x 4 LsassRead"));
    remove("file_process_events.log");
    EXPECT_EQ(notified(5), QStringLiteral("notify x 5 "));
    write("file_process_events.log", R"({"b": {"ItemType": "12"}, "a": {"ItemType": "3"}})");
    EXPECT_EQ(notified(6), QStringLiteral("notify x 6 LsassRead"));
    write("file_process_events.log", "{}");
    EXPECT_EQ(notified(7), QStringLiteral("notify x 7 "));
}

TEST_F(AggregatedMessagesTest, TheEventListIsOpenedOnceABatch) {
    writeEvents(1);
    writeProcesses(1);
    const fakes::OpenCounter opened(folder.filePath(QStringLiteral("file_process_events.log")));
    pass(processStates);
    EXPECT_EQ(opened.count(), 1);
    writeProcesses(2); // news, so that its type is asked for, while the events are the same
    pass(processStates);
    EXPECT_EQ(opened.count(), 2);
    pass(fileStates);
    EXPECT_EQ(opened.count(), 3);
}

struct NewsCase {
    const char* name;
    int bit;
    ListNews AppState::*news;
};

constexpr NewsCase newsCases[] = {
    {"file_states.log", fileStates, &AppState::fileThreats},
    {"process_states.log", processStates, &AppState::processThreats},
    {"file_process_events.log", processStates, &AppState::events},
    {"external_device_control_events.log", devices, &AppState::externalDevices},
};

TEST_F(AggregatedMessagesTest, AListIsNotReadUnreadableOrReadAsItWasFound) {
    for (const NewsCase& of : newsCases) {
        EXPECT_EQ(state.*of.news, ListNews::NotRead) << of.name;
        pass(of.bit);
        EXPECT_EQ(state.*of.news, ListNews::NotRead) << of.name;
        write(of.name, "{\"cut\": ");
        pass(of.bit);
        EXPECT_EQ(state.*of.news, ListNews::Unreadable) << of.name;
        write(of.name, "{}");
        pass(of.bit);
        EXPECT_EQ(state.*of.news, ListNews::Read) << of.name;
        pass(scannerState); // does not look at it
        EXPECT_EQ(state.*of.news, ListNews::Read) << of.name;
        remove(of.name);
        pass(of.bit);
        EXPECT_EQ(state.*of.news, ListNews::NotRead) << of.name;
    }
}

TEST_F(AggregatedMessagesTest, AnUnreadableListIsOneWarningAChange) {
    for (const NewsCase& of : newsCases) {
        const std::size_t before = log.lines().size();
        write(of.name, "{\"cut\": ");
        pass(of.bit);
        pass(of.bit);
        ASSERT_EQ(log.lines().size(), before + 1) << of.name;
        const std::string line = log.lines().back();
        EXPECT_THAT(line, testing::StartsWith("WARN \"" + folder.path().toStdString() + "/" +
                                              of.name + " is there and cannot be read"));
        write(of.name, "{\"cut again\": ");
        pass(of.bit);
        EXPECT_EQ(log.lines().size(), before + 2) << of.name;
        write(of.name, "{}");
        pass(of.bit);
        remove(of.name);
        pass(of.bit);
        EXPECT_EQ(log.lines().size(), before + 2) << of.name; // missing is no news
    }
}

TEST_F(AggregatedMessagesTest, AFolderOrDanglingLinkInAListsPlaceIsUnreadable) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("file_states.log")));
    pass(fileStates);
    EXPECT_EQ(state.fileThreats, ListNews::Unreadable);
    ASSERT_TRUE(QFile::link(QStringLiteral("/nonexistent/list"),
                            folder.filePath(QStringLiteral("process_states.log"))));
    pass(processStates);
    EXPECT_EQ(state.processThreats, ListNews::Unreadable);
    EXPECT_EQ(log.lines().size(), 2U);
}

TEST_F(AggregatedMessagesTest, AnUnreadableHeaderIsKnownAndSaidOnce) {
    pass();
    EXPECT_EQ(state.header, ListNews::NotRead);
    EXPECT_TRUE(log.lines().empty());
    write("header.log", "{\"MessageMask\":");
    pass();
    pass();
    EXPECT_EQ(state.header, ListNews::Unreadable);
    EXPECT_EQ(log.lines().size(), 1U);
    pass(0);
    EXPECT_EQ(state.header, ListNews::Read);
}

} // namespace
} // namespace korvale
