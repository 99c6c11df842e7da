// The details of a row: opening, keeping in step, copying, showing, closing.
#include "shell/DetailsPane.h"

#include "fakes/RecordingRowBatch.h"
#include "model/FileThreatGroups.h"
#include "model/JsonValue.h"
#include "shell/AnswerStrip.h"
#include "shell/DetailsText.h"
#include "shell/LinkButton.h"
#include "shell/WindowFixture.h"
#include "tables/ThreatsTableView.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

FakeRow threat(const QString& name) {
    return {{RowKey::File, name},
            {RowKey::FileToolTip, u"/tmp/"_s + name},
            {RowKey::Category, u"Unsafe"_s},
            {RowKey::Score, u"7"_s},
            {RowKey::Found, u"1"_s},
            {RowKey::Id, u"id-"_s + name},
            {RowKey::Path, u"/tmp/"_s + name},
            {RowKey::Meaning, u"Unsafe"_s}};
}

class DetailsPaneTest : public WindowFixture {
protected:
    void SetUp() override {
        resources.initialize();
        load({u"a"_s, u"b"_s, u"c"_s});
        shownWindow();
        QApplication::clipboard()->setText(u"before"_s);
    }

    void load(const QStringList& names) {
        std::vector<FakeRow> rows;
        for (const QString& name : names) {
            rows.push_back(threat(name));
        }
        fileThreats.loadData(listedRows(std::move(rows)));
        fileThreats.updateView();
    }

    ThreatsTableView& table() { return part<ThreatsTableView>("fileThreatsTable"); }
    void goTo(int row) { table().setCurrentIndex(table().model()->index(row, 0)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void openRow(int row) {
        goTo(row);
        table().setFocus();
        press(Qt::Key_Return);
    }

    DetailsPane* pane() { return controller().window()->findChild<DetailsPane*>(); }
    DetailsText& text() { return part<DetailsText>("detailsText"); }
    QString plain() { return text().toPlainText(); }
    bool isOpen() { return pane() != nullptr && pane()->isVisible(); }
    QString notice() {
        auto& label = part<QLabel>("detailsNotice");
        return label.isVisible() ? label.text() : QString();
    }
    LinkButton& button(const QString& name) {
        for (auto* found : pane()->findChildren<LinkButton*>()) {
            if (found->text() == name) {
                return *found;
            }
        }
        throw std::runtime_error(name.toStdString());
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QAction* item(const QString& name) {
        for (QAction* action : menu()->actions()) {
            if (action->text() == name) {
                return action;
            }
        }
        return nullptr;
    }
};

TEST_F(DetailsPaneTest, IsNotMadeBeforeItIsOpened) {
    goTo(1);
    EXPECT_EQ(pane(), nullptr);
}

TEST_F(DetailsPaneTest, EnterAndSpaceOpenItAndGiveItTheFocus) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        goTo(1);
        table().setFocus();
        press(key);
        ASSERT_TRUE(isOpen());
        EXPECT_TRUE(text().hasFocus());
        EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\tb\n"_s)) << plain().toStdString();
        EXPECT_TRUE(plain().contains(u"\nHPS_PanePath\t/tmp/b\n"_s));
        press(Qt::Key_Escape);
        EXPECT_FALSE(isOpen());
        EXPECT_TRUE(table().hasFocus());
    }
    EXPECT_EQ(table().selectedRowIndexes(), RowIndexes({{1, 1}}));
}

TEST_F(DetailsPaneTest, OtherKeysDoNotOpenIt) {
    goTo(1);
    table().setFocus();
    press(Qt::Key_Space, Qt::ControlModifier); // selects and deselects, as ever
    press(Qt::Key_Return, Qt::ShiftModifier);
    press(Qt::Key_A);
    EXPECT_EQ(pane(), nullptr);
}

TEST_F(DetailsPaneTest, WithoutARowNothingOpens) {
    table().setFocus();
    press(Qt::Key_Return);
    load({});
    press(Qt::Key_Space);
    EXPECT_EQ(pane(), nullptr);
}

TEST_F(DetailsPaneTest, ADoubleClickOpensItAndLeavesTheFocusWithTheRows) {
    const QPoint place = table().visualRect(table().model()->index(2, 1)).center();
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, place);
    EXPECT_FALSE(isOpen());
    QTest::mouseDClick(table().viewport(), Qt::RightButton, {}, place);
    EXPECT_FALSE(isOpen());
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\tc\n"_s));
    EXPECT_FALSE(text().hasFocus());
}

