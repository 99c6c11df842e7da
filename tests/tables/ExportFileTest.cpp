#include "tables/ExportFile.h"

#include "fakes/TestFolder.h"
#include "tables/EventsTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/TableOnScreen.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;
using Outcome = ExportResult::Outcome;

constexpr ExportField fields[] = {{"file", RowKey::File}};

RowSnapshot snapshotOf(RowList rows) {
    const int last = static_cast<int>(rows.size()) - 1;
    return {std::move(rows), std::nullopt, RowIndexes({{0, last}})};
}

struct ExportFileTest : testing::Test {
    ExportResult write(
        const QString& name, const RowSnapshot& rows,
        const std::function<bool(std::size_t)>& goOn = [](auto) { return true; }) {
        return writeRows(rows, fields, ExportFormat::Csv, folder.path(name), goOn);
    }
    /// The first cells of what was written, without the header.
    QStringList written(const QString& name) {
        return QString::fromUtf8(folder.read(name)).split(u"\r\n"_s).mid(1);
    }
    TestFolder folder;
    RowSnapshot three = snapshotOf(RowList(numberedRows(3, u"f"_s)));
    RowSnapshot many = snapshotOf(RowList(numberedRows(50'000, u"a-file-of-some-length-"_s)));
};

TEST_F(ExportFileTest, ReplacesWhatStandsThereAndLeavesNothingBeside) {
    folder.write(u"a.csv"_s, "old and longer than what comes");
    ASSERT_EQ(::chmod(folder.path(u"a.csv"_s).toLocal8Bit(), 0640), 0);
    EXPECT_EQ(write(u"a.csv"_s, three).outcome, Outcome::Written);
    EXPECT_EQ(folder.read(u"a.csv"_s), "file\r\nf0\r\nf1\r\nf2\r\n");
    EXPECT_EQ(folder.names(), QStringList(u"a.csv"_s));
    struct stat info {};
    ASSERT_EQ(::stat(folder.path(u"a.csv"_s).toLocal8Bit(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0640U) << "still who may read it";
}

TEST_F(ExportFileTest, FollowsALinkAndKeepsIt) {
    folder.write(u"real.csv"_s, "old");
    ASSERT_TRUE(QFile::link(folder.path(u"real.csv"_s), folder.path(u"link.csv"_s)));
    EXPECT_EQ(write(u"link.csv"_s, three).outcome, Outcome::Written);
    EXPECT_TRUE(QFileInfo(folder.path(u"link.csv"_s)).isSymLink());
    EXPECT_EQ(written(u"real.csv"_s).size(), 4);
}

TEST_F(ExportFileTest, WhatIsNoOrdinaryFileIsNeverReplaced) {
    const QByteArray fifo = folder.path(u"fifo"_s).toLocal8Bit();
    ASSERT_EQ(::mkfifo(fifo, 0600), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder"_s));
    ASSERT_TRUE(QFile::link(u"/dev/full"_s, folder.path(u"device"_s)));
    ASSERT_TRUE(QFile::link(u"/nowhere/at/all"_s, folder.path(u"dangling"_s)));
    const QStringList before = folder.names();
    for (const QString& name : before) {
        EXPECT_EQ(write(name, three).outcome, Outcome::NoFile) << qPrintable(name);
    }
    EXPECT_EQ(writeRows(three, fields, ExportFormat::Csv, u"/dev/null"_s, [](auto) { return true; })
                  .outcome,
              Outcome::NoFile);
    EXPECT_EQ(folder.names(), before);
    struct stat info {};
    ASSERT_EQ(::stat(fifo, &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode));
}

TEST_F(ExportFileTest, WhatComesThereMeanwhileIsNotReplacedEither) {
    const QByteArray path = folder.path(u"a.csv"_s).toLocal8Bit();
    const ExportResult result = write(u"a.csv"_s, three, [&](auto) {
        ::mkfifo(path, 0600);
        return true;
    });
    EXPECT_EQ(result.outcome, Outcome::NoFile);
    EXPECT_EQ(folder.names(), QStringList(u"a.csv"_s));
    EXPECT_FALSE(QFileInfo(folder.path(u"a.csv"_s)).isFile());
}

TEST_F(ExportFileTest, APlaceThatCannotBeWrittenNamesTheReason) {
    const ExportResult result = write(u"none/a.csv"_s, three);
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.reason, u"No such file or directory"_s);
}

TEST_F(ExportFileTest, WithoutRoomTheOldFileStays) {
    folder.write(u"a.csv"_s, "old");
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ::getrlimit(RLIMIT_FSIZE, &usual);
    for (const rlim_t room : {0U, 100'000U}) {
        const rlimit little{room, usual.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &little);
        const Outcome outcome = write(u"a.csv"_s, many).outcome;
        const Outcome ofFew = room == 0 ? write(u"a.csv"_s, three).outcome : Outcome::NoRoom;
        ::setrlimit(RLIMIT_FSIZE, &usual);
        EXPECT_EQ(outcome, Outcome::NoRoom);
        EXPECT_EQ(ofFew, Outcome::NoRoom) << "though it is noticed at the end only";
        EXPECT_EQ(folder.read(u"a.csv"_s), "old");
        EXPECT_EQ(folder.names(), QStringList(u"a.csv"_s));
    }
    std::signal(SIGXFSZ, before);
}

TEST_F(ExportFileTest, ACancelledOneLeavesTheOldFile) {
    folder.write(u"a.csv"_s, "old");
    std::size_t last = 0;
    const ExportResult result = write(u"a.csv"_s, many, [&last](std::size_t done) {
        last = done;
        return done < 10'000;
    });
    EXPECT_EQ(result.outcome, Outcome::Cancelled);
    EXPECT_GE(last, 10'000U);
    EXPECT_LT(last, 11'000U) << "soon";
    EXPECT_EQ(folder.read(u"a.csv"_s), "old");
    EXPECT_EQ(folder.names(), QStringList(u"a.csv"_s));
}

TEST_F(ExportFileTest, CancelledAfterTheLastRowItIsCancelledStill) {
    EXPECT_EQ(write(u"a.csv"_s, three, [](std::size_t done) { return done < 3; }).outcome,
              Outcome::Cancelled);
    EXPECT_EQ(folder.names(), QStringList());
}

struct SnapshotTest : ExportFileTest {
    SnapshotTest() {
        files.show();
        files.load(numberedRows(12, u"f"_s));
    }
    QStringList exported(bool selectedOnly) { return exported(files.table.snapshot(selectedOnly)); }
    QStringList exported(const RowSnapshot& rows) {
        EXPECT_EQ(write(u"s.csv"_s, rows).outcome, Outcome::Written);
        QStringList names = written(u"s.csv"_s);
        names.removeLast();
        return names;
    }
    RememberedSelections selections;
    TableOnScreen<FileThreatsTable> files{&FileThreatsTable::setFileThreatsTable, selections};
};

TEST_F(SnapshotTest, HoldsWhatIsShownInTheOrderShown) {
    files.clickTitle(0);
    files.clickTitle(0);
    files.table.setFind(u"f1"_s);
    EXPECT_EQ(exported(false), (QStringList{u"f11"_s, u"f10"_s, u"f1"_s}));
    files.table.setFind({});
    EXPECT_EQ(exported(false).size(), 12);
}

TEST_F(SnapshotTest, HoldsTheSelectedOfTheShownRows) {
    EXPECT_EQ(exported(true), QStringList());
    files.clickTitle(0);
    files.table.setFind(u"f1"_s);
    files.clickRow(0);
    files.clickRow(2, Qt::ControlModifier);
    EXPECT_EQ(exported(true), (QStringList{u"f1"_s, u"f11"_s}));
}

TEST_F(SnapshotTest, NothingThatBecomesOfTheTableChangesIt) {
    files.clickTitle(0);
    files.table.setFind(u"1"_s);
    const RowSnapshot rows = files.table.snapshot(false);
    const QStringList before = exported(rows);
    files.clickTitle(0);
    EXPECT_EQ(exported(rows), before) << "sorted";
    files.table.setFind(u"11"_s);
    EXPECT_EQ(exported(rows), before) << "found less";
    files.table.addData(numberedRows(2, u"new1-"_s));
    files.table.updateView();
    EXPECT_EQ(exported(rows), before) << "rows on top";
    files.load(nullptr);
    EXPECT_EQ(exported(rows), before) << "emptied";
}

TEST_F(SnapshotTest, CostsNothingPerRow) {
    const auto batch = numberedRows(100'000, u"f"_s);
    files.load(batch);
    const std::size_t asked = batch->calls;
    const RowSnapshot rows = files.table.snapshot(false);
    EXPECT_EQ(rows.size(), 100'000U);
    EXPECT_EQ(batch->calls, asked);
    EXPECT_EQ(rows.rows().batches(), files.table.currentRows().batches());
}

TEST_F(SnapshotTest, EveryTableNamesItsFields) {
    const EventsTable events(selections);
    EXPECT_STREQ(events.description().exportName, "events");
    EXPECT_STREQ(events.description().exportFields.front().name, "when");
    EXPECT_STREQ(files.table.description().exportFields.back().name, "paths");
}

} // namespace
} // namespace korvale
