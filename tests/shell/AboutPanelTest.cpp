#include "shell/AboutPanel.h"

#include "shell/WindowFixture.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

namespace korvale {
namespace {

class AboutPanelTest : public WindowFixture {
protected:
    static std::vector<AboutPanel*> panels() {
        std::vector<AboutPanel*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* panel = qobject_cast<AboutPanel*>(widget)) {
                found.push_back(panel);
            }
        }
        return found;
    }

    AboutPanel& shownPanel() {
        controller().aboutApp();
        QApplication::processEvents();
        if (panels().size() != 1) {
            throw std::runtime_error("not one About panel");
        }
        return *panels().front();
    }

    static QString credits(const AboutPanel& panel) {
        return panel.findChild<QPlainTextEdit*>()->toPlainText();
    }
};

TEST_F(AboutPanelTest, ShowsNameVersionAndCreditsWithoutTheDetailsWindow) {
    state.policyName = QStringLiteral("<b>Office</b>");
    const AboutPanel& panel = shownPanel();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_FALSE(panel.isModal());
    EXPECT_EQ(controller().window(), nullptr);
    QStringList texts;
    for (const QLabel* label : panel.findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(u"KorvaleUI"));
    EXPECT_EQ(credits(panel), u"AboutPolicy <b>Office</b>  ()\nAboutPolicyLastUpdated ");
    EXPECT_TRUE(panel.findChild<QPlainTextEdit*>()->isReadOnly());
}

TEST_F(AboutPanelTest, HasATitleOfItsOwnForListsOfWindows) {
    EXPECT_EQ(shownPanel().windowTitle(), u"About");
    EXPECT_EQ(shownWindow().windowTitle(), u"KorvaleUI");
}

TEST_F(AboutPanelTest, AskedForAgainItShowsWhatIsKnownThen) {
    const AboutPanel& panel = shownPanel();
    state.sondarVersionNumberString = QStringLiteral("3.1");
    EXPECT_EQ(&shownPanel(), &panel);
    EXPECT_TRUE(credits(panel).startsWith(u"SONDAR Version : 3.1\nAboutPolicy"));
}

TEST_F(AboutPanelTest, EscapeAndControlWCloseIt) {
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        shownPanel();
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(panels().empty());
    }
}

TEST_F(AboutPanelTest, FollowsTheAppearanceWithoutTheDetailsWindow) {
    resources.initialize();
    const AboutPanel& panel = shownPanel();
    const int light = panel.palette().color(QPalette::Window).lightness();
    appearance.set(QStringLiteral("Dark"));
    EXPECT_LT(panel.palette().color(QPalette::Window).lightness(), light);
}

TEST_F(AboutPanelTest, VeryLongTextsStayInsideIt) {
    const int height = shownPanel().height();
    state.policyName = QStringLiteral("long <i>policy</i> name ").repeated(20000);
    state.policyMode = QStringLiteral("W").repeated(5000);
    const AboutPanel& panel = shownPanel();
    EXPECT_EQ(panel.height(), height);
    EXPECT_LT(panel.width(), 600);
}

} // namespace
} // namespace korvale
