#include "agent/app/FindingsKeeper.h"

#include "agent/base/Log.h"

#include <QDateTime>
#include <QDir>

#include <algorithm>
#include <iterator>
#include <map>
#include <sys/stat.h>
#include <utility>

namespace korvale::agent {
namespace {

Finding findingOf(const FoundFile& file) {
    Finding finding;
    finding.id = file.judgement.sha256hex;
    finding.path = file.path;
    finding.virusName = file.judgement.name;
    finding.kind =
        file.judgement.verdict == Verdict::Unsafe ? ThreatKind::Unsafe : ThreatKind::Abnormal;
    finding.firstSeen = finding.lastSeen = QDateTime::currentSecsSinceEpoch();
    finding.owner = file.owner;
    finding.size = file.identity.size;
    return finding;
}

/// Moves the file of a finding.
TakeResult takeAway(Vault& vault, const FoundFile& file, std::int64_t number) {
    TakeRequest request;
    request.finding = number;
    request.folder = file.folder->descriptor.get();
    request.name = file.name;
    request.path = file.path;
    request.judged = file.identity;
    request.sha256 = file.judgement.sha256hex;
    return vault.take(request);
}

/// The findings of `after` that are new or in another state than in `before`.
std::vector<Finding> changesBetween(const std::vector<Finding>& before,
                                    const std::vector<Finding>& after) {
    std::map<std::int64_t, FindingState> states;
    for (const Finding& finding : before) {
        states.emplace(finding.number, finding.state);
    }
    std::vector<Finding> changes;
    std::copy_if(after.begin(), after.end(), std::back_inserter(changes),
                 [&](const Finding& finding) {
                     const auto known = states.find(finding.number);
                     return known == states.end() || known->second != finding.state;
                 });
    return changes;
}

bool makeFolder(const std::string& path, mode_t mode) {
    return QDir().mkpath(QString::fromStdString(path)) && ::chmod(path.c_str(), mode) == 0;
}

} // namespace

std::unique_ptr<FindingsKeeper> FindingsKeeper::open(const Folders& folders, std::string& error) {
    if (!makeFolder(folders.state, S_IRWXU)) {
        error = "The folder " + printable(folders.state) + " cannot be made.";
        return nullptr;
    }
    std::unique_ptr<Store> store = Store::open(folders.state + "/findings.sqlite", error);
    if (!store) {
        return nullptr;
    }
    std::string trouble = store->notice();
    makeFolder(folders.quarantine, S_IRWXU);
    std::string vaultError;
    std::unique_ptr<Vault> vault = Vault::open(folders.quarantine, *store, vaultError);
    if (!vault) {
        trouble += trouble.empty() ? "" : " ";
        trouble += "Nothing can be quarantined: ";
        trouble += vaultError;
    }
    std::unique_ptr<FindingsKeeper> keeper(new FindingsKeeper(std::move(store), std::move(vault)));
    keeper->m_trouble = QString::fromStdString(trouble);
    return keeper;
}

FindingsKeeper::FindingsKeeper(std::unique_ptr<Store> store, std::unique_ptr<Vault> vault)
    : m_worker(std::make_unique<QObject>()), m_store(std::move(store)), m_vault(std::move(vault)) {
    m_known = m_store->findings();
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("findings"));
    m_thread.start();
    m_retry.setInterval(kRetryPeriod);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        change(
            [this](Store& /*store*/, Vault* safe) {
                m_unsettled = safe == nullptr ? 0 : safe->settleWaiting();
                return QJsonObject();
            },
            [](const QJsonObject&) {});
        run([this](Store& kept, Vault* /*vault*/) -> Then {
            const int left = static_cast<int>(kept.writeKept() + m_unsettled);
            return [this, left] {
                if (left == 0) {
                    m_retry.stop();
                }
                Q_EMIT waiting(left);
            };
        });
    });
}

FindingsKeeper::~FindingsKeeper() {
    m_thread.quit();
    m_thread.wait();
}

void FindingsKeeper::run(Job job) {
    QMetaObject::invokeMethod(m_worker.get(), [this, job = std::move(job)] {
        Then then = job(*m_store, m_vault.get());
        if (then) {
            QMetaObject::invokeMethod(this, std::move(then), Qt::QueuedConnection);
        }
    });
}

void FindingsKeeper::change(Act act, std::function<void(const QJsonObject&)> then) {
    run([this, act = std::move(act), then = std::move(then)](Store& store, Vault* vault) -> Then {
        const std::vector<Finding> before = store.findings();
        const QJsonObject answer = act(store, vault);
        const std::vector<Finding> changes = changesBetween(before, store.findings());
        return [this, answer, changes, then] {
            for (const Finding& finding : changes) {
                Q_EMIT shown(finding, {});
            }
            then(answer);
        };
    });
}

void FindingsKeeper::found(FoundFile file, bool quarantine) {
    // Shared: a job is copied, and descriptors of folders are not.
    const auto held = std::make_shared<FoundFile>(std::move(file));
    run([this, held, quarantine](Store& store, Vault* vault) -> Then {
        Finding finding = store.add(findingOf(*held));
        std::string detail;
        bool later = false;
        if (quarantine && vault != nullptr && finding.state == FindingState::Detected) {
            const TakeResult result = takeAway(*vault, *held, finding.number);
            detail = result.reason;
            later = result.outcome == TakeOutcome::Busy || result.outcome == TakeOutcome::Changed;
            finding = store.finding(finding.number).value_or(finding);
            m_unsettled = vault->settleWaiting();
        }
        const int kept = static_cast<int>(store.kept() + m_unsettled);
        return [this, held, finding, detail, later, kept] {
            Q_EMIT shown(finding, QString::fromStdString(detail));
            if (later) {
                Q_EMIT postponed(*held, finding.number);
            }
            if (kept > 0 && !m_retry.isActive()) {
                m_retry.start();
                Q_EMIT waiting(kept);
            }
        };
    });
}

} // namespace korvale::agent
