#pragma once

#include <QLatin1String>
#include <QList>

#include <optional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace korvale {

class MainWindowToolbar;

namespace toolbar_item {
inline constexpr QLatin1String emptyButton{"KvEmptyButton"};
inline constexpr QLatin1String appIcon{"KvAppIcon"};
inline constexpr QLatin1String logoImage{"KvLogoImage"};
inline constexpr QLatin1String flexibleSpace{"NSToolbarFlexibleSpaceItem"};
} // namespace toolbar_item

/// One thing in the toolbar. An item without a view is plain: a flexible space takes what room the
/// others leave.
struct ToolbarItem {
    QLatin1String identifier;
    QWidget* view = nullptr; ///< not owned
};

/// Who says what stands in a toolbar.
class ToolbarDelegate {
public:
    virtual ~ToolbarDelegate() = default;
    [[nodiscard]] virtual QList<QLatin1String>
    toolbarDefaultItemIdentifiers(MainWindowToolbar& toolbar) = 0;
    /// No value: the toolbar skips that identifier.
    [[nodiscard]] virtual std::optional<ToolbarItem>
    toolbarItemForItemIdentifier(MainWindowToolbar& toolbar, QLatin1String identifier) = 0;
};

} // namespace korvale
