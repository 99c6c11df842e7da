#include "model/FileProcessEvents.h"

#include "core/base/Logging.h"
#include "core/base/TextFormat.h"
#include "model/StateVocabulary.h"
#include "model/TableFeeds.h"
#include "model/TextRows.h"
#include "model/Values.h"
#include "platform/Texts.h"

#include <array>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace korvale {
namespace {

constexpr std::array eventColumns{RowKey::When,    RowKey::Category, RowKey::Event,
                                  RowKey::Details, RowKey::Path,     RowKey::Meaning};

/// A record's key is the file's path as a rule.
std::optional<QString> pathOnly(const QString& text) {
    return text.startsWith(u'/') ? std::optional(text) : std::nullopt;
}

/// A text of the row that is part of the event's identity too.
struct EventText {
    QString text;
    QByteArray utf8;
};

/// The texts of one pass. Each is made once: a list is long, and has few different ones.
class EventTexts {
public:
    const EventText& threat(std::uint32_t event, std::uint32_t fileState) {
        return once(m_threats, (std::uint64_t{event} << 32U) | fileState, [&] {
            return formatText(u"%@ (%@)", {localizedText("EventStrThreat"),
                                           eventThreatStringFromValue(event, fileState)});
        });
    }

    const EventText& exploit(std::uint32_t processState) {
        return once(m_exploits, processState,
                    [processState] { return procStateStringFromValue(processState); });
    }

    QString exploitDetails(const QString& type, const QString& pid, const QString& path) const {
        return formatText(u"%@ %@; %@: %@; %@ %@",
                          {m_violation, type, m_pid, pid, m_application, path});
    }

private:
    using Texts = std::unordered_map<std::uint64_t, EventText>;

    template <typename Make>
    static const EventText& once(Texts& texts, std::uint64_t key, Make make) {
        const auto [entry, isNew] = texts.try_emplace(key);
        if (isNew) {
            entry->second.text = make();
            entry->second.utf8 = entry->second.text.toUtf8();
        }
        return entry->second;
    }

    Texts m_threats;
    Texts m_exploits;
    QString m_violation = localizedText("EventStrExploitViolation");
    QString m_pid = localizedText("HPS_ColPID");
    QString m_application = localizedText("EventStrExploitApplication");
};

QByteArrayView bytesOf(const JsonValue& text) {
    return {text.utf8().data(), static_cast<qsizetype>(text.utf8().size())};
}

/// One pass over the list.
class EventPass {
public:
    explicit EventPass(RememberedEvents& remembered) : m_remembered(remembered) {}

    void add(const JsonMember& record) {
        const JsonValue category = record.value["Category"];
        if (!category.isText()) {
            return;
        }
        if (category.utf8() == "Threat") {
            addThreat(record);
        } else if (category.utf8() == "Exploit") {
            addExploit(record);
        }
    }

    [[nodiscard]] std::size_t count() const { return m_rows->size(); }

    /// Ends the pass.
    [[nodiscard]] RowBatchPtr rows() {
        m_rows->shrinkToFit();
        return m_rows;
    }

private:
    void addThreat(const JsonMember& record) {
        const std::uint32_t fileState = unsigned32Value(record.value["State"]);
        const std::uint32_t bits = unsigned32Value(record.value["Event"]);
        const EventText& event = m_texts.threat(bits, fileState & ~FileStateBit::unsafe);
        if (isNew({"Threat-", event.utf8, "-", bytesOf(record.name)})) {
            const QString name = valueText(record.name);
            m_rows->add({cellText(record.value["When"]), QStringLiteral("Threat"), event.text, name,
                         pathOnly(name), QString::fromLatin1(eventKeyFromValue(bits))});
        }
    }

    void addExploit(const JsonMember& record) {
        const std::uint32_t state = unsigned32Value(record.value["Event"]);
        const EventText& event = m_texts.exploit(state);
        const QString type =
            memdefTypeString(textOnly(record.value["ItemType"]).value_or(QString()))
                .value_or(QString());
        const std::optional<QString> path = textOnly(record.value["Path"]);
        const QString file = path ? *path : valueText(record.name);
        const QString details = m_texts.exploitDetails(type, valueText(record.value["PID"]), file);
        if (isNew({"Exploit-", event.utf8, "-", details.toUtf8()})) {
            m_rows->add({cellText(record.value["When"]), QStringLiteral("Exploit"), event.text,
                         details, pathOnly(file),
                         QString::fromLatin1(procStateKeyFromValue(state))});
        }
    }

    bool isNew(std::initializer_list<QByteArrayView> identity) {
        logLine(LogLevel::Debug, "another round...");
        const bool added = m_remembered.insert(identity);
        if (added) {
            logLine(LogLevel::Debug, "Event!!");
        }
        return added;
    }

    RememberedEvents& m_remembered;
    EventTexts m_texts;
    std::shared_ptr<TextRows> m_rows = std::make_shared<TextRows>(eventColumns);
};

} // namespace

RowBatchPtr newEventRows(const JsonValue& list, RememberedEvents& remembered) {
    EventPass pass(remembered);
    for (const JsonMember& record : list.members()) {
        pass.add(record);
        if (pass.count() >= mostTableRows) {
            break; // the rest waits for a later change of the file
        }
    }
    return pass.rows();
}

bool FileProcessEvents::parseFileProcessEvents(const std::optional<JsonValue>& list) {
    if (!list || list->size() == 0) {
        return false;
    }
    const RowBatchPtr rows = newEventRows(*list, m_cacheEvents);
    // What was there before the program started is remembered but never shown. The cap comes first:
    // of a longer list the rest is new when the file changes.
    if (m_state.justStart || rows->size() == 0) {
        return false;
    }
    m_state.eventCount += static_cast<std::int64_t>(rows->size());
    m_eventsTable.addData(rows);
    return true;
}

} // namespace korvale
