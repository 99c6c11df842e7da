#include "tables/SafeText.h"

#include <QLatin1String>

#include <algorithm>

namespace korvale {
namespace {

constexpr qsizetype maximumCellLength = 2048;
constexpr qsizetype maximumToolTipLength = 4096;
constexpr char16_t ellipsis = u'\u2026';

struct UnitRange {
    char16_t first;
    char16_t last;
};

// Beside controls: zero-width and direction characters of the Unicode standard (UAX 9), and its
// line and paragraph separators. The joiners of real scripts (U+200C, U+200D) are left alone.
constexpr UnitRange deceptive[] = {{0x061C, 0x061C}, {0x200B, 0x200B}, {0x200E, 0x200F},
                                   {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}};

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

bool isDeceptive(char16_t unit) {
    return unit >= 0x061C &&
           std::any_of(std::begin(deceptive), std::end(deceptive), [unit](const UnitRange& range) {
               return unit >= range.first && unit <= range.last;
           });
}

bool needsCare(QChar c) {
    return isControl(c.unicode()) || isDeceptive(c.unicode());
}

// By number: few fonts have pictures of control characters.
void appendVisibly(char16_t unit, QString& text) {
    text += QStringLiteral("[U+%1]").arg(QString::number(unit, 16).toUpper(), 4, QChar(u'0'));
}

QString visible(QStringView text, bool keepLineFeeds) {
    QString result;
    result.reserve(text.size() + 16);
    for (const QChar c : text) {
        if (!needsCare(c) || (keepLineFeeds && c == u'\n')) {
            result += c;
        } else {
            appendVisibly(c.unicode(), result);
        }
    }
    return result;
}

} // namespace

QString singleLineText(const QString& text) {
    const bool tooLong = text.size() > maximumCellLength;
    if (!tooLong && std::none_of(text.begin(), text.end(), needsCare)) {
        return text;
    }
    QString shown = visible(QStringView(text).left(maximumCellLength), false);
    if (tooLong) {
        shown += QChar(ellipsis);
    }
    return shown;
}

QString toolTipMarkup(const QString& text) {
    if (text.isEmpty()) {
        return {};
    }
    QString shown = visible(QStringView(text).left(maximumToolTipLength), true);
    if (text.size() > maximumToolTipLength) {
        shown += QChar(ellipsis);
    }
    return QLatin1String("<div style='white-space:pre-wrap'>") + shown.toHtmlEscaped() +
           QLatin1String("</div>");
}

} // namespace korvale
