#pragma once

#include "model/JsonValue.h"

#include <QString>
#include <QStringList>

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

    /// Paths of the files that should hold a JSON object and do not. Only the administrator's may
    /// be absent.
    [[nodiscard]] const QStringList& ignoredFiles() const { return m_ignoredFiles; }

private:
    InfoDictionary(JsonValue packaged, JsonValue administrators, QStringList ignoredFiles)
        : m_packaged(std::move(packaged)),
          m_administrators(std::move(administrators)),
          m_ignoredFiles(std::move(ignoredFiles)) {}

    JsonValue m_packaged;
    JsonValue m_administrators;
    QStringList m_ignoredFiles;
};

} // namespace korvale