TEST_F(DetailsPaneTest, FollowsTheCurrentRow) {
    openRow(0);
    table().setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\tb\n"_s));
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(DetailsPaneTest, EscapeClosesItThenTheWindow) {
    openRow(1);
    press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(table().currentIndex().row(), 1);
    press(Qt::Key_Escape);
    EXPECT_FALSE(controller().window()->isVisible());
}

TEST_F(DetailsPaneTest, EscapeInTheFindFieldClearsItFirst) {
    openRow(1);
    controller().window()->answerStrip().focusFind();
    QTest::keyClicks(QApplication::focusWidget(), u"b"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(controller().window()->answerStrip().findText().isEmpty());
    press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(DetailsPaneTest, TheCloseButtonGivesTheFocusBackToo) {
    openRow(2);
    button(u"✕"_s).click();
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(DetailsPaneTest, AnotherTabClosesIt) {
    openRow(1);
    press(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(part<ThreatsTableView>("processThreatsTable").hasFocus());
}

// Refreshes

/// Rows that are read again and again, as the agent's lists are.
class DetailsOfAgentsListTest : public DetailsPaneTest {
protected:
    void parse(const QByteArray& list) {
        fileThreats.loadData(groupFileThreats(*JsonValue::parse(list)).rows);
        fileThreats.updateView();
    }
};

TEST_F(DetailsOfAgentsListTest, ARefreshGoesOnWithTheSameRow) {
    parse(R"({"/tmp/a":{"State":1,"ID":"a"},"/tmp/b":{"State":1,"ID":"b"}})");
    openRow(1);
    text().moveCursor(QTextCursor::End);
    const int position = text().textCursor().position();
    parse(R"({"/tmp/n":{"State":1,"ID":"n"},"/tmp/a":{"State":1,"ID":"a"},
              "/tmp/b":{"State":1,"ID":"b"}})");
    EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\tb\n"_s));
    EXPECT_EQ(text().textCursor().position(), position); // nothing new, so nothing moves
    press(Qt::Key_Escape);
    EXPECT_EQ(table().currentIndex().row(), 2); // where the row stands now
}

TEST_F(DetailsOfAgentsListTest, ARowThatWasQuarantinedSaysSo) {
    parse(R"({"/tmp/a":{"State":1,"ID":"a"}})");
    openRow(0);
    EXPECT_TRUE(plain().contains(u"HPS_MeansUnsafe"_s));
    parse(R"({"/tmp/a":{"State":9,"ID":"a"}})");
    EXPECT_TRUE(plain().contains(u"HPS_MeansQuarantined"_s));
    EXPECT_EQ(notice(), QString());
}

TEST_F(DetailsOfAgentsListTest, ARowThatHasGoneStaysToBeReadAndIsMarked) {
    parse(R"({"/tmp/a":{"State":1,"ID":"a"},"/tmp/b":{"State":1,"ID":"b"}})");
    openRow(0);
    parse(R"({"/tmp/b":{"State":1,"ID":"b"}})");
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(notice(), u"HPS_PaneGone"_s);
    EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\ta\n"_s));
    for (const char16_t* name : {u"HPS_PaneCopy", u"HPS_PaneCopyPath", u"HPS_PaneShow"}) {
        EXPECT_FALSE(button(QString::fromUtf16(name)).isEnabled());
    }
    EXPECT_TRUE(button(u"HPS_PaneSelectAll"_s).isEnabled());
    parse(R"({"/tmp/b":{"State":1,"ID":"b"},"/tmp/a":{"State":1,"ID":"a"}})");
    EXPECT_EQ(notice(), QString());
    EXPECT_TRUE(button(u"HPS_PaneCopy"_s).isEnabled());
    parse("{}");
    press(Qt::Key_Escape);
    EXPECT_TRUE(table().hasFocus());
}

TEST_F(DetailsOfAgentsListTest, ARowThatFindLeavesOutIsStillThere) {
    parse(R"({"/tmp/a":{"State":1,"ID":"a"},"/tmp/b":{"State":1,"ID":"b"}})");
    openRow(0);
    fileThreats.setFind(u"id-nothing"_s);
    EXPECT_EQ(notice(), QString());
    EXPECT_TRUE(plain().startsWith(u"HPS_ColFile\ta\n"_s));
}

TEST_F(DetailsPaneTest, AnAddedEventKeepsTheRow) {
    events.addData(listedRows({{{RowKey::When, u"1"_s}}, {{RowKey::When, u"2"_s}}}));
    events.updateView();
    tabView().setCurrentIndex(2);
    auto& view = part<ThreatsTableView>("eventsTable");
    view.setCurrentIndex(view.model()->index(1, 0));
    view.setFocus();
    press(Qt::Key_Return);
    events.addData(listedRows({{{RowKey::When, u"3"_s}}}));
    events.updateView();
    EXPECT_TRUE(plain().startsWith(u"HPS_ColWhen\t2\n"_s)) << plain().toStdString();
    press(Qt::Key_Escape);
    EXPECT_EQ(view.currentIndex().row(), 2);
}

// Actions

TEST_F(DetailsPaneTest, CopyIsTheTablesCopyOfTheRow) {
    goTo(1);
    table().setFocus();
    press(Qt::Key_C, Qt::ControlModifier);
    const QString byKey = clipboard();
    EXPECT_TRUE(byKey.endsWith(u"b,Unsafe,7,1,id-b,/tmp/b\n"_s)) << byKey.toStdString();
    press(Qt::Key_Return);
    table().selectAll(); // the pane is about one row all the same
    QApplication::clipboard()->clear();
    button(u"HPS_PaneCopy"_s).click();
    EXPECT_EQ(clipboard(), byKey);
    QApplication::clipboard()->clear();
    text().setFocus();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), byKey);
}

TEST_F(DetailsPaneTest, ASelectedTextIsCopiedInsteadAsPlainText) {
    openRow(1);
    QTextCursor cursor(text().document()->begin());
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    text().setTextCursor(cursor);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), u"HPS_ColFile\tb"_s);
    EXPECT_EQ(QApplication::clipboard()->mimeData()->formats(), QStringList{u"text/plain"_s});
    button(u"HPS_PaneSelectAll"_s).click();
    button(u"HPS_PaneCopy"_s).click();
    EXPECT_EQ(clipboard(), plain());
}

