#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>

#include <array>
#include <optional>

namespace korvale::agent {

using UpdaterKey = std::array<unsigned char, 32>;

/// The key of that day (Gregorian calendar): the base key of the build with two bytes that depend
/// on the day of the month, of the week and of the year.
[[nodiscard]] UpdaterKey updaterKey(const QDate& day);
/// The base64 text of an updater status file: two and three bytes of noise around the UTF-8 text,
/// AES-256-CBC with PKCS#7 padding. Nothing when the cipher fails.
[[nodiscard]] std::optional<QByteArray> encryptedStatus(const QString& text, const QDate& day);

/// Writes status files into the updater's folder (which it creates), by temporary name and rename.
class UpdaterStatusWriter {
public:
    explicit UpdaterStatusWriter(QString folder);

    /// Writes `name`, or a new name that sorts after all earlier ones when it is empty. The name
    /// written; nothing on failure, with the reason in `error()`.
    std::optional<QString> write(const QString& text, const QDate& day,
                                 const QString& name = QString());
    [[nodiscard]] const QString& error() const { return m_error; }

private:
    QString m_folder;
    QString m_error;
    QString m_lastName;
};

} // namespace korvale::agent
