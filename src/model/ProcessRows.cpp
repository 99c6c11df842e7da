#include "model/ProcessRows.h"

#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"

namespace korvale {

void ProcessRows::add(const JsonValue& record) {
    Q_ASSERT(!m_document || m_document == record.document());
    m_document = record.document();
    m_records.push_back(record.index());
}

std::optional<QString> ProcessRows::text(std::size_t index, RowKey key) const {
    const JsonValue record(m_document, m_records[index]);
    switch (key) {
    case RowKey::ProcessName:
        if (const auto path = textOnly(record["Path"])) {
            return lastPathComponent(*path);
        }
        return std::nullopt;
    case RowKey::ProcessToolTip:
        if (const auto path = textOnly(record["Path"])) {
            return directoryOf(*path);
        }
        return std::nullopt;
    case RowKey::EveryPath:
        if (const auto path = textOnly(record["Path"])) {
            return unbrokenText(directoryOf(*path));
        }
        return std::nullopt;
    case RowKey::Category:
        return procStateStringFromValue(unsigned32Value(record["State"]));
    case RowKey::CategoryToolTip:
        return localizedText("CategoryTooltip");
    case RowKey::Found:
        return cellText(record["Count"]);
    case RowKey::FoundToolTip:
        return localizedText("FoundTooltip");
    case RowKey::Pid:
    case RowKey::PidToolTip:
        return cellText(record["PID"]);
    default:
        return std::nullopt;
    }
}

} // namespace korvale
