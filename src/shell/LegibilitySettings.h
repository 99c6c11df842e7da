#pragma once

#include "platform/PortalSetting.h"

#include <QFont>
#include <QObject>

#include <optional>

namespace korvale {

class Resources;

/// What the user has set to see better, as far as the toolkit does not follow it itself: high
/// contrast everywhere, larger text on Wayland (an X server tells its size of text by the
/// resolution, which the toolkit knows). Main thread; nothing waits.
class LegibilitySettings : public QObject {
    Q_OBJECT

public:
    /// `portal` and `resources` outlive the object.
    LegibilitySettings(SettingsPortal& portal, Resources& resources, QObject* parent = nullptr);

    /// Asks the portal and follows it from now on. To be called whenever the portal has started.
    void start();

private:
    void contrastChanged();
    void textScaleChanged();

    Resources& m_resources;
    PortalSetting m_contrast;
    PortalSetting m_textScale;
    std::optional<QFont> m_plainFont; ///< the toolkit's; none while nothing was changed
};

/// The factor that a setting asks for: 1 unless it is a number that a person would set.
[[nodiscard]] double textScaleOf(const QVariant& setting);

} // namespace korvale
