#include "tables/KvImageAccess.h"

#include "tables/KvImageView.h"

namespace korvale {

KvImageAccess::KvImageAccess(KvImageView& picture)
    : QAccessibleWidget(&picture), m_picture(picture) {}

QAccessible::Role KvImageAccess::role() const {
    return m_picture.isClickable() ? QAccessible::Button : QAccessible::Graphic;
}

QStringList KvImageAccess::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (m_picture.isClickable()) {
        names.prepend(pressAction());
    }
    return names;
}

void KvImageAccess::doAction(const QString& name) {
    if (name == pressAction() && m_picture.isClickable()) {
        Q_EMIT m_picture.clicked();
    } else {
        QAccessibleWidget::doAction(name);
    }
}

} // namespace korvale
