// A list file of the agent, handed to every parser, with every text of every row.

#include "core/base/Logging.h"
#include "model/EventList.h"
#include "model/ExternalDevicesEvents.h"
#include "model/FileProcessEvents.h"
#include "model/FileStateChanges.h"
#include "model/ProcessStateChanges.h"

#include <QByteArrayView>

#include <cstdlib>

using namespace korvale;

namespace {

class SilentSink final : public LogSink {
public:
    void write(LogLevel /*level*/, const QByteArray& /*line*/) override {}
};

class SilentNotifications final : public NotificationSender {
public:
    void SendNotification(const QString& /*message*/, const QString& /*subtitle*/,
                          int /*image*/) override {}
    void SendConsumerNotification(const QString& /*message*/, const QString& /*url*/) override {}
    void SendSondarNotification(const QString& /*message*/) override {}
};

/// Asks for every text that a table could show.
class ReadingTable final : public TableFeed {
public:
    void loadData(RowBatchPtr rows) override { read(rows.get()); }
    void addData(RowBatchPtr rows) override {
        if (rows == nullptr || rows->size() > 1000) {
            std::abort();
        }
        read(rows.get());
    }
    void updateView() override {}

private:
    static void read(const RowBatch* rows) {
        for (std::size_t row = 0; rows != nullptr && row < rows->size(); ++row) {
            for (int key = 0; key <= static_cast<int>(RowKey::Action); ++key) {
                static_cast<void>(rows->text(row, static_cast<RowKey>(key)));
            }
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SilentSink sink;
    setLogSink(&sink);
    const auto list = JsonValue::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!list) {
        return 0;
    }
    AppState state;
    state.justStart = false;
    ReadingTable table;
    SilentNotifications notifications;
    FileStateChanges(state, table, notifications).parseFileStateChanges(list);
    ExternalDevicesEvents(state, table).parseExternalDevicesEvents(list);

    const ProcessPass pass = processPass(*list, {}, [&] { return firstExploitTypeName(*list); });
    table.loadData(pass.rows);
    if (processPass(*list, pass.newProcesses, [] { return QString(); }).message) {
        std::abort(); // every process is known by now
    }

    RememberedEvents remembered;
    FileProcessEvents events(state, remembered, table);
    const bool fits = list->size() <= 1000;
    if (events.parseFileProcessEvents(list) && fits && events.parseFileProcessEvents(list)) {
        std::abort(); // every event is known by now
    }
    return 0;
}
