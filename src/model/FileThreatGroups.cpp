#include "model/FileThreatGroups.h"

#include "model/FastHash.h"
#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"

#include <array>
#include <bit>
#include <charconv>
#include <string>

namespace korvale {

namespace {

/// What grouping ignores of a file's state.
constexpr std::uint32_t ignoredStateBit = 16;

/// One file of the list. Its score is the index of a document node, 0 when it is missing.
struct Record {
    JsonNode path{};
    JsonNode id{}; ///< as FileThreatRows stores it
    std::uint32_t state = 0;
    std::uint32_t score = 0;
    std::uint64_t hash = 0;
};

class Grouping {
public:
    explicit Grouping(const JsonValue& list)
        : m_document(list.document()),
          m_nodes(m_document->nodes.get()),
          m_seed(hashSeed()),
          m_slots(std::bit_ceil(list.size() * 2)) {
        // Room that stays unused is never touched, so it costs no memory.
        m_storage.paths.reserve(list.size());
        m_storage.rows.reserve(list.size());
        m_storage.bytes = m_document->bytes;
    }

    FileThreatGroups run(std::uint32_t listIndex) {
        const std::uint32_t end = m_nodes[listIndex].extent;
        for (std::uint32_t at = listIndex + 1; at < end; at = m_document->behind(at + 1)) {
            if (m_nodes[at].superseded == 0 && m_nodes[at + 1].kind == JsonKind::Object) {
                take(at);
            }
        }
        flush();
        return {std::make_shared<FileThreatRows>(std::move(m_storage)), m_tally,
                nameOf(m_lastUnsafe), nameOf(m_lastAbnormal)};
    }

private:
    /// `path` is the index of the record's name.
    void take(std::uint32_t path) {
        Record record;
        record.path = m_nodes[path];
        std::uint32_t state = 0;
        std::uint32_t id = 0;
        const std::uint32_t end = m_nodes[path + 1].extent;
        for (std::uint32_t at = path + 2; at < end;) {
            const JsonNode name = m_nodes[at];
            const JsonNode value = m_nodes[++at];
            if (name.superseded == 0 && value.kind != JsonKind::Null) {
                const std::string_view text = m_document->view(name);
                if (text == "State") {
                    state = at;
                } else if (text == "ID") {
                    id = at;
                } else if (text == "Score") {
                    record.score = at;
                }
            }
            at = value.isContainer() ? value.extent : at + 1;
        }
        record.state = state == 0 ? 0 : stateOf(state) & ~ignoredStateBit;
        if (record.state != 0) {
            record.id = stored(id);
            count(record, path);
            keep(record);
        }
    }

    [[nodiscard]] std::uint32_t stateOf(std::uint32_t index) const {
        const JsonNode node = m_nodes[index];
        if (node.kind == JsonKind::Number && node.extent == 1) {
            return static_cast<std::uint32_t>(m_document->bytes[node.offset] - '0');
        }
        return unsigned32Value(JsonValue(m_document, index));
    }

    void count(const Record& record, std::uint32_t path) {
        const bool unsafe = (record.state & FileStateBit::unsafe) != 0;
        if (!unsafe && (record.state & FileStateBit::abnormal) == 0) {
            return;
        }
        (unsafe ? m_lastUnsafe : m_lastAbnormal) = path;
        if ((record.state & FileStateBit::quarantined) != 0) {
            ++(unsafe ? m_tally.unsafeQuarantined : m_tally.abnormalQuarantined);
        } else if ((record.state & FileStateBit::waived) != 0) {
            ++(unsafe ? m_tally.unsafeWaived : m_tally.abnormalWaived);
        } else {
            ++(unsafe ? m_tally.unsafeDetected : m_tally.abnormalDetected);
        }
    }

    /// Rows are looked up some records later, when their slots have arrived from memory.
    void keep(Record& record) {
        record.hash = hashOf(record.state, record.id);
        __builtin_prefetch(&m_slots[record.hash & (m_slots.size() - 1)], 1);
        m_waiting[m_waitingCount++] = record;
        if (m_waitingCount == m_waiting.size()) {
            flush();
        }
    }

    void flush() {
        for (std::size_t i = 0; i < m_waitingCount; ++i) {
            addToRow(m_waiting[i]);
        }
        m_waitingCount = 0;
    }

