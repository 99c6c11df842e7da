#pragma once

#include "platform/LinkOpener.h"
#include "platform/StartEnvironment.h"

namespace korvale {

/// Hands links and folders to xdg-open, detached. A desktop without xdg-open opens nothing, and the
/// log says so.
class XdgLinkOpener final : public LinkOpener {
public:
    /// `environment` is what the program was started with: what it has changed for itself since
    /// is none of the browser's business.
    explicit XdgLinkOpener(StartEnvironment environment);

    void openLink(const QString& link, const QString& activationToken) override;
    bool openFolder(const QString& path) override;

private:
    bool open(const QByteArray& address, const QString& activationToken);

    StartEnvironment m_environment;
};

} // namespace korvale
