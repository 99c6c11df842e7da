#pragma once

#include "platform/UserDefaults.h"

#include <map>

namespace korvale::fakes {

/// Preferences that live as long as the object; `values` holds what is stored.
class MemoryUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] bool boolForKey(const QString& key) const override {
        const auto found = values.find(key);
        return found != values.end() && found->second != 0;
    }
    void setInteger(const QString& key, int value) override { values[key] = value; }
    void removeObject(const QString& key) override { values.erase(key); }

    std::map<QString, int> values;
};

} // namespace korvale::fakes
