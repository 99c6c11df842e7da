// Every label has the room that its text needs, in every language.
#include "core/base/TextFormat.h"
#include "fakes/RecordingRowBatch.h"
#include "model/ProtectionRules.h"
#include "platform/NotificationServer.h"
#include "platform/Texts.h"
#include "shell/AboutPanel.h"
#include "shell/AnswerStrip.h"
#include "shell/ElidedLabel.h"
#include "shell/ExportLine.h"
#include "shell/LinkButton.h"
#include "shell/NotificationsWindow.h"
#include "shell/Translations.h"
#include "shell/WindowFixture.h"
#include "tables/CustHeaderView.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QFontDatabase>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTextEdit>

#include <algorithm>

namespace korvale {
namespace {

class LabelRoomTest : public WindowFixture, public testing::WithParamInterface<const char*> {
protected:
    LabelRoomTest() {
        makeController(); // in this language
        resources.initialize();
        statusItem.create();
        state.customName = QStringLiteral("ada-workstation");
        state.analyzedCount = 8'888'888;
        state.quarantineCount = 88'888;
        state.newExploitCount = 888;
        state.eventCount = 8888;
    }

    static int widthOf(const QWidget& part, const QString& text) {
        return part.fontMetrics().horizontalAdvance(text);
    }

    static void expectRoom(const QWidget& window) {
        QApplication::processEvents();
        for (const QWidget* part : window.findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(part);
            const auto* button = qobject_cast<const QAbstractButton*>(part);
            if (!part->isVisible()) {
                continue;
            }
            if (label != nullptr && !label->text().isEmpty()) {
                for (const QString& line : label->text().split(u'\n')) {
                    EXPECT_LE(widthOf(*label, line), label->contentsRect().width())
                        << line.toStdString();
                }
                EXPECT_LE(label->fontMetrics().boundingRect(label->text()).height(),
                          label->height())
                    << label->text().toStdString();
            } else if (button != nullptr && !button->text().isEmpty()) {
                EXPECT_LE(button->sizeHint().width(), button->width())
                    << button->text().toStdString();
            }
        }
    }

    /// The tabs stand beside each other without buttons to scroll them.
    void expectRoomForTabs() {
        const QTabBar& tabs = *tabView().tabBar();
        for (int tab = 0; tab < tabs.count(); ++tab) {
            EXPECT_TRUE(tabView().rect().contains(QRect(
                tabs.mapTo(&tabView(), tabs.tabRect(tab).topLeft()), tabs.tabRect(tab).size())))
                << tabs.tabText(tab).toStdString();
            EXPECT_LE(widthOf(tabs, tabs.tabText(tab).trimmed()), tabs.tabRect(tab).width())
                << tabs.tabText(tab).toStdString();
        }
    }

    void expectRoomForTitles() {
        for (const ThreatsTableView* table :
             part<QWidget>("tabView").findChildren<ThreatsTableView*>()) {
            CustHeaderView& header = table->header();
            for (int column = 0; column < header.count(); ++column) {
                const QString title = table->model()->headerData(column, Qt::Horizontal).toString();
                static constexpr int marginsAndArrow = 8 + 4 + 8 + 8;
                EXPECT_FALSE(title.isEmpty());
                EXPECT_LE(widthOf(header, title) + marginsAndArrow, header.sectionSize(column))
                    << title.toStdString();
            }
        }
    }

    const Translations texts{{QByteArray(GetParam())}};
};

TEST_P(LabelRoomTest, InTheWindow) {
    const MainWindow& window = roomyWindow();
    for (const StatusState status : {StatusState::NotRunning, StatusState::NoNetwork,
                                     StatusState::Running, StatusState::NoDriver}) {
        statusLine.updateStatusMessage(status);
        controller().updateDisplay();
        expectRoom(window);
    }
    expectRoomForTabs();
    for (int tab = 0; tab < tabView().count(); ++tab) {
        tabView().setCurrentIndex(tab);
        expectRoom(window);
    }
    expectRoomForTitles();
}

TEST_P(LabelRoomTest, OfTheTabsInTheSmallestWindow) {
    MainWindow& window = shownWindow();
    window.resize(window.minimumSize());
    state.newExploitCount = 0; // a tab bar with large counts may have to scroll here
    state.eventCount = 0;
    controller().updateDisplay();
    QApplication::processEvents();
    expectRoomForTabs();
}

TEST_P(LabelRoomTest, OfTheButtonsOfTheStripInTheSmallestWindow) {
    state.agentIsAway = true;
    MainWindow& window = shownWindow();
    window.resize(window.minimumSize());
    QApplication::processEvents();
    EXPECT_EQ(window.size(), window.minimumSize());
    for (const LinkButton* button : window.findChildren<LinkButton*>()) {
        EXPECT_TRUE(button->isVisible());
        EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        EXPECT_TRUE(window.rect().contains(QRect(button->mapTo(&window, QPoint()), button->size())))
            << button->text().toStdString();
    }
}

/// Whatever it is: every text that the strip can give as its reason.
TEST_P(LabelRoomTest, OfTheReasonInTheSmallestWindow) {
    MainWindow& window = shownWindow();
    window.resize(window.minimumSize());
    auto& reason = part<QLabel>("whyLbl");
    for (const ProtectionRule& rule : protectionRules()) {
        const QString text = formatText(localizedText(rule.whyKey), {QStringLiteral("8,888")});
        window.answerStrip().setProtection(rule.verdict, text, protectionAdvice(rule),
                                           lastScanText(QDateTime::currentDateTime()));
        QApplication::processEvents();
        EXPECT_EQ(reason.text(), text);
        EXPECT_GE(reason.width(), reason.sizeHint().width()) << text.toStdString();
    }
}

TEST_P(LabelRoomTest, InTheNotificationsWindow) {
    notifications.add({.title = QStringLiteral("Korvale Endpoint Protection"),
                       .subtitle = QStringLiteral("Found"),
                       .message = QStringLiteral("invoice.exe"),
                       .picture = {},
                       .link = QStringLiteral("https://korvale.example/")},
                      true);
    controller().showNotifications();
    int windows = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (const auto* window = qobject_cast<const NotificationsWindow*>(widget)) {
            expectRoom(*window);
            ++windows;
        }
    }
    EXPECT_EQ(windows, 1);
}

TEST_P(LabelRoomTest, OfTheButtonsOfADetailedRowInEveryWindow) {
    MainWindow& window = shownWindow();
    fileThreats.loadData(numberedRows(3));
    fileThreats.updateView();
    auto& table = part<ThreatsTableView>("fileThreatsTable");
    table.setCurrentIndex(table.model()->index(0, 0));
    QTest::keyClick(&table, Qt::Key_Return);
    auto& pane = part<QWidget>("detailsPane");
    ASSERT_TRUE(pane.isVisible());
    expectRoom(pane);
    window.resize(window.minimumSize());
    expectRoom(pane);
    for (const auto* button : pane.findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(pane.rect().contains(button->geometry())) << button->text().toStdString();
    }
}

/// The smallest window with the details of its first row, once with text of the size from the start
/// and once with text that grows while they are open.
class DetailsWithLargeText : public LabelRoomTest {
protected:
    ~DetailsWithLargeText() override { QApplication::setFont(m_before); }

