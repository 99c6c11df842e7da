#pragma once

#include "fakes/WaitUntil.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <algorithm>

namespace korvale::sim {

/// The stand-in agent as a process of its own, driven line by line.
class SimProcess {
public:
    SimProcess() {
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] {
            while (m_process.canReadLine()) {
                m_lines.append(QString::fromUtf8(m_process.readLine()).chopped(1));
            }
        });
        QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                         [this] { m_errors += m_process.readAllStandardError(); });
    }
    ~SimProcess() { kill(); }
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

    void start(const QString& root, const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("KORVALE_ROOT"), root);
        environment.insert(QStringLiteral("KORVALE_DEMO_FOLDER"), root + QStringLiteral("/demo f"));
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(KORVALE_AGENT_SIM), arguments);
        m_process.waitForStarted();
    }

    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }

    void write(const QString& line) { m_process.write(line.toUtf8() + '\n'); }
    void closeInput() { m_process.closeWriteChannel(); }

    /// Sends a command and gives its answer, "ok ..." or "error ...".
    QString tell(const QString& command) {
        const qsizetype from = m_lines.size();
        write(command);
        qsizetype answer = -1;
        const auto answered = [&] {
            for (qsizetype i = from; i < m_lines.size() && answer < 0; ++i) {
                const bool isAnswer = m_lines[i].startsWith(QLatin1String("ok ")) ||
                                      m_lines[i].startsWith(QLatin1String("error "));
                answer = isAnswer ? i : -1;
            }
            return answer >= 0;
        };
        return waitUntil(answered) ? m_lines[answer] : QStringLiteral("no answer");
    }

    /// Waits until it has printed a line that begins so, `count` times.
    bool waitFor(const QString& beginning, int count = 1) {
        return waitUntil([&] { return printed(beginning) >= count; });
    }
    bool waitForError(const QByteArray& part) {
        return waitUntil([&] { return m_errors.contains(part); });
    }
    bool waitForEnd() {
        return waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
    }

    [[nodiscard]] qsizetype printed(const QString& beginning) const {
        return std::count_if(m_lines.begin(), m_lines.end(),
                             [&](const QString& line) { return line.startsWith(beginning); });
    }
    [[nodiscard]] const QStringList& lines() const { return m_lines; }
    [[nodiscard]] const QByteArray& errors() const { return m_errors; }
    [[nodiscard]] int exitCode() const { return m_process.exitCode(); }

private:
    QProcess m_process;
    QStringList m_lines;
    QByteArray m_errors;
};

} // namespace korvale::sim
