#include "agent_sim/SyntheticRecords.h"

#include "agent/publish/HostCacheLists.h"
#include "agent/publish/HostCacheWriter.h"
#include "fakes/TestFolder.h"

namespace korvale::sim {
namespace {

QByteArray listOf(int count, const QString& kind, const QString& file) {
    const TestFolder folder;
    HostCacheLists model;
    HostCacheWriter writer(folder.path());
    EXPECT_TRUE(addSyntheticRecords(model, count, kind));
    EXPECT_TRUE(model.publish(writer));
    return folder.read(file);
}

TEST(SyntheticRecords, AreAsManyAsAskedFor) {
    for (const char* file : {"file_states.log", "process_states.log", "file_process_events.log",
                             "external_device_control_events.log"}) {
        const QByteArray list = listOf(2500, QStringLiteral("all"), QLatin1String(file));
        EXPECT_EQ(QJsonDocument::fromJson(list).object().size(), 2500) << file;
    }
}

TEST(SyntheticRecords, AreTheSameEachTime) {
    for (const char* file : {"file_states.log", "process_states.log", "file_process_events.log",
                             "external_device_control_events.log"}) {
        EXPECT_EQ(listOf(50, QStringLiteral("all"), QLatin1String(file)),
                  listOf(50, QStringLiteral("all"), QLatin1String(file)));
    }
}

TEST(SyntheticRecords, SomeFilesShareAnIdentifier) {
    const QJsonObject files = QJsonDocument::fromJson(listOf(4, QStringLiteral("files"),
                                                             QStringLiteral("file_states.log")))
                                  .object();
    QSet<QString> ids;
    for (const QJsonValue& record : files) {
        ids.insert(record[QStringLiteral("ID")].toString());
    }
    EXPECT_EQ(ids.size(), 3);
}

TEST(SyntheticRecords, AnUnknownKindIsRefused) {
    HostCacheLists model;
    EXPECT_FALSE(addSyntheticRecords(model, 1, QStringLiteral("nonsense")));
}

} // namespace
} // namespace korvale::sim
