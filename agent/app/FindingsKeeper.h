#pragma once

#include "agent/quarantine/Vault.h"
#include "agent/scan/ScanTypes.h"
#include "agent/store/Store.h"

#include <QJsonObject>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <functional>
#include <memory>

namespace korvale::agent {

/// Writes findings down and moves files to quarantine, on a thread of its own, one after the other.
/// Used from the main thread, which never waits for it.
class FindingsKeeper : public QObject {
    Q_OBJECT
public:
    /// While findings wait in memory for room on the disk, writing them is tried this often.
    static constexpr std::chrono::seconds kRetryPeriod{10};

    struct Folders {
        std::string state;      ///< made when it is missing
        std::string quarantine; ///< as above
    };
    /// Null and a sentence in `error` when the store cannot be opened. A vault that cannot be
    /// opened is a problem (`trouble()`), not the end.
    static std::unique_ptr<FindingsKeeper> open(const Folders& folders, std::string& error);
    ~FindingsKeeper() override; ///< waits for what is at hand

    /// What was known at the start, oldest first.
    [[nodiscard]] const std::vector<Finding>& known() const { return m_known; }
    /// What a person should know of the start; empty as a rule.
    [[nodiscard]] const QString& trouble() const { return m_trouble; }

    /// Notes a file that was found bad, and moves it when `quarantine` is set and nobody waived it.
    /// `shown` follows.
    void found(FoundFile file, bool quarantine);

    /// Runs `job` with store and vault (null without one) on the thread. What it returns is called
    /// on the main thread.
    using Then = std::function<void()>;
    using Job = std::function<Then(Store& store, Vault* vault)>;
    void run(Job job);

    /// Runs `act` on the thread, shows every finding that it changed, and then calls `then` with
    /// what it returned on the main thread.
    using Act = std::function<QJsonObject(Store& store, Vault* vault)>;
    void change(Act act, std::function<void(const QJsonObject&)> then);

Q_SIGNALS:
    /// A finding is new or has another state. `detail` says what there is to say besides; it may be
    /// empty.
    void shown(const korvale::agent::Finding& finding, const QString& detail);
    /// The file could not be moved, as somebody writes to it or has written to it since it was
    /// judged: it is to be judged again.
    void postponed(const korvale::agent::FoundFile& file, std::int64_t finding);
    /// How many findings wait for room on the disk.
    void waiting(int findings);

private:
    FindingsKeeper(std::unique_ptr<Store> store, std::unique_ptr<Vault> vault);

    QThread m_thread;
    std::unique_ptr<QObject> m_worker; ///< lives on the thread
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Vault> m_vault;
    std::vector<Finding> m_known;
    QString m_trouble;
    std::size_t m_unsettled = 0; ///< taken files of which the store does not know yet; its thread's
    QTimer m_retry;
};

} // namespace korvale::agent
