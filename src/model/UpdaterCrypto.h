#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace korvale {

/// Reads the status messages that the updater encrypts for the day on which it leaves them.
class UpdaterCrypto {
public:
    /// The message in `base64`; characters outside of the alphabet are dropped. No value for
    /// anything that was not encrypted on the day of `localTime`, is otherwise damaged or does not
    /// fit into memory; nothing is logged then. The text is untrusted. Any thread.
    [[nodiscard]] static std::optional<QString> decryptUpdaterMessage(const QString& base64,
                                                                      const QDateTime& localTime);
};

} // namespace korvale
