#include "fakes/FakeTexts.h"
#include "tables/EventsTable.h"
#include "tables/KvImageView.h"
#include "tables/TableOnScreen.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

/// What a screen reader hears of titles and pictures.
struct ScreenReaderTest : testing::Test {
    const FakeTexts texts{{"HPS_ColWhen", u"When"_s},
                          {"HPS_ColCategory", u"Category"_s},
                          {"HPS_SortedAscending", u"sorted ascending"_s},
                          {"HPS_SortedDescending", u"sorted descending"_s}};
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};

    void SetUp() override { events.show(); }
    [[nodiscard]] CustHeaderView& header() const { return events.view->header(); }
    [[nodiscard]] QString name() const {
        return QAccessible::queryAccessibleInterface(&header())->text(QAccessible::Name);
    }
};

TEST_F(ScreenReaderTest, TheTitleWithTheFocusIsTheHeadersName) {
    EXPECT_EQ(name(), u"When"_s);
    QTest::keyClick(&header(), Qt::Key_Right);
    EXPECT_EQ(name(), u"Category"_s);
    QTest::keyClick(&header(), Qt::Key_Left);
    QTest::keyClick(&header(), Qt::Key_Left); // there is none
    EXPECT_EQ(name(), u"When"_s);
}

TEST_F(ScreenReaderTest, TheOrderIsSaidWithTheTitle) {
    QTest::keyClick(&header(), Qt::Key_Space);
    EXPECT_EQ(name(), u"When, sorted ascending"_s);
    QTest::keyClick(&header(), Qt::Key_Space);
    EXPECT_EQ(name(), u"When, sorted descending"_s);
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(events.view.get());
    EXPECT_EQ(table->tableInterface()->columnDescription(0), u"When"_s);
    EXPECT_EQ(events.view->model()
                  ->headerData(0, Qt::Horizontal, Qt::AccessibleDescriptionRole)
                  .toString(),
              u"sorted descending"_s);
}

TEST_F(ScreenReaderTest, ATitleCanBePressed) {
    QAccessibleInterface* titles = QAccessible::queryAccessibleInterface(&header());
    EXPECT_EQ(titles->role(), QAccessible::ColumnHeader);
    EXPECT_TRUE(titles->state().focusable);
    ASSERT_NE(titles->actionInterface(), nullptr);
    EXPECT_TRUE(titles->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
    titles->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::When, true}}));
}

TEST_F(ScreenReaderTest, APictureToClickOnIsAButtonThatCanBePressed) {
    KvImageView view;
    view.setAccessibleName(u"Logo"_s);
    const QSignalSpy clicks(&view, &KvImageView::clicked);
    QAccessibleInterface* picture = QAccessible::queryAccessibleInterface(&view);
    EXPECT_EQ(picture->role(), QAccessible::Graphic);
    EXPECT_FALSE(picture->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
    view.setClickable(true);
    EXPECT_EQ(picture->role(), QAccessible::Button);
    EXPECT_EQ(picture->text(QAccessible::Name), u"Logo"_s);
    picture->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks.size(), 1);
}

} // namespace
} // namespace korvale
