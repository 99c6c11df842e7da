#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QString>

namespace korvale::sim {

/// Every request that came in, oldest first; past `kMost` the oldest are forgotten.
class RequestLog {
public:
    static constexpr qsizetype kMost = 10'000;

    /// `data` is what the envelope held; `command` its "CMD_", empty when it had none.
    void add(const QString& sender, const QByteArray& data, const QString& command);
    void clear();
    /// Takes one request of that command which no earlier call took; false when there is none.
    bool claim(const QString& command);
    /// One JSON object a line: "from", and "request" (the object) or "malformed" (base64).
    [[nodiscard]] const QByteArrayList& lines() const { return m_lines; }

private:
    QByteArrayList m_lines;
    QHash<QString, int> m_unclaimed;
};

} // namespace korvale::sim
