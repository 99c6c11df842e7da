#include "platform/XdgLinkOpener.h"

#include "core/base/Logging.h"

#include <QProcess>
#include <QUrl>

namespace korvale {

XdgLinkOpener::XdgLinkOpener(QProcessEnvironment environment)
    : m_environment(std::move(environment)) {
    // Each is good for one window: this program's.
    m_environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
    m_environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
}

void XdgLinkOpener::openLink(const QString& link) {
    if (!isOpenableLink(link)) {
        return;
    }
    QProcess opener;
    opener.setProgram(QStringLiteral("xdg-open"));
    // The encoded form starts with its scheme, so it is never taken for an option.
    opener.setArguments({QString::fromLatin1(QUrl(link, QUrl::StrictMode).toEncoded())});
    opener.setProcessEnvironment(m_environment);
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    if (!opener.startDetached()) {
        logLine(LogLevel::Warn, "xdg-open cannot start, the link stays closed: %@",
                opener.errorString());
    }
}

} // namespace korvale
