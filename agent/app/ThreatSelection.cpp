#include "agent/app/ThreatSelection.h"

#include "agent/base/FileUri.h"
#include "agent/store/Store.h"

#include <algorithm>

namespace korvale::agent {
namespace {

constexpr std::size_t kShortestIdentifier = 8;

bool isIdentifier(const std::string& text) {
    return text.size() >= kShortestIdentifier &&
           text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

std::vector<Finding> at(const Store& store, const std::string& path) {
    std::vector<Finding> found = store.findings();
    std::erase_if(found, [&](const Finding& finding) { return finding.path != path; });
    return found;
}

std::vector<Finding> named(const Store& store, const std::string& text) {
    if (text.starts_with('/')) {
        return at(store, text);
    }
    if (const auto path = pathOfUri(text)) {
        return at(store, *path);
    }
    return isIdentifier(text) ? store.findingsLike(text) : std::vector<Finding>();
}

} // namespace

bool ThreatSelection::addOne(const Finding& finding) {
    const bool known = std::any_of(m_threats.begin(), m_threats.end(), [&](const Finding& other) {
        return other.number == finding.number;
    });
    if (!known) {
        m_threats.push_back(finding);
    }
    return true;
}

bool ThreatSelection::add(const QJsonValue& selector, Fits fits) {
    if (selector.isDouble()) {
        const auto finding = m_store.finding(selector.toInteger());
        return finding && addOne(*finding);
    }
    bool any = false;
    for (const Finding& finding : named(m_store, selector.toString().toStdString())) {
        any = (fits(finding) && addOne(finding)) || any;
    }
    return any;
}

} // namespace korvale::agent
