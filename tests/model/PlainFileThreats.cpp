#include "PlainFileThreats.h"

#include <algorithm>

namespace korvale {
namespace {

unsigned stateOf(const PlainJson& record) {
    const PlainJson* state = record.find("State");
    if (!state) {
        return 0;
    }
    if (state->kind == PlainJson::Kind::True) {
        return 1;
    }
    if (state->kind == PlainJson::Kind::Number) {
        return static_cast<unsigned>(std::stod(state->text));
    }
    if (state->kind == PlainJson::Kind::Text) {
        return static_cast<unsigned>(std::atoi(state->text.c_str()));
    }
    return 0;
}

void count(FileThreatTally& tally, unsigned state) {
    if ((state & 1U) != 0) {
        ++((state & 8U) != 0   ? tally.unsafeQuarantined
           : (state & 4U) != 0 ? tally.unsafeWaived
                               : tally.unsafeDetected);
    } else if ((state & 2U) != 0) {
        ++((state & 8U) != 0   ? tally.abnormalQuarantined
           : (state & 4U) != 0 ? tally.abnormalWaived
                               : tally.abnormalDetected);
    }
}

std::optional<std::string> shown(const PlainJson* value) {
    return value ? std::optional(value->shown()) : std::nullopt;
}

} // namespace

PlainThreats plainFileThreats(const PlainJson& list) {
    PlainThreats result;
    for (const auto& [path, record] : list.members) {
        const unsigned state = stateOf(record) & ~16U;
        if (state == 0) {
            continue;
        }
        count(result.tally, state);
        if ((state & 3U) != 0) {
            ((state & 1U) != 0 ? result.lastUnsafePath : result.lastAbnormalPath) = path;
        }
        const auto id = shown(record.find("ID"));
        const std::string key = std::to_string(state) + id.value_or("");
        auto row = std::find_if(result.rows.begin(), result.rows.end(),
                                [&](const PlainThreatRow& r) { return r.key == key; });
        if (row == result.rows.end()) {
            row = result.rows.insert(row, {key, {}, state, id, shown(record.find("Score"))});
        }
        row->paths.push_back(path);
    }
    return result;
}

} // namespace korvale
