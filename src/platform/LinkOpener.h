#pragma once

#include <QString>

namespace korvale {

/// Opens links in the user's browser, and folders. Main thread; never waits for who shows them.
class LinkOpener {
public:
    virtual ~LinkOpener() = default;
    /// Opens `link` when it is a valid http or https URL with a host; anything else does nothing.
    /// `activationToken`, which may be empty, is the desktop's leave for the browser to come to the
    /// front.
    virtual void openLink(const QString& link, const QString& activationToken) = 0;
    /// Opens the folder `path`, absolute and known to be one, in the user's file manager. What has
    /// taken its place meanwhile is not opened. False when nothing could be started.
    virtual bool openFolder(const QString& path) = 0;
};

/// True for the links that may be opened: absolute, valid, http or https, with a host.
[[nodiscard]] bool isOpenableLink(const QString& link);

} // namespace korvale
