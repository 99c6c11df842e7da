#include "agent/app/ThreatCommands.h"

#include "agent/app/ThreatJson.h"
#include "agent/app/ThreatSelection.h"
#include "agent/store/Store.h"

#include <QJsonArray>

#include <algorithm>
#include <ctime>

namespace korvale::agent {
namespace {

QJsonObject refusal(std::string_view code, const QString& sentence) {
    return {{QStringLiteral("ok"), false},
            {QStringLiteral("code"),
             QString::fromLatin1(code.data(), static_cast<qsizetype>(code.size()))},
            {QStringLiteral("error"), sentence}};
}

bool notDeleted(const Finding& finding) {
    return finding.state != FindingState::Deleted;
}

bool inQuarantine(const Finding& finding) {
    return finding.state == FindingState::Quarantined;
}

} // namespace

struct ThreatCommands::Entry {
    std::string_view method;
    ThreatSelection::Fits fits;
    ThreatResult (ThreatCommands::*act)(const Finding&, const QJsonObject&, std::uint32_t);
};

const ThreatCommands::Entry ThreatCommands::kEntries[] = {
    {"Quarantine", notDeleted, &ThreatCommands::quarantine},
    {"Restore", inQuarantine, &ThreatCommands::restore},
    {"Waive", notDeleted, &ThreatCommands::waive},
    {"Delete", notDeleted, &ThreatCommands::remove},
};

bool ThreatCommands::answers(const control::Method& method) {
    return method.name == "Threats" ||
           std::any_of(std::begin(kEntries), std::end(kEntries),
                       [&](const Entry& entry) { return entry.method == method.name; });
}

QJsonObject ThreatCommands::answer(const control::Method& method, const QJsonObject& arguments,
                                   std::uint32_t by) {
    if (method.name == "Threats") {
        return list(arguments);
    }
    const auto* const entry =
        std::find_if(std::begin(kEntries), std::end(kEntries),
                     [&](const Entry& candidate) { return candidate.method == method.name; });
    if (entry == std::end(kEntries)) {
        return refusal(control::kUnavailable, QStringLiteral("This is not about threats."));
    }
    const QJsonArray selectors = arguments.value(QStringLiteral("threats")).toArray();
    const bool elsewhere =
        arguments.contains(QStringLiteral("uri")) || arguments.contains(QStringLiteral("path"));
    if (selectors.isEmpty() || (elsewhere && !pathArgument(arguments))) {
        return refusal(control::kBadArguments,
                       QStringLiteral("The arguments are not as documented."));
    }
    ThreatSelection selection(m_store);
    for (const QJsonValue selector : selectors) {
        if (!selection.add(selector, entry->fits)) {
            return refusal(
                control::kUnknown,
                QStringLiteral("There is no such threat: %1").arg(selector.toVariant().toString()));
        }
    }
    if (elsewhere && selection.threats().size() != 1) {
        return refusal(control::kBadArguments,
                       QStringLiteral("Only one threat can be put to another place."));
    }
    QJsonArray results;
    bool all = true;
    for (const Finding& finding : selection.threats()) {
        const ThreatResult result = (this->*entry->act)(finding, arguments, by);
        QJsonObject object = threatObject(m_store.finding(finding.number).value_or(finding));
        object.insert(QStringLiteral("done"), result.done);
        object.insert(QStringLiteral("outcome"), shownText(result.outcome));
        object.insert(QStringLiteral("reason"), shownText(result.reason));
        results.append(object);
        all = all && result.done;
    }
    QJsonObject answer{{QStringLiteral("ok"), all}, {QStringLiteral("results"), results}};
    if (!all) {
        answer.insert(QStringLiteral("code"), QStringLiteral("failed"));
        answer.insert(QStringLiteral("error"), QStringLiteral("Not everything could be done."));
    }
    return answer;
}

QJsonObject ThreatCommands::list(const QJsonObject& arguments) const {
    const bool all = arguments.value(QStringLiteral("all")).toBool();
    QJsonArray threats;
    for (const Finding& finding : m_store.findings()) {
        if (all || notDeleted(finding)) {
            threats.append(threatObject(finding));
        }
    }
    return {{QStringLiteral("ok"), true}, {QStringLiteral("threats"), threats}};
}

ThreatResult ThreatCommands::quarantine(const Finding& finding, const QJsonObject& /*arguments*/,
                                        std::uint32_t /*by*/) {
    return m_actions.quarantine(finding);
}

ThreatResult ThreatCommands::restore(const Finding& finding, const QJsonObject& arguments,
                                     std::uint32_t by) {
    RestoreWish wish;
    wish.path = pathArgument(arguments).value_or(std::string());
    wish.beside = arguments.value(QStringLiteral("beside")).toBool();
    wish.waive = arguments.value(QStringLiteral("waive")).toBool(true);
    wish.by = by;
    wish.now = std::time(nullptr);
    return m_actions.restore(finding, wish);
}

ThreatResult ThreatCommands::waive(const Finding& finding, const QJsonObject& arguments,
                                   std::uint32_t by) {
    if (arguments.value(QStringLiteral("end")).toBool()) {
        return m_actions.endWaive(finding);
    }
    return m_actions.waive(finding, by, std::time(nullptr),
                           arguments.value(QStringLiteral("reason")).toString().toStdString());
}

ThreatResult ThreatCommands::remove(const Finding& finding, const QJsonObject& /*arguments*/,
                                    std::uint32_t /*by*/) {
    return m_actions.remove(finding);
}

} // namespace korvale::agent
