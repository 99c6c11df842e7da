#include "tables/SortKey.h"

#include <algorithm>

namespace korvale {
namespace {

void appendByte(unsigned value, std::string& key) {
    key.push_back(static_cast<char>(value));
}

// As UTF-8 does it, so that byte order is the order of the code units.
void appendUnit(char16_t unit, std::string& key) {
    if (unit < 0x80) {
        appendByte(unit, key);
    } else if (unit < 0x800) {
        appendByte(0xC0U | (unit >> 6U), key);
        appendByte(0x80U | (unit & 0x3FU), key);
    } else {
        appendByte(0xE0U | (unit >> 12U), key);
        appendByte(0x80U | ((unit >> 6U) & 0x3FU), key);
        appendByte(0x80U | (unit & 0x3FU), key);
    }
}

/// The value of a decimal digit of any script; -1 for everything else.
int digitOf(QChar character) {
    const char16_t unit = character.unicode();
    if (unit < 0x80) {
        return unit >= u'0' && unit <= u'9' ? unit - u'0' : -1;
    }
    return character.category() == QChar::Number_DecimalDigit ? character.digitValue() : -1;
}

// A number sorts where its digits would, then by how many digits it has, then by them.
void appendNumber(QStringView digits, std::string& key) {
    const auto isZero = [](QChar digit) { return digitOf(digit) == 0; };
    const QStringView significant =
        digits.mid(std::find_if_not(digits.begin(), digits.end(), isZero) - digits.begin());
    key.push_back('0');
    qsizetype length = significant.size();
    for (; length >= 0xFF; length -= 0xFF) {
        appendByte(0xFF, key);
    }
    appendByte(static_cast<unsigned>(length), key);
    for (const QChar digit : significant) {
        appendByte(static_cast<unsigned>('0' + digitOf(digit)), key);
    }
}

void appendNatural(QStringView text, bool lowerAscii, std::string& key) {
    for (qsizetype i = 0; i < text.size();) {
        if (digitOf(text[i]) < 0) {
            const char16_t unit = text[i].unicode();
            const bool upper = lowerAscii && unit >= u'A' && unit <= u'Z';
            appendUnit(upper ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit, key);
            ++i;
            continue;
        }
        qsizetype end = i + 1;
        while (end < text.size() && digitOf(text[end]) >= 0) {
            ++end;
        }
        appendNumber(text.mid(i, end - i), key);
        i = end;
    }
}

bool isAscii(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

void appendSortKey(const std::optional<QString>& text, std::string& key) {
    if (!text) {
        return;
    }
    key.push_back('\x01'); // even an empty text comes behind no value
    if (isAscii(*text)) {
        appendNatural(*text, true, key);
        return;
    }
    const QString folded = text->toCaseFolded();
    QString letters = folded.normalized(QString::NormalizationForm_KD);
    letters.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    appendNatural(letters, true, key);
    key.push_back('\0');
    appendNatural(folded, false, key);
}

} // namespace korvale
