#pragma once

#include <QString>

namespace korvale {

/// The user's own preferences. Main thread. A failure to store is silent: the value is then simply
/// not there at the next question.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// False when the key is absent; else whether its value is a number other than 0, or a text
    /// whose first character after blanks, a sign and zeros is Y, y, T, t or 1 to 9.
    [[nodiscard]] virtual bool boolForKey(const QString& key) const = 0;
    virtual void setInteger(const QString& key, int value) = 0;
    /// Removing an absent key does nothing.
    virtual void removeObject(const QString& key) = 0;
};

} // namespace korvale
