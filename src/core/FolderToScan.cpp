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

/// Some file managers can hand on every name by its URI only.
QByteArray pathOf(const QByteArray& argument) {
    constexpr QByteArrayView scheme = "file://";
    const bool isUri =
        argument.startsWith(scheme) && argument.sliced(scheme.size()).startsWith('/');
    return isUri ? QByteArray::fromPercentEncoding(argument.sliced(scheme.size())) : argument;
}

} // namespace

FolderToScan FolderToScan::named(const QByteArray& argument) {
    const QByteArray wanted = pathOf(argument);
    if (wanted.contains('\0')) {
        return {{}, refusalOf("HPS_TermNoFolder", argument, ENOENT)};
    }
    const std::unique_ptr<char, decltype(&std::free)> path(::realpath(wanted.constData(), nullptr),
                                                           &std::free);
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
