#include "agent/app/ScanReport.h"

#include "agent/app/ThreatLists.h"
#include "agent/base/Log.h"
#include "agent/publish/Publishing.h"
#include "agent/scan/Scanner.h"

#include <QDateTime>

#include <numeric>

namespace korvale::agent {
namespace {

QString counted(std::uint64_t number, const char* one, const char* many) {
    return QString::number(number) + u' ' + QLatin1String(number == 1 ? one : many);
}

} // namespace

QString scanSentence(const ScanSummary& summary) {
    QString text = summary.stopped ? QStringLiteral("The scan of %1 was stopped: ")
                                   : QStringLiteral("The scan of %1 has finished: ");
    text = text.arg(pathText(summary.path));
    text += counted(summary.analysed, "file", "files") + QStringLiteral(", ") +
            (summary.found == 0 ? QStringLiteral("nothing found")
                                : counted(summary.found, "threat found", "threats found"));
    const std::uint64_t left = summary.notScanned + summary.unreadable + summary.unanswered;
    if (left > 0) {
        text += QStringLiteral(", ") + QString::number(left) + QStringLiteral(" not scanned");
    }
    text += u'.';
    if (!summary.withEngine) {
        text += QStringLiteral(" The scan engine did not answer: only the built-in one looked.");
    }
    return text;
}

ScanReport::ScanReport(Scanner& scanner, Publishing& publishing, QObject* parent)
    : QObject(parent), m_publishing(publishing) {
    connect(&scanner, &Scanner::runningChanged, this, &ScanReport::runningChanged);
    connect(&scanner, &Scanner::progress, this, &ScanReport::progress);
    connect(&scanner, &Scanner::ended, this, &ScanReport::hasEnded);
}

void ScanReport::runningChanged(bool running) {
    m_publishing.lists().setScanning(running);
    m_publishing.changed();
}

void ScanReport::showCount() {
    const std::uint64_t running =
        std::accumulate(m_analysed.begin(), m_analysed.end(), std::uint64_t{0},
                        [](std::uint64_t sum, const auto& entry) { return sum + entry.second; });
    const std::uint64_t analysed = m_before + running;
    m_publishing.lists().setAnalysed(static_cast<qint64>(analysed));
    m_publishing.changed();
}

void ScanReport::progress(const ScanInfo& scan, const std::string& path) {
    m_analysed[scan.id] = scan.analysed;
    showCount();
    if (!m_sinceAnalyser.isValid() || m_sinceAnalyser.hasExpired(kAnalyserPeriod)) {
        m_sinceAnalyser.start();
        m_publishing.tell(QStringLiteral("analyzer_status.log"),
                          {{QStringLiteral("CurrentFile"), pathText(path)}},
                          QStringLiteral("com.korvale.analyzerstatus_messages"));
    }
}

void ScanReport::hasEnded(const ScanSummary& summary) {
    m_analysed.erase(summary.id);
    m_before += summary.analysed;
    showCount();
    m_ended.push_back({summary, QDateTime::currentSecsSinceEpoch()});
    if (m_ended.size() > kMostEnded) {
        m_ended.pop_front();
    }
    const QString sentence = scanSentence(summary);
    logInfo(sentence.toStdString());
    if (summary.kind == ScanKind::Folder) {
        m_publishing.tell(QStringLiteral("consumer_notification.log"),
                          {{QStringLiteral("ConsumerNotificationMessage"), sentence}},
                          QStringLiteral("com.korvale.consumer_notification"));
    } else if (!summary.stopped) {
        Q_EMIT notification(QStringLiteral("com.korvale.btdscancomplete"));
    }
}

} // namespace korvale::agent
