#include "agent_sim/RequestLog.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace korvale::sim {

void RequestLog::add(const QString& sender, const QByteArray& data, const QString& command) {
    QJsonObject line{{QStringLiteral("from"), sender}};
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (document.isObject()) {
        line.insert(QStringLiteral("request"), document.object());
    } else {
        line.insert(QStringLiteral("malformed"), QString::fromLatin1(data.toBase64()));
    }
    if (m_lines.size() == kMost) {
        m_lines.removeFirst();
    }
    m_lines.append(QJsonDocument(line).toJson(QJsonDocument::Compact));
    ++m_unclaimed[command];
}

void RequestLog::clear() {
    m_lines.clear();
    m_unclaimed.clear();
}

bool RequestLog::claim(const QString& command) {
    const auto entry = m_unclaimed.find(command);
    if (entry == m_unclaimed.end() || *entry == 0) {
        return false;
    }
    --*entry;
    return true;
}

} // namespace korvale::sim
