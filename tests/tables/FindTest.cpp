#include "fakes/FakeTexts.h"
#include "fakes/RecordingDisplays.h"
#include "model/FileStateChanges.h"
#include "model/JsonValue.h"
#include "model/RowFolder.h"
#include "tables/EventsTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/TableOnScreen.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

FakeRow threat(const QString& file, const QString& category, const QString& id) {
    return {{RowKey::File, file},
            {RowKey::FileToolTip, u"/hidden/"_s + file},
            {RowKey::Category, category},
            {RowKey::Found, u"1"_s},
            {RowKey::Id, id}};
}

struct FindTest : testing::Test {
    FindTest() {
        files.show();
        files.load(listedRows({threat(u"Invoice.exe"_s, u"Unsafe"_s, u"aa"_s),
                               threat(u"été.pdf"_s, u"Abnormal"_s, u"bb"_s),
                               threat(u"invoice-2.pdf"_s, u"Quarantined"_s, u"AA"_s),
                               threat(u"straße.txt"_s, u"Waived"_s, u"dd"_s)}));
    }
    /// The files that are shown, in their order.
    QStringList found(const QString& text) {
        files.table.setFind(text);
        return shown();
    }
    QStringList shown() {
        files.paint();
        QStringList names;
        for (int row = 0; row < files.view->model()->rowCount(); ++row) {
            names << files.cell(row, 0);
        }
        return names;
    }
    RememberedSelections selections;
    TableOnScreen<FileThreatsTable> files{&FileThreatsTable::setFileThreatsTable, selections};
};

TEST_F(FindTest, ShowsTheRowsWhoseShownTextsContainAllWords) {
    EXPECT_EQ(found(u"invoice"_s), (QStringList{u"Invoice.exe"_s, u"invoice-2.pdf"_s}));
    EXPECT_EQ(found(u" PDF  inv "_s), (QStringList{u"invoice-2.pdf"_s}));
    EXPECT_EQ(found(u"aa unsafe"_s), (QStringList{u"Invoice.exe"_s})) << "words of two columns";
    EXPECT_EQ(found(u"hidden"_s), QStringList()) << "tooltips are not shown texts";
    EXPECT_EQ(found(u"eaa"_s), QStringList()) << "no word goes over two columns";
    EXPECT_EQ(files.table.currentRows().size(), 4U);
}

TEST_F(FindTest, FoldsCaseAndTakesAccentsAsWritten) {
    EXPECT_EQ(found(u"ÉTÉ"_s), (QStringList{u"été.pdf"_s}));
    EXPECT_EQ(found(u"ete"_s), QStringList());
    EXPECT_EQ(found(u"STRAßE"_s), (QStringList{u"straße.txt"_s}));
}

TEST_F(FindTest, TypingOnAndBackFindsTheSameAsTypingAnew) {
    for (const QString& text : {u"i"_s, u"in"_s, u"invoice"_s, u"invoice q"_s, u"invoice"_s, u"p"_s,
                                u"pd"_s, u"p"_s, u""_s}) {
        const QStringList narrowed = found(text);
        files.table.setFind({});
        files.table.setFind(u"zzz"_s);
        EXPECT_EQ(found(text), narrowed) << qPrintable(text);
    }
    EXPECT_EQ(shown().size(), 4);
}

TEST_F(FindTest, OnlyBlanksAreNothingToLookFor) {
    EXPECT_EQ(found(u"  "_s).size(), 4);
    EXPECT_FALSE(files.table.isFiltered());
}

TEST_F(FindTest, ABatchThatComesMeanwhileIsLookedThroughToo) {
    found(u"pdf"_s);
    files.table.addData(listedRows(
        {threat(u"new.pdf"_s, u"Unsafe"_s, u"ee"_s), threat(u"new.txt"_s, u"Unsafe"_s, u"ff"_s)}));
    EXPECT_EQ(found(u"pdf n"_s).front(), u"new.pdf"_s) << "narrowed before the view was updated";
    files.table.setFind(u"pdf"_s);
    files.table.updateView();
    EXPECT_EQ(shown(), (QStringList{u"new.pdf"_s, u"été.pdf"_s, u"invoice-2.pdf"_s}));
    EXPECT_EQ(files.table.shownRowCount(), 3U);
    files.table.loadData(nullptr);
    files.table.updateView();
    EXPECT_EQ(shown(), QStringList());
}

