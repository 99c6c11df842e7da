#include "fakes/FakeTexts.h"
#include "fakes/RecordingRowBatch.h"
#include "shell/WindowFixture.h"
#include "shell/WindowMemory.h"
#include "tables/CustHeaderView.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QAccessible>
#include <QLabel>
#include <QScreen>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolTip>

namespace korvale {
namespace {

class MainWindowTest : public WindowFixture {
protected:
    std::vector<QLatin1String> toolbarIdentifiers() {
        std::vector<QLatin1String> identifiers;
        for (const ToolbarItem& item : part<MainWindowToolbar>("KvToolbar").items()) {
            identifiers.push_back(item.identifier);
        }
        return identifiers;
    }
};

TEST_F(MainWindowTest, TheToolbarHoldsIconAndLogoBetweenFlexibleSpaces) {
    MainWindow& window = shownWindow();
    // "KvEmptyButton" is listed first, but never built.
    EXPECT_EQ(toolbarIdentifiers(),
              (std::vector{toolbar_item::flexibleSpace, toolbar_item::appIcon,
                           toolbar_item::logoImage, toolbar_item::flexibleSpace}));
    auto& toolbar = part<MainWindowToolbar>("KvToolbar");
    EXPECT_EQ(toolbar.centeredItemIdentifier(), toolbar_item::appIcon);
    for (const int width : {700, 1000}) {
        for (const bool trayAvailable : {true, false}) {
            statusItem.setTrayAvailable(trayAvailable);
            window.resize(width, 500);
            QApplication::processEvents();
            EXPECT_NEAR(part<QWidget>("appIcon").geometry().center().x(), width / 2, 1);
        }
    }
}

TEST_F(MainWindowTest, ToolbarAndTitleBoxShareOneBackgroundWithoutALine) {
    MainWindow& window = shownWindow();
    const QImage picture = window.grab().toImage();
    const int below = part<QWidget>("titlbarBox").geometry().top();
    for (int y = below - 2; y <= below + 1; ++y) {
        const QColor here = picture.pixelColor(3, y);
        const QColor next = picture.pixelColor(3, y + 1);
        EXPECT_LE(std::abs(here.lightness() - next.lightness()), 2) << y;
    }
}

TEST(RestoreInSight, KeepsAnOrdinaryPlaceAndMendsOneOfTheGreatestNumbers) {
    QWidget former;
    former.setGeometry(30, 40, 320, 210);
    QWidget window;
    restoreInSight(window, former.saveGeometry());
    EXPECT_EQ(window.geometry(), former.geometry());

    QWidget other;
    other.resize(300, 200);
    restoreInSight(other,
                   QByteArray::fromBase64("AdnQywAAAACDAAAAgAAAAH////9//////AAAAIAAAAAAAAAA"));
    EXPECT_TRUE(other.screen()->geometry().contains(other.geometry()));
    EXPECT_EQ(other.size(), QSize(300, 200));
}

TEST_F(MainWindowTest, EveryTabHasItsIdentifierAndItsTable) {
    shownWindow();
    const std::pair<int, const char*> expected[] = {{1, "fileThreatsTable"},
                                                    {2, "processThreatsTable"},
                                                    {4, "eventsTable"},
                                                    {3, "externalDevicesTable"}};
    ASSERT_EQ(tabView().count(), 4);
    for (int tab = 0; tab < 4; ++tab) {
        tabView().setCurrentIndex(tab);
        EXPECT_EQ(static_cast<int>(state.activeTabIndex), expected[tab].first);
        EXPECT_EQ(tabView().currentWidget()->objectName(),
                  QString::fromLatin1(expected[tab].second));
    }
}

TEST_F(MainWindowTest, AClickOnATabSelectsAndRefreshesIt) {
    shownWindow();
    state.newExploitCount = 5;
    QTabBar& bar = *tabView().tabBar();
    QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, bar.tabRect(1).center());
    EXPECT_EQ(state.activeTabIndex, TabIdentifier::Exploits);
    EXPECT_EQ(tabView().tabText(1), u"HPS_Exploits (5)");
    EXPECT_EQ(state.newExploitCount, 0);
}

struct TabKey {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    int expectedFromFirst;
};

class TabKeyTest : public MainWindowTest, public testing::WithParamInterface<TabKey> {};

TEST_P(TabKeyTest, ChangesTheTabFromWithinATable) {
    shownWindow();
    part<QWidget>("fileThreatsTable").setFocus();
    QTest::keyClick(QApplication::focusWidget(), GetParam().key, GetParam().modifiers);
    EXPECT_EQ(tabView().currentIndex(), GetParam().expectedFromFirst);
}

INSTANTIATE_TEST_SUITE_P(Keys, TabKeyTest,
                         testing::Values(TabKey{Qt::Key_Tab, Qt::ControlModifier, 1},
                                         TabKey{Qt::Key_Backtab,
                                                Qt::ControlModifier | Qt::ShiftModifier, 3},
                                         TabKey{Qt::Key_PageDown, Qt::ControlModifier, 1},
                                         TabKey{Qt::Key_PageUp, Qt::ControlModifier, 3}));

TEST_F(MainWindowTest, ArrowKeysOnTheTabBarChangeTheTab) {
    shownWindow();
    tabView().tabBar()->setFocus();
    QTest::keyClick(tabView().tabBar(), Qt::Key_Right);
    EXPECT_EQ(state.activeTabIndex, TabIdentifier::Exploits);
    QTest::keyClick(tabView().tabBar(), Qt::Key_Left);
    EXPECT_EQ(state.activeTabIndex, TabIdentifier::Threats);
}

TEST_F(MainWindowTest, EscapeAndControlWHideTheWindow) {
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        MainWindow& window = shownWindow();
        ASSERT_TRUE(window.isVisible());
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(controller().window(), &window);
    }
}

