// What must hold of every text that the JSON parser accepts.
#include "model/JsonFingerprint.h"
#include "model/JsonValue.h"
#include "model/Values.h"

#include <cstdlib>

namespace {

using korvale::JsonValue;

/// What is shown of a value is JSON again, and stays the same when it is shown once more.
void checkCompactForm(const JsonValue& value) {
    const QString compact = korvale::valueText(value);
    const auto again = JsonValue::parse(compact.toUtf8());
    if (!again || korvale::valueText(*again) != compact) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto value = JsonValue::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!value) {
        return 0;
    }
    const auto same = JsonValue::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!same || korvale::jsonFingerprint(*value->document(), 0) !=
                     korvale::jsonFingerprint(*same->document(), 0)) {
        std::abort();
    }
    (void)korvale::integerValue((*value)["State"]);
    (void)korvale::booleanValue((*value)["State"]);
    checkCompactForm(*value);
    return 0;
}
