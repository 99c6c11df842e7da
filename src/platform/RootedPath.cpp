#include "platform/RootedPath.h"

#include <QFile>

namespace korvale {

QString rootedPath(const QString& absolutePath) {
    return QFile::decodeName(qgetenv("KORVALE_ROOT")) + absolutePath;
}

} // namespace korvale
