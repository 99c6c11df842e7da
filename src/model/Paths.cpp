#include "model/Paths.h"

namespace korvale {
namespace {

/// A path of slashes alone keeps one.
QStringView withoutTrailingSlashes(QStringView path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

QStringView lastComponent(QStringView path) {
    path = withoutTrailingSlashes(path);
    return path == u"/" ? path : path.sliced(path.lastIndexOf(u'/') + 1);
}

} // namespace

QString lastPathComponent(QStringView path) {
    return lastComponent(path).toString();
}

QString directoryOf(QStringView path) {
    path = withoutTrailingSlashes(path);
    return withoutTrailingSlashes(path.first(path.lastIndexOf(u'/') + 1)).toString();
}

QString pathExtension(QStringView path) {
    const QStringView name = lastComponent(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.sliced(dot + 1).toString() : QString();
}

} // namespace korvale
