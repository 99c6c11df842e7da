// docs/agent-interface.md, held against the agent's code and the program's.
#include "agent/publish/HostCacheLists.h"
#include "agent/publish/HostCacheNames.h"
#include "agent/publish/HostCacheWriter.h"
#include "agent/publish/NotificationNames.h"
#include "agent_link/AgentNotificationTable.h"
#include "agent_link/ServiceCommand.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingTableFeed.h"
#include "fakes/TestFolder.h"
#include "model/EventList.h"
#include "model/ExternalDevicesEvents.h"
#include "model/FileProcessEvents.h"
#include "model/FileStateChanges.h"
#include "model/HostCache.h"
#include "model/ProcessStateChanges.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace korvale {
namespace {

QString documentText() {
    QFile file(QStringLiteral(KORVALE_INTERFACE_DOCUMENT));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

/// The examples of the files, by name.
QMap<QString, QByteArray> examples() {
    QMap<QString, QByteArray> found;
    QString name;
    bool isExample = false;
    for (const QString& line : documentText().split(u'\n')) {
        if (isExample) {
            found.insert(name, line.toUtf8());
        } else if (line.startsWith(u'`') &&
                   line.section(u'`', 1, 1).endsWith(QLatin1String(".log"))) {
            name = line.section(u'`', 1, 1);
        }
        isExample = line == QLatin1String("```json");
    }
    return found;
}

class InterfaceDocumentTest : public testing::Test {
protected:
    InterfaceDocumentTest() {
        for (auto example = m_examples.begin(); example != m_examples.end(); ++example) {
            m_folder.write(example.key(), *example);
        }
    }
    std::optional<JsonValue> read(const char* file) {
        return m_hostCache.readFile(QLatin1String(file));
    }
    QString member(const char* file, const char* name) {
        const std::optional<JsonValue> object = read(file);
        EXPECT_TRUE(object.has_value()) << file;
        return m_folder.readJson(QLatin1String(file))
            .value(QLatin1String(name))
            .toVariant()
            .toString();
    }

    const QMap<QString, QByteArray> m_examples = examples();
    TestFolder m_folder;
    fakes::MemoryUserDefaults m_defaults;
    HostCache m_hostCache{m_defaults, m_folder.path()};
};

TEST_F(InterfaceDocumentTest, EveryFileHasAnExampleThatTheProgramReads) {
    const QStringList files{QStringLiteral("analysis_count.log"),
                            QStringLiteral("analyzer_status.log"),
                            QStringLiteral("consumer_notification.log"),
                            QStringLiteral("exe_blocked.log"),
                            QStringLiteral("external_device_control_events.log"),
                            QStringLiteral("file_process_events.log"),
                            QStringLiteral("file_states.log"),
                            QStringLiteral("header.log"),
                            QStringLiteral("process_blocked.log"),
                            QStringLiteral("process_states.log"),
                            QStringLiteral("process_terminated.log"),
                            QStringLiteral("scanner_state.log")};
    EXPECT_EQ(m_examples.keys(), files);
    for (const QString& file : files) {
        EXPECT_TRUE(m_hostCache.readFile(file).has_value()) << file.toStdString();
    }
}

TEST_F(InterfaceDocumentTest, TheListsAreWhatTheAgentWrites) {
    agent::HostCacheLists lists;
    lists.setFile(
        QStringLiteral("/home/ada/Downloads/invoice.pdf.exe"),
        {9, QStringLiteral("275a021bbfb6489e54d471899f7db9d1663fc695ec2fe2a2c4538aabf651fd0f"),
         100});
    lists.setFile(QStringLiteral("/home/ada/keygen.bin"),
                  {2, QStringLiteral("6c4b761a28b734fe93831e3fb400ce87"), 60});
    lists.setScanning(false);
    lists.setAnalysed(3001);
    lists.setEventTime(QStringLiteral("2026-11-21 22:30:41"));
    lists.addThreatEvent(QStringLiteral("/home/ada/Downloads/invoice.pdf.exe"), 9,
                         agent::threat_event::kQuarantined);
    lists.setEventTime(QStringLiteral("2026-11-21 22:31:05"));
    lists.addExploit(
        {4711, QStringLiteral("/usr/bin/viewer"), 3, QStringLiteral("2"), QStringLiteral("12")});
    agent::HostCacheBatch batch = lists.takeBatch();
    lists.setEventTime(QStringLiteral("2026-11-21 22:32:10"));
    lists.addDeviceEvent({QStringLiteral("USB Drive"), QStringLiteral("Block"),
                          QStringLiteral("SanDisk"), QStringLiteral("Cruzer"),
                          QStringLiteral("4C530001")});
    const agent::HostCacheBatch devices = lists.takeBatch();
    batch.files.insert(batch.files.end(), devices.files.begin(), devices.files.end() - 1);
    for (const agent::HostCacheBatch::File& file : batch.files) {
        if (file.name != QLatin1String("process_state.log")) {
            EXPECT_EQ(file.content, m_examples.value(file.name)) << file.name.toStdString();
        }
    }
    EXPECT_EQ(batch.files.size(), 8U);
}

TEST_F(InterfaceDocumentTest, TheListsAreRowsOfTheProgram) {
    AppState state;
    QStringList calls;
    fakes::RecordingDisplays displays{state};
    fakes::RecordingTableFeed table{QStringLiteral("t"), calls};
    FileStateChanges(state, table, displays).parseFileStateChanges(read("file_states.log"));
    EXPECT_EQ(table.rows->size(), 2U);
    EXPECT_EQ(state.quarantineCount, 1);
    EXPECT_EQ(state.abnormalDetectCount, 1);
    ProcessIds known;
    ProcessStateChanges(state, known, table, displays, [] {
        return QString();
    }).parseProcessStateChanges(read("process_states.log"));
    EXPECT_EQ(table.row(0, {RowKey::ProcessName, RowKey::Pid, RowKey::Found}),
              QStringList({QStringLiteral("viewer"), QStringLiteral("4711"), QStringLiteral("2")}));
    EXPECT_EQ(firstExploitTypeName(*read("file_process_events.log")), QStringLiteral("LsassRead"));
    state.justStart = false;
    RememberedEvents events;
    EXPECT_TRUE(FileProcessEvents(state, events, table)
                    .parseFileProcessEvents(read("file_process_events.log")));
    EXPECT_EQ(table.rows->size(), 2U);
    EXPECT_TRUE(ExternalDevicesEvents(state, table)
                    .parseExternalDevicesEvents(read("external_device_control_events.log")));
    EXPECT_EQ(table.row(0, {RowKey::DeviceType, RowKey::VendorId, RowKey::SerialNumber}),
              QStringList({QStringLiteral("USB Drive"), QStringLiteral("SanDisk"),
                           QStringLiteral("4C530001")}));
}

TEST_F(InterfaceDocumentTest, TheBitsAreThoseOfTheAgent) {
    const QRegularExpression row(QStringLiteral("\n\\| ([0-9]+) \\| `([a-z_]+[.]log)`"));
    auto matches = row.globalMatch(documentText());
    int rows = 0;
    while (matches.hasNext()) {
        const auto match = matches.next();
        EXPECT_EQ(agent::maskBitOfFile(match.captured(2)), match.captured(1).toUInt())
            << match.captured(2).toStdString();
        ++rows;
    }
    EXPECT_EQ(rows, 11);
}

TEST_F(InterfaceDocumentTest, TheNotificationsAreThoseOfBothSides) {
    const QRegularExpression row(QStringLiteral("\n\\| `(com[.]korvale[.a-z_]+)` \\|"));
    QStringList documented;
    auto matches = row.globalMatch(documentText());
    while (matches.hasNext()) {
        documented.append(matches.next().captured(1));
    }
    QStringList agents;
    for (const QStringView name : agent::notificationNames()) {
        agents.append(name.toString());
    }
    EXPECT_EQ(documented.join(u' ').toStdString(), agents.join(u' ').toStdString());
    QStringList programs;
    for (const AgentNotificationRow& entry : agentNotificationTable) {
        programs.append(QLatin1String(entry.name));
    }
    EXPECT_EQ(documented.join(u' ').toStdString(), programs.join(u' ').toStdString());
}

TEST_F(InterfaceDocumentTest, TheCommandsAreThoseOfTheProgram) {
    const QRegularExpression row(QStringLiteral("\n\\| `(\\{\"CMD_\":[^`]*)` \\| `([^`]*)`"));
    QSet<QString> documented;
    auto matches = row.globalMatch(documentText());
    while (matches.hasNext()) {
        const auto match = matches.next();
        const QJsonObject request = QJsonDocument::fromJson(match.captured(1).toUtf8()).object();
        const QJsonObject reply = QJsonDocument::fromJson(match.captured(2).toUtf8()).object();
        EXPECT_EQ(reply.value(QStringLiteral("RESP")), QStringLiteral("OK"))
            << match.captured(0).toStdString();
        documented.insert(request.value(QStringLiteral("CMD_")).toString());
    }
    QSet<QString> programs;
    for (const ServiceCommandRow& command : serviceCommandTable) {
        programs.insert(QLatin1String(command.code));
    }
    EXPECT_EQ(documented, programs);
    EXPECT_EQ(documented.size(), 10);
}

TEST_F(InterfaceDocumentTest, SingleValuesStandUnderTheNamesThatAreRead) {
    EXPECT_EQ(member("header.log", "MessageMask"), QStringLiteral("23"));
    EXPECT_EQ(member("scanner_state.log", "ScannerState"), QStringLiteral("1"));
    EXPECT_FALSE(member("analyzer_status.log", "CurrentFile").isEmpty());
    EXPECT_FALSE(member("consumer_notification.log", "ConsumerNotificationMessage").isEmpty());
    EXPECT_FALSE(member("exe_blocked.log", "BlockedExePath").isEmpty());
    EXPECT_FALSE(member("process_terminated.log", "ProcessTerminated").isEmpty());
    EXPECT_FALSE(member("process_blocked.log", "ProcessActionBlocked").isEmpty());
}

} // namespace
} // namespace korvale
