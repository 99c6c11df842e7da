#pragma once

#include <QString>
#include <QStringView>

#include <initializer_list>

namespace korvale {

/// Fills the placeholders of `format` with `arguments`, in order and in one pass: what an argument
/// contains is never taken for a placeholder. Placeholders are %@ %s %i %d %u %li %ld (all alike,
/// the arguments being texts already) and %% for a per cent sign. A placeholder without an argument
/// becomes "(null)"; arguments too many are dropped.
[[nodiscard]] QString formatText(QStringView format, std::initializer_list<QString> arguments);

} // namespace korvale
