#pragma once

#include "platform/UserDefaults.h"

#include <QByteArray>

#include <map>
#include <optional>

namespace korvale {

/// Preferences in the section [General] of an INI file. Written at once, read again at each
/// question, so that what another process or the user's editor changed is seen. What could not be
/// written, which is one WARN line, holds as long as the object, and is written with the next
/// change. A file that is no regular one or larger than 1 MiB is none.
class IniUserDefaults final : public UserDefaults {
public:
    /// Korvale/KorvaleUI.conf in $XDG_CONFIG_HOME, else in ~/.config.
    IniUserDefaults();
    explicit IniUserDefaults(QString filePath);

    [[nodiscard]] bool boolForKey(const QString& key) const override;
    void setInteger(const QString& key, int value) override;
    void removeObject(const QString& key) override;

    [[nodiscard]] const QString& filePath() const { return path; }

private:
    using Value = std::optional<QByteArray>; ///< none: the key is removed

    void change(const QString& key, Value value);
    [[nodiscard]] bool save() const;

    QString path;
    std::map<QByteArray, Value> m_unsaved;
};

} // namespace korvale
