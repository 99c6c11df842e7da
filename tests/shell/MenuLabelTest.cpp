#include "shell/MenuLabel.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

/// What Qt hands to the panel: its first ampersand, unless it is the last character, becomes the
/// panel's mark of a mnemonic.
QString onTheBus(QString label) {
    const qsizetype ampersand = label.indexOf(u'&');
    if (ampersand >= 0 && ampersand < label.size() - 1) {
        label[ampersand] = u'_';
    }
    return label;
}

/// What a panel shows: a doubled underscore is one, a single one marks the next character.
QString shownByPanel(const QString& label) {
    QString shown;
    for (qsizetype i = 0; i < label.size(); ++i) {
        if (label.at(i) == u'_' && ++i >= label.size()) {
            break;
        }
        shown += label.at(i);
    }
    return shown;
}

/// What Qt shows: a doubled ampersand is one, a single one marks the next character.
QString shownByToolkit(QString label) {
    static constexpr QChar underscore = u'\x1'; // stands aside meanwhile
    label.replace(u'_', underscore).replace(u'&', u'_');
    return shownByPanel(label).replace(u'_', u'&').replace(underscore, u'_');
}

class MenuLabels : public testing::TestWithParam<const char*> {};

TEST_P(MenuLabels, ShowExactlyTheirText) {
    const QString text = QString::fromUtf8(GetParam());
    EXPECT_EQ(shownByToolkit(menuLabel(text, MenuRenderer::Toolkit)), text);
    EXPECT_EQ(shownByPanel(onTheBus(menuLabel(text, MenuRenderer::Panel))), text);
}

INSTANTIATE_TEST_SUITE_P(Texts, MenuLabels,
                         testing::Values("", "Show Details", "TM_Warning", "A & B", "A &B", "_a_",
                                         "_&", "a&", "__"));

TEST(MenuLabel, PlainTextsAreThemselves) {
    EXPECT_EQ(menuLabel(QStringLiteral("Quit"), MenuRenderer::Panel), QStringLiteral("Quit"));
    EXPECT_EQ(menuLabel(QStringLiteral("Quit"), MenuRenderer::Toolkit), QStringLiteral("Quit"));
}

} // namespace
} // namespace korvale
