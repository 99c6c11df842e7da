#include "tables/FileThreatsTable.h"

#include "tables/TableOnScreen.h"
#include "tables/WindowLook.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

constexpr auto header = u"\"File\",\"Category\",\"Score\",\"Found\",\"ID\",\"Path\"\n";

struct FileThreatsTableTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<FileThreatsTable> files{&FileThreatsTable::setFileThreatsTable, selections};

    void showRows(std::vector<FakeRow> rows) {
        files.show();
        files.load(listedRows(std::move(rows)));
    }
    QString toolTipOf(FakeRow row) {
        showRows({std::move(row)});
        return files.view->visibleCell(0, 0)->toolTip();
    }
};

FakeRow threat(const QString& paths) {
    return {{RowKey::File, u"evil.exe"_s},   {RowKey::FileToolTip, paths},
            {RowKey::Category, u"Unsafe"_s}, {RowKey::Score, u"-0.5"_s},
            {RowKey::Found, u"2"_s},         {RowKey::Id, u"abc"_s}};
}

TEST_F(FileThreatsTableTest, EachColumnShowsItsKeyAndToolTip) {
    showRows({{{RowKey::File, u"f"_s},
               {RowKey::Category, u"c"_s},
               {RowKey::CategoryToolTip, u"ct"_s},
               {RowKey::Found, u"n"_s},
               {RowKey::FoundToolTip, u"nt"_s},
               {RowKey::Id, u"i"_s},
               {RowKey::IdToolTip, u"it"_s}}});
    const QString texts[] = {u"f"_s, u"c"_s, u"n"_s, u"i"_s};
    const QString toolTips[] = {u""_s, u"ct"_s, u"nt"_s, u"it"_s};
    for (int column = 0; column < 4; ++column) {
        const CellView* cell = files.view->visibleCell(0, column);
        EXPECT_EQ(cell->text(), texts[column]) << column;
        EXPECT_EQ(cell->toolTip(), toolTips[column]) << column;
    }
}

TEST_F(FileThreatsTableTest, CategoriesHaveTheirColours) {
    showRows({{{RowKey::Category, u"Unsafe"_s}, {RowKey::File, u"Unsafe"_s}},
              {{RowKey::Category, u"Abnormal"_s}},
              {{RowKey::Category, u"Quarantined"_s}},
              {{RowKey::Category, u"unsafe"_s}}});
    EXPECT_EQ(files.view->visibleCell(0, 1)->textColor(), QColor(look::alarmText));
    EXPECT_EQ(files.view->visibleCell(0, 0)->textColor(), QColor(Qt::black));
    EXPECT_EQ(files.view->visibleCell(1, 1)->textColor(), QColor(look::warningText));
    EXPECT_EQ(files.view->visibleCell(2, 1)->textColor(), QColor(Qt::black));
    EXPECT_EQ(files.view->visibleCell(3, 1)->textColor(), QColor(Qt::black));
}

TEST_F(FileThreatsTableTest, AQuarantinedFileWithOnePathHasThePrefixInItsToolTip) {
    EXPECT_EQ(toolTipOf({{RowKey::Category, u"Quarantined"_s}, {RowKey::FileToolTip, u"/a/b"_s}}),
              u"[Quarantined:]\n/a/b\n\n"_s);
}

TEST_F(FileThreatsTableTest, ToolTipsSkipEmptyPieces) {
    EXPECT_EQ(toolTipOf({{RowKey::FileToolTip, u"/a\n\n/b"_s}}), u"/a\n\n/b\n\n"_s);
}

TEST_F(FileThreatsTableTest, ThreePathsAreFollowedByDotsEvenWithoutAFourth) {
    EXPECT_EQ(toolTipOf({{RowKey::FileToolTip, u"/a\n/b\n/c"_s}}), u"/a\n\n/b\n\n/c\n\n..."_s);
}

TEST_F(FileThreatsTableTest, AFourthPathIsNeverShown) {
    EXPECT_EQ(toolTipOf({{RowKey::FileToolTip, u"/a\n/b\n/c\n/d"_s}}), u"/a\n\n/b\n\n/c\n\n..."_s);
}

