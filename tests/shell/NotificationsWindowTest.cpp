#include "shell/NotificationsWindow.h"

#include "fakes/WaitUntil.h"
#include "platform/NotificationServer.h"
#include "shell/LinkButton.h"
#include "shell/NotificationEntry.h"
#include "shell/WindowFixture.h"
#include "shell/WrappedLabel.h"

#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace korvale {
namespace {

class NotificationsWindowTest : public WindowFixture {
protected:
    void say(const QString& message, const QString& link = {}, bool isHeldBack = false) {
        notifications.add({.title = QStringLiteral("Title of ") + message,
                           .subtitle = {},
                           .message = message,
                           .picture = {},
                           .link = link},
                          isHeldBack);
    }

    static std::vector<NotificationsWindow*> windows() {
        std::vector<NotificationsWindow*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<NotificationsWindow*>(widget)) {
                found.push_back(window);
            }
        }
        return found;
    }

    /// The one window, with what the file held.
    NotificationsWindow& shown() {
        controller().showNotifications();
        if (windows().size() != 1) {
            throw std::runtime_error("not one window");
        }
        NotificationsWindow& window = *windows().front();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_TRUE(waitUntil([this] { return notifications.isLoaded(); }));
        QApplication::processEvents();
        return window;
    }

    /// From the top down.
    static QList<NotificationEntry*> entries(const QWidget& window) {
        QList<NotificationEntry*> found = window.findChildren<NotificationEntry*>();
        std::sort(found.begin(), found.end(),
                  [](const QWidget* a, const QWidget* b) { return a->y() < b->y(); });
        return found;
    }
    static WrappedLabel& body(const QWidget& entry) {
        return *entry.findChild<WrappedLabel*>(QStringLiteral("notificationText"));
    }
    static QStringList texts(const QWidget& window) {
        QStringList found;
        for (const NotificationEntry* entry : entries(window)) {
            found.append(body(*entry).text());
        }
        return found;
    }
};

TEST_F(NotificationsWindowTest, TheButtonAndControlNOpenIt) {
    MainWindow& window = shownWindow();
    QTest::keyClick(&part<LinkButton>("notificationsButton"), Qt::Key_Return);
    ASSERT_EQ(windows().size(), 1U);
    EXPECT_EQ(windows().front()->windowTitle(), u"HPS_Notifications");
    EXPECT_FALSE(windows().front()->isModal());
    delete windows().front();
    controller().showDetails();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(windows().size(), 1U);
    controller().showNotifications();
    EXPECT_EQ(windows().size(), 1U);
}

TEST_F(NotificationsWindowTest, ShowsTheNewestFirstWithTitleAndTime) {
    say(QStringLiteral("first"));
    say(QStringLiteral("second"));
    const NotificationsWindow& window = shown();
    EXPECT_EQ(texts(window), (QStringList{QStringLiteral("second"), QStringLiteral("first")}));
    const NotificationEntry& newest = *entries(window).constFirst();
    QStringList labels;
    for (const QLabel* label : newest.findChildren<QLabel*>()) {
        labels.append(label->text());
    }
    EXPECT_TRUE(labels.contains(u"Title of second"));
    const QString year = QString::number(QDate::currentDate().year() % 100);
    EXPECT_FALSE(labels.filter(year).isEmpty()) << "when it was";
    EXPECT_TRUE(body(newest).accessibleDescription().startsWith(u"Title of second, "));
    EXPECT_FALSE(window.findChild<QLabel*>(QStringLiteral("noNotificationsLbl"))->isVisible());
}

TEST_F(NotificationsWindowTest, TellsWhichWereHeldBack) {
    say(QStringLiteral("shown"));
    say(QStringLiteral("held"), {}, true);
    const NotificationsWindow& window = shown();
    EXPECT_TRUE(
        body(*entries(window)[0]).accessibleDescription().endsWith(u"HPS_NotificationHeldBack"));
    EXPECT_FALSE(
        body(*entries(window)[1]).accessibleDescription().contains(u"HPS_NotificationHeldBack"));
    EXPECT_EQ(entries(window)[0]->findChildren<WrappedLabel*>().size(), 2);
    EXPECT_EQ(entries(window)[1]->findChildren<WrappedLabel*>().size(), 1);
}

TEST_F(NotificationsWindowTest, ALinkIsAButtonThatOpensIt) {
    say(QStringLiteral("none"));
    say(QStringLiteral("one"), QStringLiteral("https://korvale.example/?a=1&amp;b=2"));
    const NotificationsWindow& window = shown();
    EXPECT_EQ(entries(window)[1]->findChild<LinkButton*>(), nullptr);
    auto* button = entries(window)[0]->findChild<LinkButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), u"NotificationActionOpenLink");
    EXPECT_EQ(button->accessibleDescription(), u"https://korvale.example/?a=1&amp;b=2");
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(links.opened, QStringList{QStringLiteral("https://korvale.example/?a=1&amp;b=2")});
}