TEST_F(MainWindowTest, ClosingHidesItAndItOpensAgainAsItWas) {
    MainWindow& window = shownWindow();
    tabView().setCurrentIndex(2);
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(&shownWindow(), &window);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(tabView().currentIndex(), 2);
}

TEST_F(MainWindowTest, F10OpensTheMenuWhereThereIsNoTray) {
    statusItem.setTrayAvailable(false);
    statusMenu.addAction(QStringLiteral("x"));
    shownWindow();
    bool opened = false;
    QObject::connect(&statusMenu, &QMenu::aboutToShow, &statusMenu, [&] {
        opened = true;
        QTimer::singleShot(0, &statusMenu, &QMenu::hide);
    });
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10);
    EXPECT_TRUE(opened);
}

TEST_F(MainWindowTest, AClickOrAKeyOnTheLogoVisitsTheHomePage) {
    const QString home = QStringLiteral("https://korvale.example/");
    const FakeTexts texts{{"Url", home}};
    shownWindow();
    auto& logo = part<QWidget>("logoImage");
    QTest::mouseClick(&logo, Qt::LeftButton);
    EXPECT_EQ(links.opened, QStringList(home));
    logo.setFocus();
    QTest::keyClick(&logo, Qt::Key_Space);
    EXPECT_EQ(links.opened, QStringList({home, home}));
}

TEST_F(MainWindowTest, AnInvalidHomePageOpensNothing) {
    const FakeTexts texts{{"Url", QStringLiteral("file:///etc/passwd")}};
    controller().visitHome();
    EXPECT_TRUE(links.opened.isEmpty());
}

TEST_F(MainWindowTest, TheLogoShowsThatItHasTheFocus) {
    shownWindow();
    auto& logo = part<QWidget>("logoImage");
    const QImage without = logo.grab().toImage();
    logo.setFocus();
    EXPECT_NE(logo.grab().toImage(), without);
}

TEST_F(MainWindowTest, SizeAndColumnWidthsAreRemembered) {
    MainWindow& window = shownWindow();
    window.resize(777, 444);
    part<ThreatsTableView>("eventsTable").header().resizeSection(1, 123);
    window.close();
    makeController();
    EXPECT_EQ(shownWindow().size(), QSize(777, 444));
    EXPECT_EQ(part<ThreatsTableView>("eventsTable").header().sectionSize(1), 123);
}

