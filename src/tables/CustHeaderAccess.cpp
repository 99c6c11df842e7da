#include "tables/CustHeaderAccess.h"

#include "platform/Texts.h"
#include "tables/CustHeaderView.h"

namespace korvale {

CustHeaderAccess::CustHeaderAccess(CustHeaderView& header)
    : QAccessibleWidget(&header, QAccessible::ColumnHeader), m_header(header) {}

QString CustHeaderAccess::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return m_header.focusedTitle();
    case QAccessible::Description:
        return localizedText("HPS_HeaderHint");
    default:
        return QAccessibleWidget::text(kind);
    }
}

QStringList CustHeaderAccess::actionNames() const {
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
}

void CustHeaderAccess::doAction(const QString& name) {
    if (name == pressAction()) {
        m_header.pressFocused();
    } else {
        QAccessibleWidget::doAction(name);
    }
}

} // namespace korvale
