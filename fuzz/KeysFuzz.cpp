// What files are grouped by, and the texts that are put together from others' texts.

#include "Target.h"
#include "core/base/TextFormat.h"
#include "model/FileThreatKeys.h"
#include "model/Values.h"
#include "platform/LeadingValue.h"
#include "platform/SafeText.h"

#include <vector>

using namespace korvale;

namespace {

/// The record's key as one text, put together the plain way.
QString plainKey(const JsonValue& record) {
    const JsonValue id = record["ID"];
    return QString::number(unsigned32Value(record["State"])) +
           (id.isNull() ? QString() : valueText(id));
}

struct Keys {
    FileThreatRows::Storage storage;
    std::vector<FileThreatKey> keys;
    std::vector<QString> plain;
};

void check(const Keys& all) {
    const FileThreatKeys keys(all.storage);
    for (std::size_t a = 0; a < all.keys.size(); ++a) {
        for (std::size_t b = 0; b < all.keys.size(); ++b) {
            const bool same = all.plain[a] == all.plain[b];
            fuzz::require(keys.equal(all.keys[a], all.keys[b]) == same);
            fuzz::require(!same || keys.hash(all.keys[a]) == keys.hash(all.keys[b]));
        }
    }
}

void checkTexts(const QString& text) {
    const QString shown = formatText(u"<%@>", {text});
    fuzz::require(shown == u'<' + text + u'>'); // never taken for a placeholder
    static_cast<void>(formatText(text, {text, QStringLiteral("%@")}));
    const QString line = singleLineText(text);
    fuzz::require(!line.contains(u'\n') && !line.contains(u'\x1b') && line.isValidUtf16());
    QString tray = trayToolTip(text);
    fuzz::require(tray.count(u'\n') <= 1 && !tray.contains(u'\x1b') && tray.isValidUtf16());
    tray.remove(QStringLiteral("<\u2060")).remove(QStringLiteral("&\u2060"));
    fuzz::require(!tray.contains(u'<') && !tray.contains(u'&')); // no tag or entity begins
    static_cast<void>(leadingInteger(text.toStdString()));
    static_cast<void>(leadingBoolean(text.toStdString()));
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t mostKeys = 40;
    const auto list = JsonValue::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!list) {
        return 0;
    }
    Keys all;
    all.storage.bytes = list->document()->bytes;
    for (const JsonMember& member : list->members()) {
        checkTexts(*textOnly(member.name));
        const JsonValue id = member.value["ID"];
        if (!member.value.isObject() || id.isList() || id.isObject() ||
            all.keys.size() == mostKeys) {
            continue;
        }
        all.keys.push_back({unsigned32Value(member.value["State"]),
                            id.isNull() ? JsonNode{} : id.document()->nodes[id.index()]});
        all.plain.push_back(plainKey(member.value));
    }
    fuzz::taken += all.keys.empty() ? 0U : 1U;
    check(all);
    return 0;
}
