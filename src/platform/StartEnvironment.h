#pragma once

#include <QByteArray>
#include <QProcessEnvironment>

#include <vector>

namespace korvale {

/// What the environment is when this object is made: the programs that this one starts get that,
/// whatever it changes for itself meanwhile. Main thread.
class StartEnvironment {
public:
    StartEnvironment();

    /// Values are kept byte by byte, even where they are no text, unless they were changed since.
    [[nodiscard]] QProcessEnvironment variables() const;

private:
    std::vector<QByteArray> m_assignments; ///< made into variables when somebody asks: few do
};

} // namespace korvale
