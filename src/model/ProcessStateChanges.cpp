#include "model/ProcessStateChanges.h"

#include "core/base/Logging.h"
#include "core/base/TextFormat.h"
#include "model/JsonFingerprint.h"
#include "model/Paths.h"
#include "model/ProcessRows.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"
#include "platform/Texts.h"

#include <memory>
#include <utility>

namespace korvale {
namespace {

std::optional<std::uint64_t> identifierOf(const JsonValue& pid) {
    return pid.isNull() ? std::nullopt
                        : std::optional(jsonFingerprint(*pid.document(), pid.index()));
}

QString specificMessage(const JsonValue& record, const QString& typeName) {
    const std::optional<QString> path = textOnly(record["Path"]);
    return formatText(localizedText("NotificationMessageExploitDetectedPID"),
                      {path ? lastPathComponent(*path) : QStringLiteral("(null)"),
                       valueText(record["PID"]), typeName});
}

void logRecord(const JsonMember& record) {
    logLine(
        LogLevel::Info, "Processing {%@}, state(p)=%@", [&] { return valueText(record.name); },
        [&] { return valueText(record.value["State"]); });
}

} // namespace

ProcessPass processPass(const JsonValue& list, const ProcessIds& remembered,
                        const std::function<QString()>& exploitTypeName) {
    ProcessPass pass;
    auto rows = std::make_shared<ProcessRows>();
    for (const JsonMember& record : list.members()) {
        const std::uint32_t state = unsigned32Value(record.value["State"]);
        if (!record.value.isObject() || state == ProcessState::ignored) {
            continue;
        }
        logRecord(record);
        rows->add(record.value);
        ++pass.attempts;
        const std::optional<std::uint64_t> identifier = identifierOf(record.value["PID"]);
        if (identifier && remembered.contains(*identifier)) {
            continue;
        }
        // Looked up among the earlier passes' only: an identifier that comes twice is new twice.
        pass.message = pass.message ? localizedText("NotificationMessageNewExploit")
                                    : specificMessage(record.value, exploitTypeName());
        pass.alert = pass.alert || state == ProcessState::alert;
        if (identifier) {
            pass.newProcesses.insert(*identifier);
        }
    }
    pass.rows = std::move(rows);
    return pass;
}

void ProcessStateChanges::parseProcessStateChanges(const std::optional<JsonValue>& list) {
    std::int64_t attempts = 0;
    if (list) {
        ProcessPass pass = processPass(*list, m_cachedProcessByPID, m_exploitTypeName);
        attempts = pass.attempts;
        // Only what was new is remembered, so that what stays in the list is reported as new again
        // on every second pass.
        m_cachedProcessByPID = std::move(pass.newProcesses);
        m_memExploitTable.loadData(std::move(pass.rows));
        if (pass.alert && pass.message && !m_state.justStart) {
            m_notifications.SendUrgentNotification(
                *pass.message, localizedText("NotificationSubtitleExploitAttemptDetected"),
                threatImage);
        }
    } else {
        m_memExploitTable.loadData(nullptr);
    }
    m_state.newExploitCount += attempts - m_state.exploitAttempt;
    m_state.exploitAttempt = attempts;
}

} // namespace korvale
