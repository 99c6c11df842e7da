#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace korvale {

class BusProbe;

/// Finds the first entry of a D-Bus address list that answers. Main thread.
class BusSearch final : public QObject {
    Q_OBJECT
public:
    /// From start() on, each entry gets `timeoutMs` to answer.
    BusSearch(const QByteArray& addressList, int timeoutMs, QObject* parent = nullptr);
    ~BusSearch() override;

    /// Asks one after the other from the event loop; never waits.
    void start();
    /// Asks them now, holding up the caller for one `timeoutMs` in all; null when none answers.
    [[nodiscard]] QString wait();

Q_SIGNALS:
    /// Never from within start(). A null address: none answered.
    void finished(const QString& address);

private:
    void askNext();
    void onAnswered();

    QByteArrayList m_entries; ///< the first is in hand
    std::unique_ptr<BusProbe> m_probe;
    QTimer m_limit;
};

} // namespace korvale
