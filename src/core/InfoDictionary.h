#pragma once

#include "model/JsonValue.h"

#include <QString>

#include <string_view>

namespace korvale {

/// The application's information dictionary: the packaged one, of which an administrator's file may
/// replace single keys. Immutable.
class InfoDictionary {
public:
    /// A file that holds no JSON object counts as an empty one.
    [[nodiscard]] static InfoDictionary load(const QString& packagedPath,
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

    /// False when the packaged file is missing or holds no JSON object: a broken installation.
    [[nodiscard]] bool isInstalled() const { return !m_packaged.isNull(); }

    /// The administrator's file is there and holds no JSON object.
    [[nodiscard]] bool ignoresAdministratorsFile() const { return m_ignoresAdministratorsFile; }

private:
    InfoDictionary(JsonValue packaged, JsonValue administrators, bool ignoresAdministratorsFile)
        : m_packaged(std::move(packaged)),
          m_administrators(std::move(administrators)),
          m_ignoresAdministratorsFile(ignoresAdministratorsFile) {}

    JsonValue m_packaged;
    JsonValue m_administrators;
    bool m_ignoresAdministratorsFile;
};

} // namespace korvale
