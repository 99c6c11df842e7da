#pragma once

#include "agent/app/Configuration.h"

#include <QString>

#include <string>

namespace korvale::agent {

/// The configuration in use, and the file it comes from. What is wrong in the file never takes
/// effect: the last good configuration stays.
class ConfigurationFile {
public:
    explicit ConfigurationFile(std::string file) : m_file(std::move(file)) {}

    /// True when the file's configuration is in use now. Else `problem` says in one line why not.
    /// Waits for the disk.
    bool read() { return take(loadConfiguration(m_file)); }
    /// The same with what was read elsewhere.
    bool take(ConfigurationResult result);

    [[nodiscard]] const Configuration& current() const { return m_current; }
    /// Empty while the file's configuration is in use.
    [[nodiscard]] const QString& problem() const { return m_problem; }
    /// Local time at which the configuration in use was read; empty: never.
    [[nodiscard]] const QString& time() const { return m_time; }
    [[nodiscard]] const std::string& file() const { return m_file; }

private:
    std::string m_file;
    Configuration m_current;
    QString m_problem;
    QString m_time;
};

} // namespace korvale::agent
