#pragma once

#include "model/JsonValue.h"

#include <QString>

#include <optional>
#include <string_view>

namespace korvale {

/// The application's information dictionary: the packaged one, of which an administrator's file may
/// replace single keys. Immutable.
class InfoDictionary {
public:
    /// No value when `packagedPath` holds no JSON object: the installation is broken then. The
    /// administrator's file may be absent; one that holds no JSON object changes nothing.
    [[nodiscard]] static std::optional<InfoDictionary> load(const QString& packagedPath,
                                                            const QString& administratorsPath);

    /// Where the running program's two files are. The packaged one is found from the executable.
    [[nodiscard]] static QString packagedPath();
    [[nodiscard]] static QString administratorsPath();

    /// Null when neither file has `key`.
    [[nodiscard]] JsonValue operator[](std::string_view key) const;

    /// "Allow Check For Policy Update": true when absent.
    [[nodiscard]] bool allowsCheckForPolicyUpdate() const;
    /// "NoKorvaleUI" is 1, and nothing else.
    [[nodiscard]] bool isNoUIMode() const;
    /// "Use Vexa App Icon": false when absent.
    [[nodiscard]] bool usesVexaAppIcon() const;

    /// There is an administrator's file, but it is no JSON object.
    [[nodiscard]] bool administratorsFileIsBroken() const { return m_administratorsFileIsBroken; }

private:
    InfoDictionary(JsonValue packaged, JsonValue administrators, bool administratorsFileIsBroken)
        : m_packaged(std::move(packaged)),
          m_administrators(std::move(administrators)),
          m_administratorsFileIsBroken(administratorsFileIsBroken) {}

    JsonValue m_packaged;
    JsonValue m_administrators;
    bool m_administratorsFileIsBroken;
};

} // namespace korvale
