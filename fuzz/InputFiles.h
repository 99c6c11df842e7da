#pragma once

#include "Target.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <string>

namespace korvale::fuzz {

/// A folder in memory where there is one, for targets that read files.
class InputFolder {
public:
    [[nodiscard]] QString path(const QString& name = {}) const {
        return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
    }
    void write(const QString& name, std::string_view content) const {
        QFile file(path(name));
        require(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        require(file.write(content.data(), static_cast<qint64>(content.size())) ==
                static_cast<qint64>(content.size()));
    }
    void remove(const QString& name) const { QFile::remove(path(name)); }

private:
    static QString place() {
        return QFile::exists(QStringLiteral("/dev/shm")) ? QStringLiteral("/dev/shm/fuzz-XXXXXX")
                                                         : QStringLiteral("/tmp/fuzz-XXXXXX");
    }

    QTemporaryDir m_folder{place()};
};

/// The parts of an input that stands for several files: "=== NAME" on a line of its own begins one.
[[nodiscard]] inline std::map<std::string, std::string> filesIn(std::string_view input) {
    std::map<std::string, std::string> files;
    constexpr std::string_view title = "=== ";
    while (input.starts_with(title)) {
        const std::size_t nameEnd = std::min(input.find('\n'), input.size());
        const std::string name(input.substr(title.size(), nameEnd - title.size()));
        input.remove_prefix(std::min(nameEnd + 1, input.size()));
        const std::size_t end = std::min(input.find("=== "), input.size());
        files[name] = input.substr(0, end);
        input.remove_prefix(end);
    }
    return files;
}

} // namespace korvale::fuzz
