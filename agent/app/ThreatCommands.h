#pragma once

#include "agent/base/ControlInterface.h"
#include "agent/quarantine/ThreatActions.h"

#include <QJsonObject>

namespace korvale::agent {

class ThreatSelection;

/// Answers the methods of the control interface that are about threats: "Threats", "Quarantine",
/// "Restore", "Waive", "Delete". Any thread but the main one, one at a time: moves whole files.
class ThreatCommands {
public:
    /// Both must outlive this object.
    ThreatCommands(Store& store, Vault& vault) : m_store(store), m_actions(store, vault) {}

    [[nodiscard]] static bool answers(const control::Method& method);
    /// The whole answer, "ok" included. `by` is the user id of the caller, who is allowed to.
    [[nodiscard]] QJsonObject answer(const control::Method& method, const QJsonObject& arguments,
                                     std::uint32_t by);

private:
    struct Entry;
    static const Entry kEntries[];

    QJsonObject list(const QJsonObject& arguments) const;
    ThreatResult quarantine(const Finding& finding, const QJsonObject& arguments, std::uint32_t by);
    ThreatResult restore(const Finding& finding, const QJsonObject& arguments, std::uint32_t by);
    ThreatResult waive(const Finding& finding, const QJsonObject& arguments, std::uint32_t by);
    ThreatResult remove(const Finding& finding, const QJsonObject& arguments, std::uint32_t by);

    Store& m_store;
    ThreatActions m_actions;
};

} // namespace korvale::agent