    void addToRow(const Record& record) {
        const auto pathIndex = static_cast<std::uint32_t>(m_storage.paths.size());
        m_storage.paths.push_back({record.path.offset, record.path.extent, FileThreatRows::none});
        Slot& slot = find(record);
        if (slot.row == 0) {
            m_storage.rows.push_back(
                {record.id, stored(record.score), record.state, pathIndex, pathIndex, 1});
            slot = {static_cast<std::uint32_t>(record.hash >> 32),
                    static_cast<std::uint32_t>(m_storage.rows.size())};
            return;
        }
        FileThreatRows::Row& row = m_storage.rows[slot.row - 1];
        m_storage.paths[row.lastPath].next = pathIndex;
        row.lastPath = pathIndex;
        ++row.count;
    }

    struct Slot {
        std::uint32_t tag = 0;
        std::uint32_t row = 0; ///< its index plus one; 0 for an empty slot
    };

    Slot& find(const Record& record) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = record.hash & mask;
        while (m_slots[at].row != 0 && (m_slots[at].tag != record.hash >> 32 ||
                                        !belongs(record, m_storage.rows[m_slots[at].row - 1]))) {
            at = (at + 1) & mask;
        }
        return m_slots[at];
    }

    /// The key is one text: state 1 with "12" and state 11 with "2" make one row.
    bool belongs(const Record& record, const FileThreatRows::Row& row) {
        if (record.state == row.state && record.id.kind == JsonKind::Text &&
            row.id.kind == JsonKind::Text) {
            return m_document->view(record.id) == m_document->view(row.id);
        }
        const std::string key(keyOf(record.state, record.id));
        return key == keyOf(row.state, row.id);
    }

    /// The hash of keyOf, mostly without making the key: its leading digits count as a number, as
    /// where the state ends and the identifier begins cannot be told; what follows is hashed.
    std::uint64_t hashOf(std::uint32_t state, JsonNode id) {
        std::string_view rest = m_document->view(id);
        std::uint64_t lead = state;
        if (id.kind != JsonKind::Text) {
            rest = keyOf(state, id);
            lead = 0;
        }
        std::size_t digits = 0;
        for (; digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9'; ++digits) {
            lead = lead * 10 + static_cast<std::uint64_t>(rest[digits] - '0');
        }
        return fastHash(rest.substr(digits), m_seed ^ (lead * 0x9E3779B97F4A7C15U));
    }

    /// Valid until the next call.
    std::string_view keyOf(std::uint32_t state, JsonNode id) {
        std::array<char, 10> digits{};
        const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), state).ptr;
        m_key.assign(digits.data(), static_cast<std::size_t>(end - digits.data()));
        if (id.kind == JsonKind::Text) {
            m_key += m_document->view(id);
        } else if (id.isContainer()) {
            m_key += m_storage.texts[id.offset].toStdString();
        } else if (id.kind != JsonKind::Null) {
            m_key += scalarText(id.kind, m_document->view(id)).toStdString();
        }
        return m_key;
    }

    /// The value at `index` (0: missing) as FileThreatRows stores it.
    JsonNode stored(std::uint32_t index) {
        if (index == 0) {
            return {};
        }
        JsonNode node = m_nodes[index];
        if (node.isContainer()) {
            node.offset = static_cast<std::uint32_t>(m_storage.texts.size()) & 0x0FFFFFFFU;
            m_storage.texts.push_back(valueText(JsonValue(m_document, index)));
        }
        return node;
    }

    [[nodiscard]] QString nameOf(std::uint32_t path) const {
        if (path == 0) {
            return {};
        }
        return lastPathComponent(utf8Text(m_document->view(m_nodes[path]))).toLower();
    }

    std::shared_ptr<const JsonDocument> m_document;
    const JsonNode* m_nodes;
    std::uint64_t m_seed;
    std::vector<Slot> m_slots; ///< a power of two, at least half of them empty
    FileThreatRows::Storage m_storage;
    FileThreatTally m_tally;
    std::uint32_t m_lastUnsafe = 0;
    std::uint32_t m_lastAbnormal = 0;
    std::array<Record, 32> m_waiting{};
    std::size_t m_waitingCount = 0;
    std::string m_key;
};

} // namespace

FileThreatGroups groupFileThreats(const JsonValue& list) {
    if (!list.isObject()) {
        return {std::make_shared<FileThreatRows>(FileThreatRows::Storage()), {}, {}, {}};
    }
    return Grouping(list).run(list.index());
}

} // namespace korvale
