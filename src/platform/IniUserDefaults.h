#pragma once

#include "platform/UserDefaults.h"

namespace korvale {

/// Preferences in the section [General] of an INI file. Written at once, read again at each
/// question, so that what another process or the user's editor changed is seen.
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
    QString path;
};

} // namespace korvale