TEST_F(NotificationsWindowTest, NothingInATextMisleads) {
    say(QStringLiteral("<b>a</b>\u202Egpj.exe\x1b"));
    const NotificationsWindow& window = shown();
    EXPECT_EQ(texts(window), QStringList{QStringLiteral("<b>a</b>[U+202E]gpj.exe[U+001B]")});
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
    }
}

TEST_F(NotificationsWindowTest, AWordWiderThanTheWindowIsBroken) {
    say(QStringLiteral("x"));
    say(QString(3000, u'W'));
    const NotificationsWindow& window = shown();
    EXPECT_LE(window.width(), 600);
    const auto& area = *window.findChild<QScrollArea*>();
    EXPECT_LE(area.widget()->width(), area.viewport()->width());
    EXPECT_GT(body(*entries(window)[0]).height(), 20 * body(*entries(window)[1]).height() / 2);
}

/// The columns of a text in which there is something of it, first and last.
std::pair<int, int> inkOf(WrappedLabel& label) {
    const QImage picture = label.grab().toImage();
    int first = picture.width();
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixel(x, y) != picture.pixel(0, 0)) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    return {first, last};
}

TEST_F(NotificationsWindowTest, TextsBeginWhereTheLanguageBegins) {
    WrappedLabel label(QStringLiteral("/tmp/x"));
    label.resize(400, 40);
    EXPECT_LT(inkOf(label).second, 200);
    label.setLayoutDirection(Qt::RightToLeft);
    EXPECT_GT(inkOf(label).first, 200);
}

TEST_F(NotificationsWindowTest, OneThatComesStandsOnTopAndMovesNothingThatIsRead) {
    for (int number = 0; number < 200; ++number) {
        say(QString::number(number));
    }
    const NotificationsWindow& window = shown();
    ASSERT_EQ(entries(window).size(), 200);
    QScrollBar& bar = *window.findChild<QScrollArea*>()->verticalScrollBar();
    WrappedLabel& read = body(*entries(window)[100]);
    read.setFocus();
    bar.setValue(bar.maximum() / 2);
    const QPoint place = read.mapTo(&window, QPoint());
    say(QStringLiteral("news"));
    ASSERT_TRUE(waitUntil([&] { return texts(window).constFirst() == u"news"; }));
    ASSERT_TRUE(waitUntil([&] { return read.mapTo(&window, QPoint()) == place; }));
    EXPECT_TRUE(read.hasFocus());
    EXPECT_EQ(entries(window).size(), 200);
    EXPECT_EQ(texts(window).constLast(), u"1") << "the oldest went for it";
}

TEST_F(NotificationsWindowTest, ClearingEmptiesIt) {
    say(QStringLiteral("a"));
    const NotificationsWindow& window = shown();
    auto& clear = *window.findChild<QPushButton*>();
    EXPECT_TRUE(clear.isEnabled());
    QTest::keyClick(&clear, Qt::Key_Space);
    EXPECT_TRUE(entries(window).isEmpty());
    EXPECT_TRUE(notifications.records().isEmpty());
    EXPECT_FALSE(clear.isEnabled());
    EXPECT_TRUE(window.findChild<QLabel*>(QStringLiteral("noNotificationsLbl"))->isVisible());
    say(QStringLiteral("b"));
    EXPECT_EQ(texts(window), QStringList{QStringLiteral("b")});
    EXPECT_TRUE(clear.isEnabled());
}

TEST_F(NotificationsWindowTest, TabReachesEachTextAndEachLinkAndCopyTakesTheText) {
    say(QStringLiteral("older\nlines"));
    say(QStringLiteral("newer"), QStringLiteral("https://korvale.example/"));
    NotificationsWindow& window = shown();
    QStringList reached;
    for (int step = 0; step < 6; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QWidget* focus = QApplication::focusWidget();
        if (const auto* label = qobject_cast<const WrappedLabel*>(focus)) {
            reached.append(label->text());
        } else if (qobject_cast<const LinkButton*>(focus) != nullptr) {
            reached.append(QStringLiteral("link"));
        }
    }
    EXPECT_TRUE(reached.join(u'|').contains(u"newer|link|older\nlines"))
        << reached.join(u'|').toStdString();
    body(*entries(window)[1]).setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"older\nlines");
}

TEST_F(NotificationsWindowTest, EscapeAndControlWCloseIt) {
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        QTest::keyClick(&shown(), key, modifiers);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(windows().empty());
    }
}

TEST_F(NotificationsWindowTest, FollowsTheAppearanceWithoutTheDetailsWindow) {
    resources.initialize();
    const NotificationsWindow& window = shown();
    const int light = window.palette().color(QPalette::Window).lightness();
    appearance.set(QStringLiteral("Dark"));
    EXPECT_LT(window.palette().color(QPalette::Window).lightness(), light);
}

} // namespace
} // namespace korvale
