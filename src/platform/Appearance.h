#pragma once

#include <QObject>
#include <QVariant>

namespace korvale {

/// The desktop's light or dark appearance, as one entry of the user's global preferences. Main
/// thread.
class Appearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The entry "AppleInterfaceStyle" as last heard: the text "Dark" for a dark desktop; invalid
    /// when there is no such entry or nothing has been heard yet. Never waits.
    [[nodiscard]] virtual QVariant interfaceStyle() const = 0;

Q_SIGNALS:
    /// The desktop said something about its appearance, or answered for the first time. The entry
    /// need not have changed.
    void interfaceThemeChanged();
};

} // namespace korvale