TEST_F(FindTest, SortingSortsWhatIsShownAndTheRestAlike) {
    found(u"invoice"_s);
    files.clickTitle(0);
    EXPECT_EQ(shown(), (QStringList{u"invoice-2.pdf"_s, u"Invoice.exe"_s}));
    files.clickTitle(0);
    EXPECT_EQ(shown(), (QStringList{u"Invoice.exe"_s, u"invoice-2.pdf"_s}));
    EXPECT_EQ(found({}).size(), 4);
}

TEST_F(FindTest, CopyTakesTheSelectedOfTheShownRows) {
    found(u"pdf"_s);
    files.clickRow(1);
    setClipboard({});
    files.pressCopy();
    EXPECT_TRUE(clipboard().contains(u"invoice-2.pdf"_s));
    EXPECT_EQ(clipboard().count(u'\n'), 2);
    QTest::keyClick(files.view.get(), Qt::Key_A, Qt::ControlModifier);
    files.pressCopy();
    EXPECT_EQ(clipboard().count(u'\n'), 3) << "all that is shown";
}

TEST_F(FindTest, TheSelectionGoesWithEachChangeOfTheWords) {
    files.clickRow(2);
    found(u"invoice"_s);
    EXPECT_TRUE(files.view->selectedRowIndexes().isEmpty());
    files.clickRow(0);
    found(u"invoice "_s);
    EXPECT_EQ(files.view->selectedRowIndexes().count(), 1U) << "a blank changes no word";
    found({});
    EXPECT_TRUE(files.view->selectedRowIndexes().isEmpty());
    setClipboard({});
    files.pressCopy();
    EXPECT_EQ(clipboard().count(u'\n'), 1) << "the header alone";
}

TEST_F(FindTest, ATableWithoutAMatchSaysThatRowsAreLeftOut) {
    found(u"zzz"_s);
    EXPECT_EQ(files.view->accessibleDescription(), u"HPS_EmptyFind"_s);
    files.table.setEmptyReason(EmptyReason::AgentAway);
    EXPECT_EQ(files.view->accessibleDescription(), u"HPS_EmptyFind"_s);
    files.load(nullptr);
    EXPECT_NE(files.view->accessibleDescription(), u"HPS_EmptyFind"_s) << "nothing is left out";
}

/// The fast way must find what the plain one would.
TEST(FileThreatFolder, FoldsEveryTextAsTheShownOne) {
    AppState state;
    QStringList calls;
    fakes::RecordingDisplays displays{state};
    struct Held : TableFeed {
        void loadData(RowBatchPtr batch) override { rows = std::move(batch); }
        void addData(RowBatchPtr /*batch*/) override {}
        void updateView() override {}
        RowBatchPtr rows;
    } table;
    FileStateChanges changes{state, table, displays};
    changes.parseFileStateChanges(JsonValue::parse(
        R"({"/a/Plain.EXE":{"State":1,"ID":"AbC"},"/a/ÄÖ.Bin":{"State":2,"ID":"ÀÉ"},
            "/":{"State":9,"ID":12.50},"/dir/":{"State":4,"ID":[1,"X"]},"":{"State":8},
            "Bare\u0041":{"State":17,"ID":true},"/q\"uote\n":{"State":1,"ID":"e\u0301"},
            "/x/\ud800half":{"State":1,"ID":null}})"));
    ASSERT_GE(table.rows->size(), 6U);
    const std::unique_ptr<RowFolder> fast = table.rows->folder();
    TextFolder plain(*table.rows);
    for (std::size_t row = 0; row < table.rows->size(); ++row) {
        for (const RowKey key : {RowKey::File, RowKey::Category, RowKey::Found, RowKey::Id}) {
            std::string expected;
            std::string folded;
            plain.append(row, key, expected);
            fast->append(row, key, folded);
            EXPECT_EQ(folded, expected) << row << ' ' << static_cast<int>(key);
        }
    }
}

} // namespace
} // namespace korvale
