#include "model/UpdaterStatusFolder.h"

#include "model/Paths.h"
#include "model/Utf8Text.h"
#include "platform/RootedPath.h"
#include "platform/SmallFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace korvale {
namespace {

namespace fs = std::filesystem;

/// In bytes. A status line is far shorter, and decoding takes several times its size.
constexpr qint64 largestStatusFile = 1 << 20;

bool isStatusFile(const fs::directory_entry& entry, const std::string& name) {
    const std::optional<QString> text = textFromUtf8(name);
    std::error_code ignored;
    return text && pathExtension(*text) == u"kvupupdate" && entry.is_regular_file(ignored);
}

} // namespace

UpdaterStatusFolder::UpdaterStatusFolder()
    : UpdaterStatusFolder(
          rootedPath(QStringLiteral(KORVALE_SUPPORT_DIR "/Desktop/download/status"))) {}

UpdaterStatusFolder::UpdaterStatusFolder(QString folder) : m_folder(std::move(folder)) {}

std::optional<QString> UpdaterStatusFolder::takeNext() {
    std::optional<std::string> next;
    std::error_code error;
    fs::directory_iterator entry(m_folder.toStdString(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        // The order of UTF-8 bytes is that of the characters' codes.
        std::string name = entry->path().filename().native();
        if (name > m_lastDisplayed && (!next || name < *next) && isStatusFile(*entry, name)) {
            next = std::move(name);
        }
    }
    if (!next) {
        return std::nullopt;
    }
    m_lastDisplayed = *next;
    return m_folder + u'/' + QString::fromStdString(*next);
}

std::optional<QString> readStatusFile(const QString& path) {
    const std::optional<QByteArray> content = readSmallFile(path, largestStatusFile);
    return content ? textFromUtf8(*content) : std::nullopt;
}

} // namespace korvale
