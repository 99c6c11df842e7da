#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

namespace korvale::agent {

/// Host-cache files to be written together, in this order; "header.log" comes last, so that it
/// never tells of a file that is not there yet.
struct HostCacheBatch {
    struct File {
        QString name;
        QByteArray content;
    };

    std::vector<File> files;
    std::uint32_t bits = 0; ///< mask bits of what changed
};

} // namespace korvale::agent
