#include "tables/RowDetails.h"

#include "core/base/TextFormat.h"
#include "model/RowMeaning.h"
#include "platform/CountText.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"

#include <algorithm>

namespace korvale {
namespace {

class Collector {
public:
    Collector(const RowBatch& batch, std::size_t index) : m_batch(batch), m_index(index) {}

    void addField(const char* labelKey, RowKey key) {
        const QString text = m_batch.text(m_index, key).value_or(QStringLiteral("–"));
        // Of an event the text may be the path itself: no need to say it twice.
        const bool isPath = text == m_batch.text(m_index, RowKey::Path);
        m_hasPath = m_hasPath || isPath;
        add(labelKey, text, isPath ? text : QString());
    }

    void addMeaning() {
        const RowMeaning& meaning =
            rowMeaning(m_batch.text(m_index, RowKey::Meaning).value_or(QString()));
        add("HPS_PaneMeans", localizedText(meaning.meansKey));
        add("HPS_PaneDo", localizedText(meaning.doKey));
    }

    void addPaths() {
        std::size_t shown = 0;
        qsizetype length = 0;
        m_batch.visitPaths(m_index, [&](const QString& path) {
            add(shown == 0 ? "HPS_PanePath" : nullptr, path, path);
            length += m_details.lines.back().text.size();
            return ++shown < mostShownPaths && length < longestShownPaths;
        });
        if (const std::size_t count = m_batch.pathCount(m_index); shown < count) {
            add(nullptr, formatText(localizedText("HPS_PaneMore"),
                                    {countText(static_cast<std::int64_t>(count - shown))}));
        }
    }

    RowDetails finished() {
        if (m_isCut) {
            add(nullptr, localizedText("HPS_PaneCut"));
        }
        return std::move(m_details);
    }

    [[nodiscard]] bool hasPath() const { return m_hasPath; }

private:
    void add(const char* labelKey, const QString& text, const QString& path = {}) {
        m_details.lines.push_back({labelKey != nullptr ? localizedText(labelKey) : QString(),
                                   wholeLineText(text, m_isCut), path});
    }

    const RowBatch& m_batch;
    std::size_t m_index;
    RowDetails m_details;
    bool m_isCut = false;
    bool m_hasPath = false;
};

} // namespace

QString RowDetails::firstPath() const {
    const auto found =
        std::ranges::find_if(lines, [](const Line& line) { return !line.path.isEmpty(); });
    return found != lines.end() ? found->path : QString();
}

RowDetails rowDetails(const RowBatch& batch, std::size_t index,
                      const TableDescription& description) {
    Collector collector(batch, index);
    for (const TableColumn& column : description.columns) {
        collector.addField(column.titleKey, column.text);
        if (column.text == description.explained) {
            collector.addMeaning();
            if (description.copyPaths) {
                collector.addPaths();
            }
        }
    }
    for (const DetailField& field : description.hiddenFields) {
        collector.addField(field.labelKey, field.text);
    }
    if (!description.copyPaths && !collector.hasPath()) {
        collector.addPaths();
    }
    return collector.finished();
}

} // namespace korvale
