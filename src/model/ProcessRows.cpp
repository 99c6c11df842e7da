#include "model/ProcessRows.h"

#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"

#include <algorithm>

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
    case RowKey::Path:
        return textOnly(record["Path"]);
    case RowKey::Meaning:
        return QString::fromLatin1(procStateKeyFromValue(unsigned32Value(record["State"])));
    default:
        return std::nullopt;
    }
}

std::string_view ProcessRows::nameOf(std::uint32_t record) const {
    return m_document->view(m_document->nodes[record - 1]); // a member's name is before its value
}

std::optional<RowIdentity> ProcessRows::identity(std::size_t index) const {
    const std::string_view name = nameOf(m_records[index]);
    return RowIdentity{0, QByteArray(name.data(), static_cast<qsizetype>(name.size())), {}};
}

std::optional<std::size_t> ProcessRows::find(const RowIdentity& identity) const {
    const std::string_view wanted(identity.name.constData(),
                                  static_cast<std::size_t>(identity.name.size()));
    const auto found = std::ranges::find_if(
        m_records, [&](std::uint32_t record) { return nameOf(record) == wanted; });
    return found == m_records.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - m_records.begin()));
}

} // namespace korvale
