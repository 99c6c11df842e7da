// The calls of the control interface that are about threats: a method's name, a blank, its
// arguments. The threats lie in folders that are not there, so that nothing is really moved.

#include "InputFiles.h"
#include "agent/app/ThreatCommands.h"
#include "agent/base/Log.h"
#include "agent/bus/ControlPort.h"
#include "agent/quarantine/Vault.h"
#include "agent/store/Store.h"

#include <algorithm>
#include <array>
#include <memory>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

constexpr std::array<const char*, 3> paths{"/gone/one", "/gone/t\xffo", "/gone/other"};

class Place {
public:
    Place() {
        std::string error;
        m_store =
            Store::open(m_folder.path(QStringLiteral("findings.sqlite")).toStdString(), error);
        require(m_store != nullptr);
        m_vault =
            Vault::open(m_folder.path(QStringLiteral("vault")).toStdString(), *m_store, error);
        require(m_vault != nullptr);
        for (const char* const path : paths) {
            Finding finding;
            finding.id = std::string(64, path == paths[2] ? 'b' : 'a');
            finding.path = path;
            finding.virusName = "Test";
            m_store->add(finding);
        }
    }
    QJsonObject answer(const control::Method& method, const QJsonObject& arguments) {
        return ThreatCommands(*m_store, *m_vault).answer(method, arguments, 1000);
    }
    /// As they were, for the next input.
    void restore() {
        for (const Finding& finding : m_store->findings()) {
            require(finding.state != FindingState::Quarantined);
            if (m_store->isWaived(finding.id)) {
                m_store->endWaive(finding.id);
            }
            if (finding.state == FindingState::Deleted) {
                m_store->setState(finding.number, FindingState::Detected);
            }
        }
    }

private:
    korvale::fuzz::InputFolder m_folder;
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Vault> m_vault;
};

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return korvale::fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Place place;
    setLogLevel(LogLevel::Error);
    const std::string_view text = korvale::fuzz::textOf(data, size);
    const std::size_t blank = std::min(text.find(' '), text.size());
    const auto* const method =
        std::find_if(control::kMethods.begin(), control::kMethods.end(), [&](const auto& entry) {
            return entry.name == text.substr(0, blank) && ThreatCommands::answers(entry);
        });
    const std::string_view rest = text.substr(blank);
    const auto arguments =
        ControlCall::argumentsOf(QByteArray(rest.data(), static_cast<qsizetype>(rest.size())));
    if (method == control::kMethods.end() || !arguments) {
        return 0;
    }
    const QJsonObject answer = place.answer(*method, *arguments);
    const bool ok = answer.value(QStringLiteral("ok")).toBool();
    require(answer.value(QStringLiteral("ok")).isBool());
    require(ok || !answer.value(QStringLiteral("code")).toString().isEmpty());
    require(ok || !answer.value(QStringLiteral("error")).toString().isEmpty());
    ++korvale::fuzz::taken;
    place.restore();
    return 0;
}
