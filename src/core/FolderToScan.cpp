#include "core/FolderToScan.h"

#include "core/base/TextFormat.h"
#include "model/Utf8Text.h"
#include "platform/SafeText.h"
#include "platform/Texts.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <system_error>

namespace korvale {
namespace {

QString refusalOf(const char* key, const QByteArray& argument, int error = 0) {
    const std::string reason = std::generic_category().message(error);
    return formatText(localizedText(key), {singleLineText(QString::fromUtf8(argument)),
                                           QString::fromLocal8Bit(reason.c_str())});
}

} // namespace

FolderToScan FolderToScan::named(const QByteArray& argument) {
    const std::unique_ptr<char, decltype(&std::free)> path(
        ::realpath(argument.constData(), nullptr), &std::free);
    struct stat status {};
    if (!path || ::stat(path.get(), &status) != 0) {
        return {{}, refusalOf("HPS_TermNoFolder", argument, errno)};
    }
    if (!S_ISDIR(status.st_mode)) {
        return {{}, refusalOf("HPS_TermNoFolder", argument, ENOTDIR)};
    }
    const std::optional<QString> text = textFromUtf8(path.get());
    if (!text) {
        return {{}, refusalOf("HPS_TermNotUtf8", argument)};
    }
    return {*text, {}};
}

} // namespace korvale
