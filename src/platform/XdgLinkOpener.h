#pragma once

#include "platform/LinkOpener.h"

namespace korvale {

/// Hands links to xdg-open, detached. A desktop without xdg-open opens nothing.
class XdgLinkOpener final : public LinkOpener {
public:
    void openLink(const QString& link) override;
};

} // namespace korvale
