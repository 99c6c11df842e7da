#include "model/FileThreatRecord.h"

#include "model/JsonValue.h"
#include "model/Values.h"

namespace korvale {

namespace {

/// What grouping ignores of a file's state.
constexpr std::uint32_t ignoredStateBit = 16;

std::uint32_t stateAt(const std::shared_ptr<const JsonDocument>& document, std::uint32_t index) {
    const JsonNode node = document->nodes[index];
    if (node.kind == JsonKind::Number && node.extent == 1) { // nearly always
        return static_cast<std::uint32_t>(document->bytes[node.offset] - '0');
    }
    return unsigned32Value(JsonValue(document, index));
}

} // namespace

FileThreatRecord readFileThreat(const std::shared_ptr<const JsonDocument>& document,
                                std::uint32_t path) {
    const JsonNode* nodes = document->nodes.get();
    FileThreatRecord record;
    record.path = path;
    std::uint32_t state = 0;
    const std::uint32_t end = nodes[path + 1].extent;
    for (std::uint32_t at = path + 2; at < end;) {
        const JsonNode name = nodes[at];
        const JsonNode value = nodes[++at];
        if (name.superseded == 0 && value.kind != JsonKind::Null) {
            const std::string_view text = document->view(name);
            if (text == "State") {
                state = at;
            } else if (text == "ID") {
                record.id = at;
            } else if (text == "Score") {
                record.score = at;
            }
        }
        at = value.isContainer() ? value.extent : at + 1;
    }
    record.state = state == 0 ? 0 : stateAt(document, state) & ~ignoredStateBit;
    return record;
}

} // namespace korvale