TEST_F(MainWindowTest, OrderOfColumnsAndRowsIsRemembered) {
    shownWindow();
    part<ThreatsTableView>("eventsTable").header().moveSection(3, 1);
    part<ThreatsTableView>("eventsTable").header().resizeSection(3, 97);
    part<ThreatsTableView>("eventsTable").sortByColumn(2);
    part<ThreatsTableView>("eventsTable").sortByColumn(2);
    makeController();
    events.addData(numberedRows(3));
    shownWindow();
    auto& view = part<ThreatsTableView>("eventsTable");
    EXPECT_EQ(view.header().logicalIndex(1), 3);
    EXPECT_EQ(view.header().sectionSize(3), 97);
    EXPECT_EQ(view.sortDescriptors(), (SortDescriptors{{RowKey::Event, false}}));
    EXPECT_EQ(events.cellText(QLatin1String("COL1"), 0), QStringLiteral("2")) << "sorted already";
    EXPECT_TRUE(part<ThreatsTableView>("fileThreatsTable").sortDescriptors().empty());
    Q_EMIT view.header().resetWanted();
    makeController();
    shownWindow();
    EXPECT_EQ(part<ThreatsTableView>("eventsTable").header().logicalIndex(1), 1);
    EXPECT_TRUE(part<ThreatsTableView>("eventsTable").sortDescriptors().empty());
}

TEST_F(MainWindowTest, SizeIsRememberedWhenTheProgramEndsWithTheWindowOpen) {
    shownWindow().resize(654, 432);
    makeController();
    EXPECT_EQ(shownWindow().size(), QSize(654, 432));
}

TEST_F(MainWindowTest, RowsThatCameBeforeTheWindowAreShown) {
    events.addData(numberedRows(2));
    shownWindow();
    EXPECT_EQ(part<ThreatsTableView>("eventsTable").model()->rowCount(), 2);
    EXPECT_EQ(part<ThreatsTableView>("fileThreatsTable").model()->rowCount(), 0);
}

TEST_F(MainWindowTest, EverythingToSeeOrToFocusHasAName) {
    statusItem.setTrayAvailable(false);
    state.customName = QStringLiteral("ada");
    MainWindow& window = shownWindow();
    int checked = 0;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool takesFocus = widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0;
        const bool isLabel = qobject_cast<QLabel*>(widget) != nullptr; // hidden ones are read too
        if (!takesFocus && !isLabel) {
            continue;
        }
        ++checked;
        const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << qPrintable(widget->objectName());
        if (!widget->toolTip().isEmpty()) {
            EXPECT_FALSE(widget->accessibleDescription().isEmpty())
                << qPrintable(widget->objectName());
        }
    }
    EXPECT_GE(checked, 10);
}

