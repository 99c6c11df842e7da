#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QPoint;
class QWidget;
QT_END_NAMESPACE

namespace korvale {

class RowActions;

/// Shows the actions as a menu, which ends itself, in the looks of `owner`. Does not wait.
void showRowMenu(const RowActions& actions, QWidget& owner, const QPoint& globalPosition);

} // namespace korvale
