#pragma once

#include "platform/LinkOpener.h"

#include <QStringList>

namespace korvale::fakes {

/// Keeps the links that the real opener would open; the others are dropped as it does.
class RecordingLinkOpener final : public LinkOpener {
public:
    void openLink(const QString& link, const QString& activationToken) override {
        if (isOpenableLink(link)) {
            opened.append(link);
            tokens.append(activationToken);
        }
    }

    bool openFolder(const QString& path) override {
        folders.append(path);
        return canOpen;
    }

    bool canOpen = true; ///< folders
    QStringList folders;
    QStringList opened;
    QStringList tokens; ///< one for each
};

} // namespace korvale::fakes