TEST_F(DetailsPaneTest, InALanguageFromRightToLeftTheLabelsStandAtTheRight) {
    openRow(0);
    const auto placeOf = [this](const QString& words) {
        QTextCursor cursor = text().document()->find(words);
        EXPECT_FALSE(cursor.isNull()) << words.toStdString();
        cursor.setPosition(cursor.selectionStart());
        return text().cursorRect(cursor).x();
    };
    const int middle = text().viewport()->width() / 2;
    EXPECT_LT(placeOf(u"HPS_PanePath"_s), placeOf(u"/tmp/a"_s));
    EXPECT_LT(placeOf(u"/tmp/a"_s), middle);
    text().setLayoutDirection(Qt::RightToLeft);
    QApplication::processEvents();
    EXPECT_GT(placeOf(u"HPS_PanePath"_s), placeOf(u"/tmp/a"_s));
    EXPECT_GT(placeOf(u"/tmp/a"_s), middle);
    EXPECT_LT(placeOf(u"tmp/a"_s), placeOf(u"mp/a"_s)) << "a path reads from left to right";
    text().selectAll();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(clipboard().contains(u"\nHPS_PanePath\t/tmp/a\n"_s)) << clipboard().toStdString();
}

TEST_F(DetailsPaneTest, CopyPathCopiesThePathAlone) {
    openRow(2);
    button(u"HPS_PaneCopyPath"_s).click();
    EXPECT_EQ(clipboard(), u"/tmp/c"_s);
}

TEST_F(DetailsPaneTest, AFileIsShownOnceItIsKnownToBeThere) {
    files.there = {u"/tmp/b"_s};
    openRow(1);
    LinkButton& show = button(u"HPS_PaneShow"_s);
    EXPECT_FALSE(show.isEnabled());
    files.answerAll();
    EXPECT_TRUE(show.isEnabled());
    show.click();
    EXPECT_EQ(files.shown, QStringList{u"/tmp/b"_s});
    files.answerAll();
    EXPECT_EQ(notice(), QString());
    table().setFocus();
    press(Qt::Key_Down);
    EXPECT_FALSE(show.isEnabled()); // another file
    files.answerAll();
    EXPECT_FALSE(show.isEnabled()); // which is not there
}