    void enlargeText() {
        QFont large = m_before;
        large.setPointSizeF(m_before.pointSizeF() * 1.5);
        QApplication::setFont(large);
    }
    MainWindow& openDetails() {
        MainWindow& window = shownWindow();
        window.resize(window.minimumSize());
        fileThreats.loadData(numberedRows(3));
        fileThreats.updateView();
        auto& table = part<ThreatsTableView>("fileThreatsTable");
        table.setCurrentIndex(table.model()->index(0, 0));
        QTest::keyClick(&table, Qt::Key_Return);
        return window;
    }
    void expectAllInSight() {
        const auto& pane = part<QWidget>("detailsPane");
        const auto& text = part<QTextEdit>("detailsText");
        const auto& table = part<ThreatsTableView>("fileThreatsTable");
        const auto buttons = pane.findChildren<QAbstractButton*>();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return text.height() >= text.minimumHeight() &&
                       std::all_of(buttons.begin(), buttons.end(), [&](const auto* button) {
                           return pane.rect().contains(button->geometry());
                       });
            },
            20000));
        QApplication::processEvents();
        expectRoom(pane);
        for (const auto* button : buttons) {
            EXPECT_TRUE(pane.rect().contains(button->geometry())) << button->text().toStdString();
            EXPECT_FALSE(text.geometry().intersects(button->geometry()))
                << button->text().toStdString();
        }
        EXPECT_GE(table.viewport()->height(), table.rowHeight(0));
    }

private:
    const QFont m_before = QApplication::font();
};

TEST_P(DetailsWithLargeText, FromTheStartShareTheSmallestWindowWithTheTable) {
    enlargeText();
    MainWindow& window = openDetails();
    expectAllInSight();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(window.minimumSize(), QSize(look::smallestWidth, look::smallestHeight));
}

TEST_P(DetailsWithLargeText, WhileTheyAreOpenShareTheSmallestWindowWithTheTable) {
    openDetails();
    expectAllInSight();
    enlargeText();
    expectAllInSight();
}

TEST_P(LabelRoomTest, OfTheButtonOfAnExportInTheSmallestWindow) {
    MainWindow& window = shownWindow();
    ExportLine line;
    window.answerStrip().layout()->addWidget(&line);
    window.resize(window.minimumSize());
    for (const bool isRunning : {true, false}) {
        isRunning ? line.showRunning(QString(200, u'M')) : line.showResult(QString(200, u'M'));
        QApplication::processEvents();
        const auto* button = line.findChild<QAbstractButton*>();
        EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        EXPECT_TRUE(line.rect().contains(button->geometry())) << button->text().toStdString();
        EXPECT_TRUE(window.rect().contains(QRect(line.mapTo(&window, QPoint()), line.size())));
    }
}

TEST_P(LabelRoomTest, InTheAboutPanel) {
    controller().aboutApp();
    int panels = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (const auto* panel = qobject_cast<const AboutPanel*>(widget)) {
            expectRoom(*panel);
            ++panels;
        }
    }
    EXPECT_EQ(panels, 1);
}

INSTANTIATE_TEST_SUITE_P(Languages, LabelRoomTest, testing::Values("en", "de", "es", "fr", "ja"),
                         [](const auto& language) { return std::string(language.param); });

INSTANTIATE_TEST_SUITE_P(Languages, DetailsWithLargeText,
                         testing::Values("en", "de", "es", "fr", "ja"),
                         [](const auto& language) { return std::string(language.param); });

TEST(LabelRoom, IsMeasuredWithAJapaneseFont) {
    EXPECT_FALSE(QFontDatabase::families(QFontDatabase::Japanese).isEmpty())
        << "install fonts-ipaexfont-gothic";
}

} // namespace
} // namespace korvale
