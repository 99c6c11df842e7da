#include "platform/XdgLinkOpener.h"

#include "core/base/Logging.h"

#include <QProcess>
#include <QStringList>
#include <QUrl>

#include <utility>

namespace korvale {
namespace {

/// Real ones have some ten characters; no program starts with an environment that is too large.
constexpr qsizetype longestToken = 1024;

/// The two variables of a token, for programs on Wayland and on X11.
QStringList tokenVariables() {
    return {QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("DESKTOP_STARTUP_ID")};
}

} // namespace

XdgLinkOpener::XdgLinkOpener(StartEnvironment environment)
    : m_environment(std::move(environment)) {}

void XdgLinkOpener::openLink(const QString& link, const QString& activationToken) {
    if (isOpenableLink(link)) {
        open(QUrl(link, QUrl::StrictMode).toEncoded(), activationToken);
    }
}

bool XdgLinkOpener::openFolder(const QString& path) {
    // The slash at its end leads nowhere but into a folder.
    const QByteArray address = QUrl::fromLocalFile(path).toEncoded();
    return open(address.endsWith('/') ? address : address + '/', {});
}

bool XdgLinkOpener::open(const QByteArray& address, const QString& activationToken) {
    QProcess opener;
    opener.setProgram(QStringLiteral("xdg-open"));
    // The encoded form starts with its scheme, so it is never taken for an option.
    opener.setArguments({QString::fromLatin1(address)});
    QProcessEnvironment environment = m_environment.variables();
    for (const QString& variable : tokenVariables()) {
        if (!activationToken.isEmpty() && activationToken.size() <= longestToken) {
            environment.insert(variable, activationToken);
        } else {
            environment.remove(variable); // it was good for one window: this program's
        }
    }
    opener.setProcessEnvironment(environment);
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    if (opener.startDetached()) {
        return true;
    }
    logLine(LogLevel::Warn, "xdg-open cannot start, the link stays closed: %@",
            opener.errorString());
    return false;
}

} // namespace korvale
