#include "platform/LinkOpener.h"

#include <QUrl>

#include <algorithm>

namespace korvale {

bool isOpenableLink(const QString& link) {
    const auto isForbidden = [](QChar c) { return c.isSpace() || !c.isPrint(); };
    if (std::any_of(link.begin(), link.end(), isForbidden)) {
        return false;
    }
    const QUrl url(link, QUrl::StrictMode);
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

} // namespace korvale