TEST_F(DetailsPaneTest, AnAnswerAboutTheRowBeforeIsNoAnswer) {
    files.there = {u"/tmp/a"_s};
    openRow(0);
    table().setFocus();
    press(Qt::Key_Down);
    files.answerAll(); // of both files
    EXPECT_FALSE(button(u"HPS_PaneShow"_s).isEnabled());
}

TEST_F(DetailsPaneTest, AFileThatCannotBeShownIsSaid) {
    files.there = {u"/tmp/b"_s};
    openRow(1);
    files.answerAll();
    files.there.clear();
    button(u"HPS_PaneShow"_s).click();
    files.answerAll();
    EXPECT_EQ(notice(), u"HPS_PaneNoManager"_s);
}

TEST_F(DetailsOfAgentsListTest, TheFileIsThatOfTheLineWithTheCursor) {
    parse(R"({"/tmp/a":{"State":1,"ID":"a"},"/tmp/b":{"State":1,"ID":"a"}})");
    openRow(0);
    EXPECT_EQ(files.lookedFor, QStringList{u"/tmp/a"_s});
    text().setTextCursor(text().document()->find(u"/tmp/b"_s));
    EXPECT_EQ(files.lookedFor, (QStringList{u"/tmp/a"_s, u"/tmp/b"_s}));
    files.there = {u"/tmp/b"_s};
    files.answerAll();
    button(u"HPS_PaneShow"_s).click();
    EXPECT_EQ(files.shown, QStringList{u"/tmp/b"_s});
}

TEST_F(DetailsPaneTest, ADeviceHasNoFile) {
    externalDevices.addData(listedRows({{{RowKey::DeviceType, u"USB"_s}}}));
    externalDevices.updateView();
    tabView().setCurrentIndex(3);
    auto& view = part<ThreatsTableView>("externalDevicesTable");
    view.setCurrentIndex(view.model()->index(0, 0));
    view.setFocus();
    press(Qt::Key_Return);
    EXPECT_TRUE(button(u"HPS_PaneCopy"_s).isEnabled());
    EXPECT_FALSE(button(u"HPS_PaneCopyPath"_s).isEnabled());
    EXPECT_FALSE(button(u"HPS_PaneShow"_s).isEnabled());
    EXPECT_TRUE(files.lookedFor.isEmpty());
}

// Menus

TEST_F(DetailsPaneTest, TheMenuOfARowWorksOnTheSelection) {
    goTo(0);
    table().setFocus();
    press(Qt::Key_Down, Qt::ShiftModifier);
    files.there = {u"/tmp/b"_s};
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_NE(menu(), nullptr);
    EXPECT_FALSE(item(u"HPS_PaneShow"_s)->isEnabled());
    files.answerAll();
    EXPECT_TRUE(item(u"HPS_PaneShow"_s)->isEnabled()); // of the current row
    item(u"HPS_PaneCopyPath"_s)->trigger();
    EXPECT_EQ(clipboard(), u"/tmp/a\n/tmp/b"_s);
    item(u"HPS_PaneCopy"_s)->trigger();
    const QString copied = clipboard();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), copied);
    EXPECT_EQ(copied.count(u'\n'), 3);
    item(u"HPS_PaneSelectAll"_s)->trigger();
    EXPECT_EQ(table().selectedRowIndexes(), RowIndexes({{0, 2}}));
    menu()->close();
    EXPECT_EQ(pane(), nullptr); // which nobody has asked for
}

TEST_F(DetailsPaneTest, TheMenuKeyAndARightClickShowTheMenuWhereTheyAre) {
    goTo(2);
    table().setFocus();
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&table(), &byKey);
    ASSERT_NE(menu(), nullptr);
    const QRect row = table().visualRect(table().model()->index(2, 0));
    EXPECT_EQ(menu()->pos(), table().viewport()->mapToGlobal(row.bottomLeft()));
    menu()->close();

    const QPoint place = table().visualRect(table().model()->index(1, 1)).center();
    QTest::mousePress(table().viewport(), Qt::RightButton, {}, place);
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, place, {});
    QApplication::sendEvent(table().viewport(), &byMouse);
    ASSERT_NE(menu(), nullptr);
    item(u"HPS_PaneCopyPath"_s)->trigger();
    EXPECT_EQ(clipboard(), u"/tmp/b"_s); // the row that was clicked on
    menu()->close();
}

