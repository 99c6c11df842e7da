#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/FileStateChanges.h"
#include "model/HostCache.h"
#include "model/TableFeeds.h"

#include <QString>

namespace korvale::bench {

/// A table that holds its rows and shows nothing.
class HeldRows final : public TableFeed {
public:
    void loadData(RowBatchPtr batch) override { rows = std::move(batch); }
    void addData(RowBatchPtr batch) override { rows = std::move(batch); }
    void updateView() override {}

    RowBatchPtr rows;
};

/// Nobody is told of anything.
class NoNotifications final : public NotificationSender {
    void SendNotification(const QString& /*message*/, const QString& /*subtitle*/,
                          int /*image*/) override {}
    void SendConsumerNotification(const QString& /*message*/, const QString& /*url*/) override {}
    void SendSondarNotification(const QString& /*message*/) override {}
};

/// What the program does with a batch of file threats, from the file to the table's rows.
class Batch {
public:
    explicit Batch(const QString& folder) : m_cache(m_defaults, folder) {}

    /// Reads `name` in the folder. `fresh` forgets the previous list first, so that the same file
    /// counts as changed.
    ListState run(const QString& name, bool fresh) {
        const ListRead read = m_cache.readList(name, fresh ? ListChecksum() : m_last);
        if (read.state == ListState::Changed) {
            m_last = read.checksum;
            m_changes.parseFileStateChanges(read.list);
        }
        return read.state;
    }

    [[nodiscard]] const RowBatchPtr& rows() const { return m_table.rows; }

private:
    class NoDefaults final : public UserDefaults {
        [[nodiscard]] bool boolForKey(const QString& /*key*/) const override { return false; }
        void setInteger(const QString& /*key*/, int /*value*/) override {}
        void removeObject(const QString& /*key*/) override {}
    };
    NoDefaults m_defaults;
    HostCache m_cache;
    AppState m_state;
    HeldRows m_table;
    NoNotifications m_notifications;
    ListChecksum m_last;
    FileStateChanges m_changes{m_state, m_table, m_notifications};
};

} // namespace korvale::bench
