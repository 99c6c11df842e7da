#include "platform/SafeText.h"

#include <QTextDocument>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

struct Case {
    QString text;
    QString shown;
};

TEST(SafeText, ACellShowsOneHonestLine) {
    const Case cases[] = {
        {u"/home/me/plain.txt"_s, u"/home/me/plain.txt"_s},
        {u"two\nlines\tand a tab"_s, u"two[U+000A]lines[U+0009]and a tab"_s},
        {u"esc\u001b[31m"_s, u"esc[U+001B][31m"_s},
        {QString(QChar(u'\0')), u"[U+0000]"_s},
        {u"\u007f\u0085"_s, u"[U+007F][U+0085]"_s},
        {u"photo\u202egpj.exe"_s, u"photo[U+202E]gpj.exe"_s},
        {u"a\u2066b\u2069\u200f\u061c"_s, u"a[U+2066]b[U+2069][U+200F][U+061C]"_s},
        {u"hidden\u200b\ufeff"_s, u"hidden[U+200B][U+FEFF]"_s},
        {u"line\u2028paragraph\u2029"_s, u"line[U+2028]paragraph[U+2029]"_s},
        {u"soft\u00adhyphen filler\u3164 note\ufff9"_s,
         u"soft[U+00AD]hyphen filler[U+3164] note[U+FFF9]"_s},
        {u"tag\U000E0041"_s, u"tag[U+E0041]"_s},
        // What real scripts need stays as it is.
        {u"\u05de\u05e1\u05de\u05da.pdf \u0646\u0645\u06cc\u200c\u062e"_s,
         u"\u05de\u05e1\u05de\u05da.pdf \u0646\u0645\u06cc\u200c\u062e"_s},
        {u"\U0001F469\u200d\U0001F4BB \u2764\ufe0f"_s,
         u"\U0001F469\u200d\U0001F4BB \u2764\ufe0f"_s},
        {u"<b>bold</b> &amp;"_s, u"<b>bold</b> &amp;"_s},
    };
    for (const Case& entry : cases) {
        EXPECT_EQ(singleLineText(entry.text), entry.shown);
    }
}

TEST(SafeText, HalfAPairIsTheReplacementCharacter) {
    const QString halves = QString(QChar(0xD83D)) + u'a' + QChar(0xDE00);
    EXPECT_EQ(singleLineText(halves), u"\ufffda\ufffd"_s);
    // Nor does cutting make one.
    const QString shown = singleLineText(QString(2047, u'x') + u"\U0001F600\U0001F600"_s);
    EXPECT_EQ(shown, QString(2047, u'x') + u"\u2026"_s);
}

TEST(SafeText, SeveralLinesKeepTheirBreaksAndNothingElse) {
    EXPECT_EQ(severalLinesText(u"a\r\nb\n\tc\u202e\u0007"_s), u"a\nb\n\tc[U+202E][U+0007]"_s);
}

TEST(SafeText, AnEndlessTextIsCut) {
    const QString shown = singleLineText(QString(10'000'000, u'x'));
    EXPECT_LT(shown.size(), 3000);
    EXPECT_TRUE(shown.endsWith(u'\u2026'));
    EXPECT_LT(toolTipMarkup(QString(10'000'000, u'x')).size(), 6000);
}

TEST(SafeText, AToolTipShowsMarkupLetterByLetter) {
    const QString text = QStringLiteral("<img src='/etc/x'><b>a</b>\n\n&lt; %1 \u202e");
    QTextDocument document;
    document.setHtml(toolTipMarkup(text));
    QString shown = text;
    shown.replace(QChar(u'\u202e'), QStringLiteral("[U+202E]"));
    EXPECT_EQ(document.toPlainText(), shown);
}

TEST(SafeText, NoTextIsNoToolTip) {
    EXPECT_TRUE(toolTipMarkup(QString()).isEmpty());
    EXPECT_TRUE(trayToolTip(QString()).isEmpty());
}

TEST(SafeText, ATrayToolTipIsNeverMarkupAndHasOneBreak) {
    const Case cases[] = {
        {u"Product\nhost: Safe"_s, u"Product\nhost: Safe"_s},
        {u"P\n<b>x</b> &amp;: Safe"_s, u"P\n<\u2060b>x<\u2060/b> &\u2060amp;: Safe"_s},
        {u"P\nhost\nP: Safe\t\u202eefas: Unsafe"_s,
         u"P\nhost[U+000A]P: Safe[U+0009][U+202E]efas: Unsafe"_s},
        {u"P\n\U0001F600\u00e9\u65e5: Safe"_s, u"P\n\U0001F600\u00e9\u65e5: Safe"_s},
    };
    for (const Case& entry : cases) {
        EXPECT_EQ(trayToolTip(entry.text), entry.shown);
    }
}

TEST(SafeText, ALongDeviceNameLeavesTheStateReadableInTheTray) {
    const QString shown = trayToolTip(u"Product\n"_s + QString(100000, u'x') + u": Unsafe"_s);
    EXPECT_LT(shown.size(), 400);
    EXPECT_TRUE(shown.startsWith(QLatin1String("Product\nxxx")));
    EXPECT_TRUE(shown.endsWith(QLatin1String("xxx: Unsafe")));
}

} // namespace
} // namespace korvale
