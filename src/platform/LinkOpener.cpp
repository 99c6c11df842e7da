#include "platform/LinkOpener.h"

#include <QUrl>

#include <algorithm>

namespace korvale {

bool isOpenableLink(const QString& link) {
    // Half a surrogate pair is no character; a whole one is one, not two.
    const auto characters = link.toUcs4();
    const auto isForbidden = [](char32_t c) { return QChar::isSpace(c) || !QChar::isPrint(c); };
    if (!link.isValidUtf16() || std::any_of(characters.begin(), characters.end(), isForbidden)) {
        return false;
    }
    const QUrl url(link, QUrl::StrictMode);
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

} // namespace korvale
