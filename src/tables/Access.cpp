#include "tables/Access.h"

#include "tables/CustHeaderAccess.h"
#include "tables/CustHeaderView.h"
#include "tables/KvImageAccess.h"
#include "tables/KvImageView.h"

#include <QAccessible>

namespace korvale {
namespace {

/// The toolkit owns what it returns.
QAccessibleInterface* accessOf(const QString& /*className*/, QObject* object) {
    if (auto* header = qobject_cast<CustHeaderView*>(object)) {
        return new CustHeaderAccess(*header);
    }
    if (auto* picture = qobject_cast<KvImageView*>(object)) {
        return new KvImageAccess(*picture);
    }
    return nullptr;
}

} // namespace

void installAccess() {
    QAccessible::installFactory(accessOf); // knows each factory once
}

} // namespace korvale
