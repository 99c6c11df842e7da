// How well every text can be read: the contrast of what is really drawn, as WCAG 2.1 counts it.
#include "fakes/RecordingRowBatch.h"
#include "platform/NotificationServer.h"
#include "shell/AboutPanel.h"
#include "shell/AnswerStrip.h"
#include "shell/ExportLine.h"
#include "shell/LinkButton.h"
#include "shell/MarkedAction.h"
#include "shell/NotificationsWindow.h"
#include "shell/WindowFixture.h"
#include "tables/CustHeaderView.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QTabBar>
#include <QTextEdit>

#include <cmath>
#include <ostream>

namespace korvale {
namespace {

constexpr double leastContrast = 4.5;
constexpr double leastShapeContrast = 3; // of what is no text

double light(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(QRgb color) {
    const QColor c(color);
    return 0.2126 * light(c.redF()) + 0.7152 * light(c.greenF()) + 0.0722 * light(c.blueF());
}

double contrast(QRgb one, QRgb other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// How often each contrast with the background, which is most of an area, occurs in it.
std::map<double, int> drawnContrasts(const QImage& area) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < area.height(); ++y) {
        for (int x = 0; x < area.width(); ++x) {
            ++counts[area.pixel(x, y)];
        }
    }
    const QRgb background = std::max_element(counts.begin(), counts.end(), [](auto& a, auto& b) {
                                return a.second < b.second;
                            })->first;
    std::map<double, int> contrasts;
    for (const auto& [color, count] : counts) {
        contrasts[contrast(background, color)] += count;
    }
    return contrasts;
}

/// That of the pixel which differs most: the middle of some stroke. Smoothed edges only make it
/// less.
double drawnContrast(const QImage& area) {
    return drawnContrasts(area).rbegin()->first;
}

/// How many pixels can be told from the background.
int seenPixels(const QImage& area) {
    int seen = 0;
    for (const auto& [ratio, count] : drawnContrasts(area)) {
        seen += ratio >= leastShapeContrast ? count : 0;
    }
    return seen;
}

struct Look {
    const char* name;
    bool isDark;
    bool isHighContrast;
};
void PrintTo(const Look& look, std::ostream* stream) {
    *stream << look.name;
}

class ContrastTest : public WindowFixture, public testing::WithParamInterface<Look> {
protected:
    void SetUp() override {
        resources.initialize();
        appearance.set(GetParam().isDark ? QVariant(QStringLiteral("Dark")) : QVariant());
        resources.setHighContrast(GetParam().isHighContrast);
        state.customName = QStringLiteral("ada-workstation");
        state.analyzedCount = 128431;
        state.quarantineCount = 12;
        statusItem.create();
    }

    void fill() {
        const auto rows = std::make_shared<RecordingRowBatch>(
            8, [](std::size_t row, RowKey key) -> std::optional<QString> {
                static const QStringList words{QStringLiteral("Unsafe"), QStringLiteral("Abnormal"),
                                               QStringLiteral("Quarantined"),
                                               QStringLiteral("Alert")};
                return key == RowKey::Category ? words[static_cast<qsizetype>(row / 2)]
                                               : QStringLiteral("MMMM");
            });
        fileThreats.loadData(rows);
        processThreats.loadData(rows);
        events.addData(rows);
        externalDevices.addData(rows);
        fileThreats.updateView();
        processThreats.updateView();
        events.updateView();
        externalDevices.updateView();
        controller().updateDisplay();
    }

    /// Of the first row of the first table, by keyboard; their text.
    QTextEdit& openDetails() {
        fill();
        auto* table = tables().front();
        table->setCurrentIndex(table->model()->index(0, 0));
        QTest::keyClick(table, Qt::Key_Return);
        return part<QTextEdit>("detailsText");
    }

    static void expectLegible(const QImage& window, const QRect& area, const QString& what) {
        const qreal scale = window.devicePixelRatio();
        const QRect pixels((QPointF(area.topLeft()) * scale).toPoint(),
                           (QSizeF(area.size()) * scale).toSize());
        EXPECT_GE(drawnContrast(window.copy(pixels)), leastContrast) << what.toStdString();
    }

    static QRect areaOf(const QWidget& part, const QRect& area) {
        return {part.mapTo(part.window(), area.topLeft()), area.size()};
    }

