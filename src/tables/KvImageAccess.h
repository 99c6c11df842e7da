#pragma once

#include <QAccessibleWidget>

namespace korvale {

class KvImageView;

/// What a screen reader sees of a picture: a graphic, or a button where a click does something.
class KvImageAccess final : public QAccessibleWidget {
public:
    /// `picture` outlives the object.
    explicit KvImageAccess(KvImageView& picture);

    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    KvImageView& m_picture;
};

} // namespace korvale
