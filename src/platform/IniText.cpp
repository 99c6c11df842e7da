#include "platform/IniText.h"

#include <QList>

namespace korvale {
namespace {

constexpr char general[] = "[General]";

/// The lines, each with the section it stands in.
class Lines {
public:
    explicit Lines(const QByteArray& settings) : m_rest(settings) {}

    /// False at the end.
    bool next() {
        if (m_rest.isEmpty()) {
            return false;
        }
        const qsizetype end = m_rest.indexOf('\n');
        m_line = end < 0 ? m_rest : m_rest.first(end + 1);
        m_rest = m_rest.sliced(m_line.size());
        const QByteArrayView text = m_line.trimmed();
        if (text.startsWith('[')) {
            m_isGeneral = text.compare(general, Qt::CaseInsensitive) == 0;
        }
        return true;
    }

    [[nodiscard]] QByteArrayView line() const { return m_line; } ///< with its line feed
    [[nodiscard]] bool isGeneral() const { return m_isGeneral; }

    /// What stands behind `key` and an equals sign; no value when this is no such line.
    [[nodiscard]] std::optional<QByteArrayView> valueOf(const QByteArray& key) const {
        const qsizetype equals = m_line.indexOf('=');
        return m_isGeneral && equals > 0 && m_line.first(equals).trimmed() == key
                   ? std::optional(m_line.sliced(equals + 1).trimmed())
                   : std::nullopt;
    }

private:
    QByteArrayView m_rest;
    QByteArrayView m_line;
    bool m_isGeneral = true;
};

QByteArray unquoted(QByteArrayView value) {
    if (!value.startsWith('"')) {
        return value.toByteArray();
    }
    QByteArray text;
    for (qsizetype i = 1; i < value.size() && value[i] != '"'; ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        text += value[i];
    }
    return text;
}

} // namespace

std::optional<QByteArray> iniValue(const QByteArray& settings, const QByteArray& key) {
    std::optional<QByteArray> found;
    Lines lines(settings);
    while (lines.next()) {
        if (const auto value = lines.valueOf(key)) {
            found = unquoted(*value);
        }
    }
    return found;
}

QByteArray withIniValue(const QByteArray& settings, const QByteArray& key,
                        const std::optional<QByteArray>& value) {
    QByteArray result;
    qsizetype place = -1; // behind the last line of the section that says something
    Lines lines(settings);
    while (lines.next()) {
        if (lines.valueOf(key)) {
            continue;
        }
        result += lines.line();
        if (lines.isGeneral() && !lines.line().trimmed().isEmpty()) {
            if (!result.endsWith('\n')) {
                result += '\n';
            }
            place = result.size();
        }
    }
    if (!value) {
        return result;
    }
    const QByteArray line = key + '=' + *value + '\n';
    return place < 0 ? QByteArray(general) + '\n' + line + result : result.insert(place, line);
}

} // namespace korvale