    /// Labels, buttons, fields and tabs.
    static void expectLegible(QWidget& window) {
        QApplication::processEvents();
        const QImage picture = window.grab().toImage();
        for (const QWidget* part : window.findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(part);
            const auto* button = qobject_cast<const QAbstractButton*>(part);
            const auto* line = qobject_cast<const QLineEdit*>(part);
            const auto* field = qobject_cast<const QPlainTextEdit*>(part);
            const QString text = label != nullptr    ? label->text()
                                 : button != nullptr ? button->text()
                                 : line != nullptr   ? line->text() + line->placeholderText()
                                 : field != nullptr  ? field->toPlainText()
                                                     : QString();
            // A field's frame is no text.
            const int frame = line != nullptr ? look::stripPadding / 2 : 0;
            if (part->isVisible() && !text.trimmed().isEmpty()) {
                const QRect area = part->rect().adjusted(frame, frame, -frame, -frame);
                expectLegible(picture, areaOf(*part, area), text);
            }
        }
        for (const QTabBar* tabs : window.findChildren<QTabBar*>()) {
            for (int tab = 0; tabs->isVisible() && tab < tabs->count(); ++tab) {
                // Without the line under the tab.
                const QRect area = tabs->tabRect(tab).adjusted(0, 0, 0, -6);
                expectLegible(picture, areaOf(*tabs, area), tabs->tabText(tab));
            }
        }
    }

    /// Something is drawn along each side that can be told from what is around or within.
    static void expectEdges(const QWidget& part, const QString& what) {
        const QImage picture = part.window()->grab().toImage();
        const QRect area = areaOf(part, part.rect());
        static constexpr int reach = 3; // on both sides of an edge
        const auto across = [](const QPoint& from, const QSize& size) {
            return QRect(from - QPoint(size.width() / 2, size.height() / 2), size);
        };
        const QSize flat(2 * reach, 1);
        const QPoint middle = area.center();
        for (const QRect& edge :
             {across({area.left(), middle.y()}, flat), across({area.right(), middle.y()}, flat),
              across({middle.x(), area.top()}, flat.transposed()),
              across({middle.x(), area.bottom()}, flat.transposed())}) {
            const qreal scale = picture.devicePixelRatio();
            const QRect pixels((QPointF(edge.topLeft()) * scale).toPoint(),
                               (QSizeF(edge.size()) * scale).toSize());
            EXPECT_GE(drawnContrast(picture.copy(pixels)), leastShapeContrast)
                << what.toStdString() << " at " << edge.x() << ", " << edge.y();
        }
    }

    /// Along its middle there is a part that can be told from the rest.
    static void expectSeenSlider(const QScrollBar& bar) {
        const bool isUpright = bar.orientation() == Qt::Vertical;
        const QRect middle = isUpright ? QRect(bar.width() / 2, 0, 1, bar.height())
                                       : QRect(0, bar.height() / 2, bar.width(), 1);
        static constexpr int buttons = 2 * 16;
        const auto length = std::max(bar.width(), bar.height()) - buttons;
        const QImage picture = const_cast<QScrollBar&>(bar).grab(middle).toImage();
        EXPECT_GE(seenPixels(picture) / picture.devicePixelRatio(), std::min(length / 3, 16))
            << (isUpright ? "upright" : "flat");
    }

    static void expectLegibleTable(ThreatsTableView& table, const QString& situation) {
        QApplication::processEvents();
        const QImage picture = table.window()->grab().toImage();
        for (int column = 0; column < table.model()->columnCount(); ++column) {
            const CustHeaderView& header = table.header();
            const QRect title(header.sectionViewportPosition(column), 0, header.sectionSize(column),
                              header.height());
            expectLegible(picture, areaOf(*header.viewport(), title), situation + u" title"_qs);
            for (int row = 0; row < table.model()->rowCount(); ++row) {
                const QRect cell = table.visualRect(table.model()->index(row, column))
                                       .adjusted(3, 3, -3, -3); // without the focus frame
                const QString name = QStringLiteral("%1 row %2 column %3").arg(situation).arg(row);
                if (table.viewport()->rect().contains(cell)) {
                    expectLegible(picture, areaOf(*table.viewport(), cell), name.arg(column));
                }
            }
        }
    }

