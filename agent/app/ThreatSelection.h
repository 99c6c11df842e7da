#pragma once

#include "agent/store/Finding.h"

#include <QJsonValue>

#include <optional>
#include <vector>

namespace korvale::agent {

class Store;

/// Threats that arguments of the control interface name: by number, identifier (or its first eight
/// digits or more), path or uri.
class ThreatSelection {
public:
    /// What a selector may find besides a number, which finds whatever it says.
    using Fits = bool (*)(const Finding&);

    /// `store` must outlive this object.
    explicit ThreatSelection(const Store& store) : m_store(store) {}

    /// Adds the threats of one selector; each only once. False when it names none.
    bool add(const QJsonValue& selector, Fits fits);
    [[nodiscard]] const std::vector<Finding>& threats() const { return m_threats; }

private:
    bool addOne(const Finding& finding);

    const Store& m_store;
    std::vector<Finding> m_threats;
};

} // namespace korvale::agent
