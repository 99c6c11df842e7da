#include "shell/StatusItem.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"
#include "shell/Resources.h"

namespace korvale {
namespace {

/// What a colour looks like; the numbers are indexes of Resources::getImage.
struct ColorLook {
    int picture;
    int alternatePicture;
    int titleBarPicture;
    bool namesDevice; ///< the tooltip says of which device it speaks
    const char* stateKey;
};

constexpr ColorLook redLook{4, 5, 12, true, "Unsafe"};
constexpr ColorLook yellowLook{2, 3, 14, false, "OfflineMode"};
constexpr ColorLook greenLook{0, 1, 13, true, "Safe"};

constexpr const ColorLook& lookOf(IconColor color) {
    switch (color) {
    case IconColor::Red:
        return redLook;
    case IconColor::Yellow:
        return yellowLook;
    case IconColor::Green:
        break;
    }
    return greenLook; // any other number too
}

} // namespace

StatusItem::StatusItem(AppState& state, const Resources& resources, QObject* parent)
    : QObject(parent), m_state(state), m_resources(resources) {
    connect(&resources, &Resources::darkModeFlipped, this, &StatusItem::setCurrentIconDispColor);
}

void StatusItem::create() {
    setToolTip(localizedText("ProductEP"));
}

void StatusItem::setIconDispColor(IconColor color) {
    const IconColor result = resultingColor(color);
    const ColorLook& look = lookOf(result);
    setPictures(m_resources.getImage(look.picture), m_resources.getImage(look.alternatePicture));

    // The stored colour starts as red: a first request for red leaves tooltip and title bar alone.
    if (result == m_state.curIconDispColor) {
        return;
    }
    m_titleBarImage = look.titleBarPicture;
    Q_EMIT titleBarPictureChanged(look.titleBarPicture);
    const QString product = localizedText("ProductEP");
    const QString stateText = localizedText(look.stateKey);
    setToolTip(look.namesDevice
                   ? formatText(u"%@\n%@: %@", {product, m_state.customName, stateText})
                   : formatText(u"%@\n%@", {product, stateText}));
    m_state.curIconDispColor = result;
}

void StatusItem::setCurrentIconDispColor() {
    setIconDispColor(m_state.curIconDispColor);
}

IconColor StatusItem::resultingColor(IconColor requested) const {
    const bool isAgentRunning = m_state.statusState != StatusState::NotRunning;
    return !m_state.driverConnected && isAgentRunning ? IconColor::Red : requested;
}

void StatusItem::setMenuOpen(bool isOpen) {
    const qint64 before = shownPicture().cacheKey();
    m_isMenuOpen = isOpen;
    if (shownPicture().cacheKey() != before) {
        Q_EMIT shownPictureSet();
    }
}

void StatusItem::setTrayAvailable(bool isAvailable) {
    if (isAvailable != m_isTrayAvailable) {
        m_isTrayAvailable = isAvailable;
        Q_EMIT trayAvailabilityChanged(isAvailable);
    }
}

/// The same pictures too: whoever lost them gets them with every request.
void StatusItem::setPictures(const QIcon& picture, const QIcon& alternate) {
    m_picture = picture;
    m_alternate = alternate;
    Q_EMIT shownPictureSet();
}

void StatusItem::setToolTip(const QString& text) {
    if (text != m_toolTip) {
        m_toolTip = text;
        Q_EMIT toolTipChanged();
    }
}

} // namespace korvale