    std::vector<ThreatsTableView*> tables() {
        return {&part<ThreatsTableView>("fileThreatsTable"),
                &part<ThreatsTableView>("processThreatsTable"),
                &part<ThreatsTableView>("eventsTable"),
                &part<ThreatsTableView>("externalDevicesTable")};
    }
};

TEST_P(ContrastTest, TheWindowAndItsEmptyTablesCanBeRead) {
    QWidget& window = roomyWindow();
    controller().updateDisplay();
    for (int tab = 0; tab < tabView().count(); ++tab) {
        tabView().setCurrentIndex(tab);
        expectLegible(window);
        const auto* table = qobject_cast<ThreatsTableView*>(tabView().currentWidget());
        const QImage picture = window.grab().toImage();
        expectLegible(picture,
                      areaOf(*table->viewport(), table->viewport()->rect().adjusted(3, 3, -3, -3)),
                      QStringLiteral("empty table"));
    }
}

TEST_P(ContrastTest, TheAnswerStripCanBeReadWithEveryVerdictAndWithOrWithoutWordsToFind) {
    MainWindow& window = roomyWindow();
    AnswerStrip& strip = window.answerStrip();
    const QString words = QStringLiteral("MMMM");
    for (const Verdict verdict :
         {Verdict::Good, Verdict::Unknown, Verdict::Danger, Verdict::Away}) {
        for (const QString& found : {QString(), words}) {
            part<QLineEdit>("findField").setText(found);
            strip.setFindCount(found);
            strip.setProtection(verdict, words, words, words);
            part<QAbstractButton>("whatNowButton").setChecked(true);
            expectLegible(window);
        }
    }
}

TEST_P(ContrastTest, WhatBecomesOfAnExportCanBeRead) {
    MainWindow& window = roomyWindow();
    ExportLine line;
    window.answerStrip().layout()->addWidget(&line);
    line.showRunning(QStringLiteral("MMMM"));
    expectLegible(window);
    line.showResult(QStringLiteral("MMMM"));
    expectLegible(window);
}

TEST_P(ContrastTest, RowsCanBeReadSelectedOrNotWithAndWithoutTheFocus) {
    roomyWindow();
    fill();
    int tab = 0;
    for (ThreatsTableView* table : tables()) {
        tabView().setCurrentIndex(tab++);
        table->clearSelection();
        expectLegibleTable(*table, QStringLiteral("plain"));
        table->setFocus();
        table->selectAll();
        expectLegibleTable(*table, QStringLiteral("selected"));
        tabView().tabBar()->setFocus();
        expectLegibleTable(*table, QStringLiteral("selected without the focus"));
    }
}

TEST_P(ContrastTest, TheDetailsOfARowCanBeRead) {
    QWidget& window = roomyWindow();
    QTextEdit& details = openDetails();
    expectLegible(window);
    details.selectAll();
    QApplication::processEvents();
    expectLegible(window.grab().toImage(), areaOf(details, details.rect()), details.toPlainText());
}

/// Where the scale of the screen puts an edge between two pixels, too.
TEST_P(ContrastTest, TheDetailsHaveAFrameOnFourSidesWhileTheyHaveTheFocus) {
    MainWindow& window = roomyWindow();
    QTextEdit& details = openDetails();
    for (int height = 560; height < 564; ++height) {
        window.resize(920, height);
        QApplication::processEvents();
        ASSERT_TRUE(details.hasFocus());
        expectEdges(*details.viewport(), QStringLiteral("details at height %1").arg(height));
    }
}

TEST_P(ContrastTest, WithHighContrastWhatCanBeUsedHasEdges) {
    resources.setHighContrast(true);
    MainWindow& window = roomyWindow();
    fill();
    ExportLine line;
    window.answerStrip().layout()->addWidget(&line);
    line.showRunning(QStringLiteral("MMMM"));
    for (const Verdict verdict : {Verdict::Good, Verdict::Danger}) {
        window.answerStrip().setProtection(verdict, {}, {}, {});
        QApplication::processEvents();
        expectEdges(part<QWidget>("findField"), QStringLiteral("field"));
        expectEdges(part<QWidget>("exportProgress"), QStringLiteral("progress"));
    }
    notifications.add({.title = {}, .subtitle = {}, .message = {}, .picture = {}, .link = {}},
                      true);
    controller().showNotifications();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<NotificationsWindow*>(widget) != nullptr) {
            expectEdges(*widget->findChild<QPushButton*>(), QStringLiteral("button"));
        }
    }
}

TEST_P(ContrastTest, WithHighContrastScrollBarsAndTheSplitterCanBeSeen) {
    MainWindow& window = roomyWindow();
    openDetails();
    window.resize(window.minimumSize());
    resources.setHighContrast(true);
    QApplication::processEvents();
    int bars = 0;
    for (const QScrollBar* bar : window.findChildren<QScrollBar*>()) {
        if (bar->isVisible()) {
            expectSeenSlider(*bar);
            ++bars;
        }
    }
    EXPECT_EQ(bars, 3); // of the table, two; of the details
    const auto& split = part<QSplitter>("split");
    EXPECT_GE(seenPixels(split.handle(1)->grab().toImage()), 24);
    resources.setHighContrast(false);
}

TEST_P(ContrastTest, TheAboutPanelCanBeRead) {
    controller().aboutApp();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* panel = qobject_cast<AboutPanel*>(widget)) {
            expectLegible(*panel);
        }
    }
}

TEST_P(ContrastTest, TheNotificationsCanBeRead) {
    notifications.add({.title = QStringLiteral("MMMM"),
                       .subtitle = QStringLiteral("MMMM"),
                       .message = QStringLiteral("MMMM"),
                       .picture = {},
                       .link = QStringLiteral("https://korvale.example/")},
                      true);
    controller().showNotifications();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<NotificationsWindow*>(widget)) {
            expectLegible(*window);
        }
    }
}