TEST_F(MainWindowTest, TabReachesTabsTableMenuAndLogo) {
    statusItem.setTrayAvailable(false);
    shownWindow();
    QSet<QString> reached;
    for (int press = 0; press < 12; ++press) {
        const QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        reached.insert(focus->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_TRUE(reached.contains(QStringLiteral("fileThreatsTable")));
    EXPECT_TRUE(reached.contains(QStringLiteral("menuButton")));
    EXPECT_TRUE(reached.contains(QStringLiteral("logoImage")));
    EXPECT_TRUE(reached.contains(tabView().tabBar()->objectName()));
}

TEST_F(MainWindowTest, TheFocusShowsAfterAKeyChangedTheTab) {
    shownWindow();
    part<QWidget>("fileThreatsTable").setFocus(Qt::MouseFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    auto& table = part<QWidget>("processThreatsTable");
    QWidget* focus = QApplication::focusWidget();
    ASSERT_TRUE(focus == &table || table.isAncestorOf(focus)); // the table or its titles
    const QImage with = table.grab().toImage();
    tabView().tabBar()->setFocus();
    EXPECT_NE(table.grab().toImage(), with);
}

struct Described {
    const char* name;
    QString said;
};

/// Parts that are only looked at, and what their tooltips say.
TEST_F(MainWindowTest, WhatTheStatusLineNoLongerSaysIsNotReadAloud) {
    MainWindow& window = shownWindow();
    window.setStatusMessage(QStringLiteral("away"), QStringLiteral("away"));
    window.setStatusMessage({}, QStringLiteral("away"));
    const QLabel& line = part<QLabel>("bottomStatusLbl");
    EXPECT_EQ(line.accessibleDescription(), QString());
    EXPECT_TRUE(line.toolTip().contains(u"away")) << "the tooltip stays";
}

class ToolTipReachTest : public MainWindowTest {
protected:
    void SetUp() override {
        state.customName = QStringLiteral("<i>ada");
        statusItem.setIconDispColor(IconColor::Green);
        statusLine.updateStatusMessage(StatusState::NoNetwork);
        shownWindow();
        controller().showDeviceName();
    }
    void TearDown() override { QToolTip::hideText(); }
    const Described parts[3] = {{"appIcon", QStringLiteral("ada: Safe")},
                                {"deviceName", QStringLiteral("ada")},
                                {"bottomStatusLbl", QStringLiteral("NoNetwork")}};
};

TEST_F(ToolTipReachTest, TabShowsThem) {
    for (const Described& of : parts) {
        auto& widget = part<QWidget>(of.name);
        ASSERT_NE(widget.focusPolicy() & Qt::TabFocus, 0) << of.name;
        tabView().tabBar()->setFocus();
        const QImage without = widget.grab().toImage();
        widget.setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(QToolTip::text().contains(of.said)) << of.name;
        EXPECT_NE(widget.grab().toImage(), without) << of.name; // and where the focus is
    }
}

TEST_F(ToolTipReachTest, AClickShowsThem) {
    for (const Described& of : parts) {
        QTest::mouseClick(&part<QWidget>(of.name), Qt::LeftButton);
        EXPECT_TRUE(QToolTip::text().contains(of.said)) << of.name;
    }
}

TEST_F(ToolTipReachTest, WithoutOneTabPassesBy) {
    statusLine.updateStatusMessage(StatusState::UpdaterMessage); // which there is none of
    EXPECT_EQ(part<QWidget>("bottomStatusLbl").focusPolicy(), Qt::NoFocus);
}

TEST_F(ToolTipReachTest, AKeyShowsThatOfWhatHasTheFocus) {
    auto& logo = part<QWidget>("logoImage");
    logo.setFocus();
    QTest::keyClick(&logo, Qt::Key_F1, Qt::ControlModifier);
    EXPECT_TRUE(QToolTip::text().contains(u"HPS_LogoToolTip"));
}

TEST_F(MainWindowTest, LongAndHostileTextsNeitherWidenNorMisleadTheWindow) {
    MainWindow& window = shownWindow();
    const int narrowest = window.minimumSizeHint().width();
    state.customName = QStringLiteral("<h1>&x</h1>\n\u202Eevil").repeated(20000);
    state.updateStatus = state.customName;
    controller().showDeviceName();
    statusLine.updateStatusMessage(StatusState::UpdaterMessage);
    QApplication::processEvents();
    EXPECT_EQ(window.minimumSizeHint().width(), narrowest);
    EXPECT_EQ(part<QLabel>("deviceName").height(), part<QLabel>("deviceName").sizeHint().height());
    window.grab(); // drawn without a long wait
}

TEST_F(MainWindowTest, KeepsShieldAndLogoApartInBothDirections) {
    MainWindow& window = roomyWindow();
    const auto distance = [this] {
        const QRect shield = part<QWidget>("appIcon").geometry();
        const QRect logo = part<QWidget>("logoImage").geometry();
        return std::max(logo.left() - shield.right(), shield.left() - logo.right()) - 1;
    };
    const int fromLeftToRight = distance();
    EXPECT_EQ(fromLeftToRight, look::toolbarSpacing);
    window.setLayoutDirection(Qt::RightToLeft);
    QApplication::processEvents();
    EXPECT_EQ(distance(), fromLeftToRight);
    EXPECT_LT(part<QWidget>("logoImage").x(), part<QWidget>("appIcon").x());
}

} // namespace
} // namespace korvale
