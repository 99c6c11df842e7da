// What must hold of every text that the JSON parser accepts, and that it accepts the same texts as
// an outside judge, but for the differences that JsonJudgesTest lists.

#include "Target.h"
#include "model/JsonFingerprint.h"
#include "model/JsonValue.h"
#include "model/QtJsonJudge.h"
#include "model/Values.h"

#include <cerrno>
#include <cstdlib>
#include <string>

using namespace korvale;

namespace {

/// What is shown of a value is JSON again, and stays the same when it is shown once more.
void checkCompactForm(const JsonValue& value) {
    const QString compact = valueText(value);
    const auto again = JsonValue::parse(compact.toUtf8());
    fuzz::require(again && valueText(*again) == compact);
}

bool isBeyondDoubles(const std::string& number) {
    errno = 0;
    static_cast<void>(std::strtod(number.c_str(), nullptr));
    return errno == ERANGE;
}

/// A number that the judge cannot hold.
bool hasExtremeNumber(const JsonDocument& document) {
    const std::uint32_t end = document.behind(0);
    for (std::uint32_t index = 0; index < end; ++index) {
        const JsonNode node = document.nodes[index];
        if (node.kind == JsonKind::Number && isBeyondDoubles(std::string(document.view(node)))) {
            return true;
        }
    }
    return false;
}

/// Nested deeper than the program reads, and not too deep for the judge.
bool mayBeTooDeep(const QByteArray& text) {
    return text.count('[') + text.count('{') > 512;
}

void hearTheJudge(const QByteArray& text, const std::optional<JsonValue>& ours) {
    const QJsonValue theirs = judged(text);
    if (!ours) {
        fuzz::require(theirs.isUndefined() || mayBeTooDeep(text) ||
                      JsonValue::parse(withoutListed(text)));
    } else if (theirs.isUndefined()) {
        fuzz::require(hasExtremeNumber(*ours->document()));
    } else {
        fuzz::require(meansTheSame(*ours, theirs));
    }
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text = QByteArrayView(data, static_cast<qsizetype>(size)).toByteArray();
    const auto value = JsonValue::parse(text);
    hearTheJudge(text, value);
    if (!value) {
        return 0;
    }
    ++fuzz::taken;
    const auto same = JsonValue::parse(text);
    fuzz::require(same &&
                  jsonFingerprint(*value->document(), 0) == jsonFingerprint(*same->document(), 0));
    static_cast<void>(integerValue((*value)["State"]));
    static_cast<void>(booleanValue((*value)["State"]));
    checkCompactForm(*value);
    return 0;
}