TEST_P(ContrastTest, AButtonThatCannotBePressedLooksUnlikeOneThatCan) {
    LinkButton button;
    button.setPalette(windowPalette(GetParam().isDark, GetParam().isHighContrast));
    button.setText(QStringLiteral("MMMM"));
    button.resize(button.sizeHint());
    const QImage canBePressed = button.grab().toImage();
    button.setEnabled(false);
    EXPECT_NE(button.grab().toImage(), canBePressed);
}

/// What is not on the screen now: tooltips, menus, what is disabled.
TEST_P(ContrastTest, EveryTextOfThePaletteCanBeReadOnItsBackground) {
    const QPalette palette = windowPalette(GetParam().isDark, GetParam().isHighContrast);
    using P = QPalette;
    for (const auto& [text, background] :
         {std::pair{P::WindowText, P::Window}, std::pair{P::Text, P::Base},
          std::pair{P::Text, P::AlternateBase}, std::pair{P::ButtonText, P::Button},
          std::pair{P::PlaceholderText, P::Window}, std::pair{P::PlaceholderText, P::Base},
          std::pair{P::HighlightedText, P::Highlight}, std::pair{P::Link, P::Window},
          std::pair{P::LinkVisited, P::Window}, std::pair{P::ToolTipText, P::ToolTipBase}}) {
        for (const auto group : {P::Active, P::Inactive, P::Disabled}) {
            EXPECT_GE(
                contrast(palette.color(group, text).rgb(), palette.color(group, background).rgb()),
                leastContrast)
                << text << " in group " << group;
        }
    }
}

TEST_P(ContrastTest, TheEmptyCheckBoxesOfTheMenuCanBeSeen) {
    QMenu& submenu = *statusMenu.addMenu(QStringLiteral("MMMM"));
    for (QMenu* menu : {&statusMenu, &submenu}) {
        auto* item = new MarkedAction(menu);
        item->setText(QStringLiteral("MMMM"));
        menu->addAction(item);
        controller().dressStatusMenu();
        for (const bool highContrast : {false, true}) {
            resources.setHighContrast(highContrast);
            for (QAction* current : {static_cast<QAction*>(nullptr), static_cast<QAction*>(item)}) {
                menu->popup(QPoint());
                menu->setActiveAction(current);
                QApplication::processEvents();
                QRect box = menu->actionGeometry(item).adjusted(1, 1, -1, -1);
                box.setWidth(box.height()); // without the text
                // Four sides of ten pixels, and nothing in the middle.
                EXPECT_GE(seenPixels(menu->grab(box).toImage()), 36)
                    << "high contrast: " << highContrast << ", current: " << (current != nullptr);
                menu->hide();
            }
        }
    }
}

TEST_P(ContrastTest, WithHighContrastAMenuHasAFrame) {
    statusMenu.addAction(QStringLiteral("MMMM"));
    controller().dressStatusMenu();
    resources.setHighContrast(true);
    statusMenu.popup(QPoint());
    QApplication::processEvents();
    const QImage menu = statusMenu.grab().toImage();
    const QRgb ground = windowPalette(GetParam().isDark, true).color(QPalette::Window).rgb();
    for (const QPoint& edge : {QPoint(0, menu.height() / 2), QPoint(menu.width() - 1, 9),
                               QPoint(menu.width() / 2, 0), QPoint(9, menu.height() - 1)}) {
        EXPECT_GE(contrast(menu.pixel(edge), ground), leastShapeContrast) << edge.x();
    }
    statusMenu.hide();
}

TEST_P(ContrastTest, WithHighContrastEverythingIsBlackAndWhite) {
    resources.setHighContrast(true);
    QWidget& window = roomyWindow();
    controller().updateDisplay();
    expectLegible(window);
    const bool isDark = GetParam().isDark;
    const QColor ground(isDark ? Qt::black : Qt::white);
    EXPECT_EQ(window.palette().color(QPalette::Window), ground);
    EXPECT_EQ(window.grab().toImage().pixelColor(3, 3), ground);
    EXPECT_EQ(part<QLabel>("deviceName").palette().color(QPalette::PlaceholderText),
              QColor(isDark ? Qt::white : Qt::black));
    resources.setHighContrast(false);
    EXPECT_EQ(window.palette().color(QPalette::Window),
              windowPalette(isDark).color(QPalette::Window));
}

INSTANTIATE_TEST_SUITE_P(Looks, ContrastTest,
                         testing::Values(Look{"Light", false, false}, Look{"Dark", true, false},
                                         Look{"LightHighContrast", false, true},
                                         Look{"DarkHighContrast", true, true}),
                         [](const auto& look) { return look.param.name; });

} // namespace
} // namespace korvale