TEST_F(DetailsPaneTest, WithoutASelectionOnlySelectAllIsOffered) {
    table().setFocus();
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_NE(menu(), nullptr);
    EXPECT_FALSE(item(u"HPS_PaneCopy"_s)->isEnabled());
    EXPECT_FALSE(item(u"HPS_PaneCopyPath"_s)->isEnabled());
    EXPECT_TRUE(item(u"HPS_PaneSelectAll"_s)->isEnabled());
    menu()->close();
    load({});
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(item(u"HPS_PaneSelectAll"_s)->isEnabled());
    menu()->close();
}

TEST_F(DetailsPaneTest, ThePaneHasTheSameMenu) {
    openRow(1);
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_NE(menu(), nullptr);
    EXPECT_EQ(menu()->actions().size(), 4);
    item(u"HPS_PaneCopyPath"_s)->trigger();
    EXPECT_EQ(clipboard(), u"/tmp/b"_s);
    item(u"HPS_PaneSelectAll"_s)->trigger();
    EXPECT_TRUE(text().textCursor().hasSelection());
    menu()->close();
}

TEST_F(DetailsPaneTest, WhatTheMenuCannotShowThePaneSays) {
    files.there = {u"/tmp/a"_s};
    goTo(0);
    table().setFocus();
    press(Qt::Key_F10, Qt::ShiftModifier);
    files.answerAll();
    files.there.clear();
    item(u"HPS_PaneShow"_s)->trigger();
    menu()->close();
    files.answerAll();
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(notice(), u"HPS_PaneNoManager"_s);
}

// Hostile texts, looks, readers

TEST_F(DetailsPaneTest, NothingIsMarkup) {
    load({u"<b>x</b>&amp;<img src=/etc/passwd>"_s});
    openRow(0);
    EXPECT_TRUE(plain().contains(u"<b>x</b>&amp;<img src=/etc/passwd>"_s));
}

TEST_F(DetailsPaneTest, ReadersGetANameARoleAndTheText) {
    openRow(1);
    QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&text());
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->text(QAccessible::Name), u"HPS_ColDetails"_s);
    ASSERT_NE(reader->textInterface(), nullptr);
    EXPECT_EQ(reader->textInterface()->text(0, reader->textInterface()->characterCount()), plain());
    EXPECT_TRUE(reader->state().readOnly);
    for (LinkButton* part : pane()->findChildren<LinkButton*>()) {
        QAccessibleInterface* button = QAccessible::queryAccessibleInterface(part);
        EXPECT_FALSE(button->text(QAccessible::Name).isEmpty());
        EXPECT_EQ(part->focusPolicy(), Qt::StrongFocus);
    }
}

TEST_F(DetailsPaneTest, ColoursAndSizesFollowTheDesktop) {
    openRow(1);
    const auto labelColor = [this] {
        QTextCursor cursor(text().document());
        cursor.movePosition(QTextCursor::NextCharacter);
        return cursor.charFormat().foreground().color();
    };
    const QColor light = labelColor();
    appearance.set(QVariant(u"Dark"_s));
    EXPECT_NE(labelColor(), light);
    const qreal width = text().document()->begin().blockFormat().leftMargin();
    QFont larger = text().font();
    larger.setPointSizeF(larger.pointSizeF() * 2);
    text().setFont(larger);
    EXPECT_GT(text().document()->begin().blockFormat().leftMargin(), width * 1.5);
}

TEST_F(DetailsPaneTest, InTheSmallestWindowRowAndDetailsAreBothInSight) {
    MainWindow& window = *controller().window();
    window.resize(window.minimumSize());
    QApplication::processEvents();
    openRow(2);
    QApplication::processEvents();
    EXPECT_EQ(window.size(), window.minimumSize());
    const QRect row = table().visualRect(table().currentIndex());
    EXPECT_TRUE(table().viewport()->rect().intersects(row))
        << table().viewport()->height() << ' ' << row.top() << ' ' << pane()->height() << ' '
        << tabView().height();
    EXPECT_GE(text().viewport()->height(), text().fontMetrics().height());
    EXPECT_TRUE(window.rect().contains(QRect(text().mapTo(&window, QPoint()), text().size())));
}

} // namespace
} // namespace korvale
