#pragma once

#include <QAccessibleWidget>

namespace korvale {

class CustHeaderView;

/// What a screen reader sees of a table's titles when they have the focus: the title that keys work
/// on, which can be pressed. Each title by itself is a child of the table, as the toolkit has it.
class CustHeaderAccess final : public QAccessibleWidget {
public:
    /// `header` outlives the object.
    explicit CustHeaderAccess(CustHeaderView& header);

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    CustHeaderView& m_header;
};

} // namespace korvale
