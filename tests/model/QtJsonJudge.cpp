#include "QtJsonJudge.h"

#include "model/Values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdlib>
#include <string>

namespace korvale {
namespace {

QString withoutHalves(const QString& text) {
    const std::u32string characters = text.toStdU32String();
    return QString::fromUcs4(characters.data(), static_cast<qsizetype>(characters.size()));
}

/// Of a text in UTF-8 the judge drops a byte order mark in front; of an escaped one it does not.
QString withoutMark(const QString& text) {
    return text.startsWith(QChar::ByteOrderMark) ? text.mid(1) : text;
}

bool sameElements(const JsonValue& ours, const QJsonArray& theirs) {
    if (ours.size() != static_cast<std::size_t>(theirs.size())) {
        return false;
    }
    qsizetype index = 0;
    for (const JsonValue& element : ours.elements()) {
        if (!meansTheSame(element, theirs.at(index++))) {
            return false;
        }
    }
    return true;
}

bool sameMembers(const JsonValue& ours, const QJsonObject& theirs) {
    bool isComparable = true;
    for (const JsonMember& member : ours.members()) {
        const QString name = *textOnly(member.name);
        // Names that the judge reads otherwise may be one to it, or several.
        if (name.contains(QChar::ReplacementCharacter) || name != withoutMark(name)) {
            isComparable = false;
        } else if (!meansTheSame(member.value, theirs.value(name))) {
            return false;
        }
    }
    return !isComparable || ours.size() == static_cast<std::size_t>(theirs.size());
}

} // namespace

QJsonValue judged(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isObject()) {
        return document.object();
    }
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(QJsonValue::Undefined);
}

QByteArray withoutListed(const QByteArray& text) {
    QByteArray result;
    bool inString = false;
    for (qsizetype i = text.startsWith("\xEF\xBB\xBF") ? 3 : 0; i < text.size(); ++i) {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (!inString) {
            inString = c == '"';
            if (c == '.' && (result.isEmpty() || result.back() < '0' || result.back() > '9')) {
                result += '0';
            }
            result += c;
            if (c == '.' && (next < '0' || next > '9')) {
                result += '0';
            }
        } else if (c == '\\') {
            ++i;
            const bool known = QByteArrayView("\"\\/bfnrtu").contains(next);
            result += known ? QByteArray("\\") + next : QByteArray("?");
        } else {
            inString = c != '"';
            result += c >= 0 && c < 0x20 ? '?' : c;
        }
    }
    return result;
}

bool meansTheSame(const JsonValue& ours, const QJsonValue& theirs) {
    switch (ours.kind()) {
    case JsonKind::Null:
        return theirs.isNull();
    case JsonKind::False:
    case JsonKind::True:
        return theirs.isBool() && (ours.kind() == JsonKind::True) == theirs.toBool();
    case JsonKind::Number:
        return std::strtod(std::string(ours.utf8()).c_str(), nullptr) == theirs.toDouble(NAN);
    case JsonKind::Text:
        return withoutMark(*textOnly(ours)) == withoutMark(withoutHalves(theirs.toString()));
    case JsonKind::List:
        return theirs.isArray() && sameElements(ours, theirs.toArray());
    case JsonKind::Object:
        break;
    }
    return theirs.isObject() && sameMembers(ours, theirs.toObject());
}

} // namespace korvale
