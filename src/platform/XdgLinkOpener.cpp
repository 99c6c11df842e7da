#include "platform/XdgLinkOpener.h"

#include <QProcess>
#include <QUrl>

namespace korvale {

void XdgLinkOpener::openLink(const QString& link) {
    if (!isOpenableLink(link)) {
        return;
    }
    QProcess opener;
    opener.setProgram(QStringLiteral("xdg-open"));
    // The encoded form starts with its scheme, so it is never taken for an option.
    opener.setArguments({QString::fromLatin1(QUrl(link, QUrl::StrictMode).toEncoded())});
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    opener.startDetached();
}

} // namespace korvale
