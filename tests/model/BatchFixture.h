#pragma once

#include "fakes/FakeTexts.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/RecordingTableFeed.h"
#include "model/AggregatedMessages.h"
#include "model/HostCache.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace korvale {

/// Batches read from a folder of the test's own, past the first start's one.
class BatchFixture : public testing::Test {
protected:
    BatchFixture() { state.justStart = false; }

    void write(const char* name, const QByteArray& content) const {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    RecordingLogSink log;
    QTemporaryDir folder;
    QStringList calls; ///< of the tables, in order
    AppState state;
    RememberedLists remembered;
    fakes::MemoryUserDefaults defaults;
    HostCache hostCache{defaults, folder.path()};
    fakes::RecordingTableFeed threatTable{QStringLiteral("threats"), calls};
    fakes::RecordingTableFeed processTable{QStringLiteral("processes"), calls};
    fakes::RecordingTableFeed eventTable{QStringLiteral("events"), calls};
    fakes::RecordingTableFeed deviceTable{QStringLiteral("devices"), calls};
    fakes::RecordingDisplays displays{state};
    AggregatedMessages messages{
        state,    hostCache, remembered, {threatTable, processTable, eventTable, deviceTable},
        displays, displays,  displays};
};

} // namespace korvale
