#include "platform/SafeText.h"

#include <QLatin1String>

#include <algorithm>

namespace korvale {
namespace {

constexpr qsizetype longestLine = 2048;
constexpr qsizetype longestTrayStart = 200;
constexpr qsizetype longestTrayEnd = 80;
constexpr char16_t ellipsis = u'\u2026';
constexpr char16_t replacement = u'\ufffd';

struct Range {
    char32_t first;
    char32_t last;
};

// Invisible characters of the Unicode standard, ascending: soft hyphen, direction marks and
// overrides (UAX 9), fillers without ink, zero-width spaces, line and paragraph separators,
// annotation marks, tags. Not among them: U+200C and U+200D, which real scripts need.
constexpr Range deceptive[] = {
    {0x00AD, 0x00AD}, {0x061C, 0x061C}, {0x115F, 0x1160}, {0x17B4, 0x17B5},  {0x180E, 0x180E},
    {0x200B, 0x200B}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},  {0x3164, 0x3164},
    {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};

bool isControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

bool isDeceptive(char32_t c) {
    return c >= deceptive[0].first &&
           std::any_of(std::begin(deceptive), std::end(deceptive),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
}

/// True for texts that certainly show as they are; most do.
bool isHarmless(QStringView text) {
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        return isControl(c.unicode()) || isDeceptive(c.unicode()) || c.isSurrogate();
    });
}

// By number: few fonts have pictures of control characters.
void appendNumber(char32_t c, QString& text) {
    text +=
        QStringLiteral("[U+%1]").arg(QString::number(uint{c}, 16).toUpper(), 4, QLatin1Char('0'));
}

void appendVisibly(char32_t c, QString& text) {
    if (QChar::isSurrogate(c)) {
        text += replacement;
    } else if (isControl(c) || isDeceptive(c)) {
        appendNumber(c, text);
    } else {
        text += QChar::fromUcs4(c);
    }
}

/// `text` with everything made visible but the characters of `kept`.
QString visible(QStringView text, QStringView kept) {
    if (isHarmless(text)) {
        return text.toString();
    }
    QString result;
    result.reserve(text.size() + 16);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (kept.contains(unit)) {
            result += unit;
        } else if (isPair) {
            appendVisibly(QChar::surrogateToUcs4(unit, text[++i]), result);
        } else {
            appendVisibly(unit.unicode(), result);
        }
    }
    return result;
}

/// At most `longest` units, and no half of a pair at the cut.
QStringView start(QStringView text, qsizetype longest) {
    QStringView cut = text.left(longest);
    if (cut.size() < text.size() && cut.back().isHighSurrogate()) {
        cut.chop(1);
    }
    return cut;
}

} // namespace

QString singleLineText(const QString& text) {
    const QString shown = visible(start(text, longestLine), {});
    return text.size() > longestLine ? shown + ellipsis : shown;
}

QString wholeLineText(const QString& text, bool& isCut) {
    QString shown = visible(start(text, longestShownText), {});
    if (text.size() <= longestShownText) {
        return shown;
    }
    isCut = true;
    return shown + ellipsis;
}

QString severalLinesText(const QString& text) {
    QString shown = start(text, longestShownText).toString();
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown = visible(shown, u"\n\t");
    return text.size() > longestShownText ? shown + ellipsis : shown;
}

QString unbrokenText(const QString& text) {
    const auto breaks = [](QChar c) {
        return isControl(c.unicode()) || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    if (std::none_of(text.begin(), text.end(), breaks)) {
        return text;
    }
    QString result;
    for (const QChar c : text) {
        if (breaks(c)) {
            appendNumber(c.unicode(), result);
        } else {
            result += c;
        }
    }
    return result;
}

QString toolTipMarkup(const QString& text) {
    if (text.isEmpty()) {
        return {};
    }
    return QLatin1String("<div style='white-space:pre-wrap'>") +
           severalLinesText(text).toHtmlEscaped() + QLatin1String("</div>");
}

QString trayToolTip(const QString& text) {
    static constexpr QChar wordJoiner = u'\u2060'; // invisible, without width
    QString cut = text;
    if (text.size() > longestTrayStart + longestTrayEnd) {
        cut = start(text, longestTrayStart).toString() + ellipsis + text.last(longestTrayEnd);
    }
    // Any line feed but the program's own is the device name's.
    const qsizetype lineEnd = cut.indexOf(u'\n');
    QString shown = visible(QStringView(cut).left(std::max<qsizetype>(lineEnd, 0)), {});
    if (lineEnd >= 0) {
        shown += u'\n';
    }
    shown += visible(QStringView(cut).mid(lineEnd + 1), {});
    for (const char16_t mark : {u'<', u'&'}) {
        shown.replace(QChar(mark), QString(QChar(mark)) + wordJoiner);
    }
    return shown;
}

} // namespace korvale
