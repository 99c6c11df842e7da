#include "model/TextRows.h"

#include <array>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using Text = std::optional<QString>;

Text text(QStringView characters) {
    return characters.toString();
}

constexpr std::array keys{RowKey::When, RowKey::Details, RowKey::Path};

class TextRowsTest : public testing::Test {
protected:
    [[nodiscard]] Text when(std::size_t row) const { return rows.text(row, RowKey::When); }
    [[nodiscard]] Text details(std::size_t row) const { return rows.text(row, RowKey::Details); }
    [[nodiscard]] Text path(std::size_t row) const { return rows.text(row, RowKey::Path); }

    TextRows rows{keys};
};

TEST_F(TextRowsTest, EachTextIsWhereItWasPut) {
    rows.add({text(u"10:00"), text(u"first"), text(u"/a")});
    rows.add({text(u"10:01"), text(u"second"), text(u"/b")});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(when(0), u"10:00");
    EXPECT_EQ(details(0), u"first");
    EXPECT_EQ(path(0), u"/a");
    EXPECT_EQ(when(1), u"10:01");
    EXPECT_EQ(details(1), u"second");
    EXPECT_EQ(path(1), u"/b");
    EXPECT_EQ(rows.text(0, RowKey::Score), std::nullopt) << "no such column";
}

TEST_F(TextRowsTest, TellsAnEmptyTextFromNone) {
    rows.add({text(u""), std::nullopt, text(u"")});
    rows.add({std::nullopt, text(u""), text(u"")});
    EXPECT_EQ(when(0), u"");
    EXPECT_EQ(details(0), std::nullopt);
    EXPECT_EQ(path(0), u"");
    EXPECT_EQ(when(1), std::nullopt);
    EXPECT_EQ(details(1), u"");
    EXPECT_EQ(path(1), u"");
}

TEST_F(TextRowsTest, TextsThatAreAlikeAreNotMixedUp) {
    const QString withNul = QString::fromUtf8("a\0b", 3);
    rows.add({text(u"same"), Text(withNul), text(u"x")});
    rows.add({text(u"same"), text(u"a"), text(u"same")});
    rows.add({text(u"Same"), Text(withNul), text(u"same")});
    rows.add({text(u"same"), Text(QChar(0xd800)), text(u"same!")});
    EXPECT_EQ(when(0), u"same");
    EXPECT_EQ(when(1), u"same");
    EXPECT_EQ(when(2), u"Same");
    EXPECT_EQ(when(3), u"same");
    EXPECT_EQ(details(0), withNul);
    EXPECT_EQ(details(1), u"a");
    EXPECT_EQ(details(2), withNul);
    EXPECT_EQ(details(3), QString(QChar(0xd800)));
    EXPECT_EQ(path(1), u"same");
    EXPECT_EQ(path(2), u"same");
    EXPECT_EQ(path(3), u"same!");
}

TEST_F(TextRowsTest, GivingBackRoomChangesNothing) {
    for (int row = 0; row < 100; ++row) {
        rows.add({Text(QString::number(row)), text(u"details"), std::nullopt});
    }
    rows.shrinkToFit();
    ASSERT_EQ(rows.size(), 100U);
    EXPECT_EQ(when(0), u"0");
    EXPECT_EQ(when(99), u"99");
    EXPECT_EQ(details(99), u"details");
    EXPECT_EQ(path(99), std::nullopt);
    rows.add({text(u"more"), std::nullopt, text(u"/p")});
    EXPECT_EQ(when(100), u"more");
    EXPECT_EQ(path(100), u"/p");
}

TEST_F(TextRowsTest, ATextThatWasAskedForStaysWhenTheRowsAreGone) {
    Text kept;
    {
        TextRows others(keys);
        others.add({text(u"kept"), std::nullopt, std::nullopt});
        kept = others.text(0, RowKey::When);
    }
    EXPECT_EQ(kept, u"kept");
}

} // namespace
} // namespace korvale
