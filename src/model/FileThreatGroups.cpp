#include "model/FileThreatGroups.h"

#include "model/FileThreatKeys.h"
#include "model/FileThreatRecord.h"
#include "model/IndexTable.h"
#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"

#include <array>

namespace korvale {

namespace {

class Grouping {
public:
    explicit Grouping(const JsonValue& list)
        : m_document(list.document()), m_keys(m_storage), m_rowsByKey(list.size()) {
        // Room that stays unused is never touched, so it costs no memory.
        m_storage.paths.reserve(list.size());
        m_storage.rows.reserve(list.size());
        m_storage.bytes = m_document->bytes;
    }

    FileThreatGroups run(std::uint32_t list) {
        const JsonNode* nodes = m_document->nodes.get();
        const std::uint32_t end = nodes[list].extent;
        for (std::uint32_t at = list + 1; at < end; at = m_document->behind(at + 1)) {
            if (nodes[at].superseded == 0 && nodes[at + 1].kind == JsonKind::Object) {
                take(readFileThreat(m_document, at));
            }
        }
        addWaiting();
        return {std::make_shared<FileThreatRows>(std::move(m_storage)), m_tally,
                nameOf(m_lastUnsafe), nameOf(m_lastAbnormal)};
    }

private:
    /// A file on its way to a row.
    struct Waiting {
        FileThreatKey key{};
        std::uint64_t hash = 0;
        std::uint32_t path = 0;
        std::uint32_t score = 0;
    };

    void take(const FileThreatRecord& record) {
        if (record.state == 0) {
            return;
        }
        m_tally.add(record.state);
        if ((record.state & FileStateBit::unsafe) != 0) {
            m_lastUnsafe = record.path;
        } else if ((record.state & FileStateBit::abnormal) != 0) {
            m_lastAbnormal = record.path;
        }
        // Looked up some files later, when the table's entry has arrived from memory.
        Waiting& file = m_waiting[m_waitingCount++];
        file.key = {record.state, stored(record.id)};
        file.hash = m_keys.hash(file.key);
        file.path = record.path;
        file.score = record.score;
        m_rowsByKey.prefetch(file.hash);
        if (m_waitingCount == m_waiting.size()) {
            addWaiting();
        }
    }

    void addWaiting() {
        for (std::size_t i = 0; i < m_waitingCount; ++i) {
            addToRow(m_waiting[i]);
        }
        m_waitingCount = 0;
    }

    void addToRow(const Waiting& file) {
        const JsonNode path = m_document->nodes[file.path];
        const auto pathIndex = static_cast<std::uint32_t>(m_storage.paths.size());
        m_storage.paths.push_back({path.offset, path.extent, FileThreatRows::none});
        IndexTable::Entry& entry = m_rowsByKey.at(file.hash, [&](std::uint32_t index) {
            const FileThreatRows::Row& row = m_storage.rows[index];
            return m_keys.equal(file.key, {row.state, row.id});
        });
        if (entry.isNew()) {
            entry.setIndex(static_cast<std::uint32_t>(m_storage.rows.size()));
            m_storage.rows.push_back(
                {file.key.id, stored(file.score), file.key.state, pathIndex, pathIndex, 1});
            return;
        }
        FileThreatRows::Row& row = m_storage.rows[entry.index()];
        m_storage.paths[row.lastPath].next = pathIndex;
        row.lastPath = pathIndex;
        ++row.count;
    }

    /// The value at `index` (0: missing) as FileThreatRows stores it.
    JsonNode stored(std::uint32_t index) {
        if (index == 0) {
            return {};
        }
        JsonNode node = m_document->nodes[index];
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
        return lastPathComponent(utf8Text(m_document->view(m_document->nodes[path]))).toLower();
    }

    std::shared_ptr<const JsonDocument> m_document;
    FileThreatRows::Storage m_storage;
    FileThreatKeys m_keys;
    IndexTable m_rowsByKey;
    FileThreatTally m_tally;
    std::uint32_t m_lastUnsafe = 0; ///< index of a path's name; 0 for none
    std::uint32_t m_lastAbnormal = 0;
    std::array<Waiting, 32> m_waiting{};
    std::size_t m_waitingCount = 0;
};

} // namespace

FileThreatGroups groupFileThreats(const JsonValue& list) {
    if (!list.isObject()) {
        return {std::make_shared<FileThreatRows>(FileThreatRows::Storage()), {}, {}, {}};
    }
    return Grouping(list).run(list.index());
}

} // namespace korvale