TEST_F(FileThreatsTableTest, TwoPathsCopyAsTwoLines) {
    showRows({threat(u"/a\n/b"_s)});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(header) + u"evil.exe,Unsafe,-0.5,2,abc,/a\n"_s
                                                        u"evil.exe,Unsafe,-0.5,2,abc,/b\n"_s);
}

TEST_F(FileThreatsTableTest, EmptyPiecesCopyAsLinesWithAnEmptyPath) {
    showRows({threat(u"/a\n\n/b\n"_s)});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard().count(u'\n'), 5);
    EXPECT_TRUE(clipboard().endsWith(u"abc,/b\nevil.exe,Unsafe,-0.5,2,abc,\n"_s));
}

TEST_F(FileThreatsTableTest, ACommaInAPathStaysUnquoted) {
    showRows({threat(u"/a,b"_s)});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(header) + u"evil.exe,Unsafe,-0.5,2,abc,/a,b\n"_s);
}

TEST_F(FileThreatsTableTest, WhateverATextHoldsACopiedRowIsOneLine) {
    FakeRow row = threat(u"/a"_s);
    row[RowKey::File] = u"=1+1\r\nforged,Unsafe\u2028\x1b[31m\t"_s;
    row[RowKey::Id] = u"a\nb\0c"_s;
    showRows({row});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(header) +
                               u"=1+1[U+000D][U+000A]forged,Unsafe[U+2028][U+001B][31m[U+0009],"_s
                               u"Unsafe,-0.5,2,a[U+000A]b[U+0000]c,/a\n"_s);
}

TEST_F(FileThreatsTableTest, EveryPathIsCopiedThoughTheToolTipHoldsOnlyTheFirst) {
    FakeRow row = threat(u"/a"_s);
    row[RowKey::EveryPath] = u"/a\n/b"_s;
    showRows({row});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_TRUE(clipboard().endsWith(u"abc,/a\nevil.exe,Unsafe,-0.5,2,abc,/b\n"_s));
}

TEST_F(FileThreatsTableTest, ARowWithoutPathsCopiesNoLine) {
    showRows({{{RowKey::File, u"x"_s}}});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard(), header);
}

TEST_F(FileThreatsTableTest, MissingValuesCopyAsNull) {
    showRows({{{RowKey::FileToolTip, u"/a"_s}}});
    files.clickRow(0);
    files.pressCopy();
    EXPECT_EQ(clipboard(),
              QString::fromUtf16(header) + u"(null),(null),(null),(null),(null),/a\n"_s);
}

TEST_F(FileThreatsTableTest, CommandShiftCDoesNotCopy) {
    setClipboard(u"before"_s);
    showRows({threat(u"/a"_s)});
    files.clickRow(0);
    files.pressCopy(Qt::ShiftModifier);
    EXPECT_EQ(clipboard(), u"before"_s);
}

TEST_F(FileThreatsTableTest, OtherModifiersBesideCommandStillCopy) {
    showRows({threat(u"/a"_s)});
    for (const Qt::KeyboardModifier more : {Qt::AltModifier, Qt::MetaModifier}) {
        setClipboard(u"before"_s);
        files.clickRow(0);
        files.pressCopy(more);
        EXPECT_TRUE(clipboard().startsWith(header)) << more;
    }
}

TEST_F(FileThreatsTableTest, PositionsBeyondAShorterListCopyNothing) {
    showRows({threat(u"/a"_s), threat(u"/b"_s), threat(u"/c"_s)});
    files.clickRow(2);
    files.load(listedRows({threat(u"/a"_s)}));
    setClipboard(u"before"_s);
    files.pressCopy();
    EXPECT_EQ(clipboard(), u"before"_s);
}

TEST_F(FileThreatsTableTest, CopyWithNothingEverSelectedIsTheHeaderAlone) {
    showRows({threat(u"/a"_s)});
    files.pressCopy();
    EXPECT_EQ(clipboard(), header);
}

} // namespace
} // namespace korvale
