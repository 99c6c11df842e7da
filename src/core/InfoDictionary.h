#pragma once

#include "model/JsonValue.h"

#include <QString>

#include <string_view>

namespace korvale {

/// What there is of one of the two files.
enum class InfoFile { Used, Absent, Unreadable, NoObject };

/// "is missing", "cannot be read" and so on, for a log line.
[[nodiscard]] const char* stateText(InfoFile state);

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

    /// False when the packaged file cannot be used: a broken installation.
    [[nodiscard]] bool isInstalled() const { return packagedFile() == InfoFile::Used; }

    [[nodiscard]] InfoFile packagedFile() const { return m_packaged.state; }
    [[nodiscard]] InfoFile administratorsFile() const { return m_administrators.state; }

private:
    struct Source {
        InfoFile state;
        JsonValue content; ///< null unless the state is Used
    };

    InfoDictionary(Source packaged, Source administrators)
        : m_packaged(std::move(packaged)), m_administrators(std::move(administrators)) {}
    [[nodiscard]] static Source read(const QString& path);

    Source m_packaged;
    Source m_administrators;
};

} // namespace korvale
