#pragma once

#include "core/StatusOptions.h"

#include <QByteArray>
#include <QVariantMap>

namespace korvale {

/// What became of the question.
enum class StatusAnswer {
    Known,      ///< the program told its properties
    NotRunning, ///< nobody has its name, or there is no session bus
    NoAnswer,   ///< it is there and says nothing
};

/// What is printed, with its line feed. `properties` are those of com.korvale.ui.Status1 as they
/// came from the bus; whatever is missing or of another type counts as not known.
[[nodiscard]] QByteArray statusText(StatusForm form, StatusAnswer answer,
                                    const QVariantMap& properties);

/// 0 good, 1 unknown, 2 threats or driver missing, 3 not running, 4 no answer; for a bar always 0.
[[nodiscard]] int statusExitCode(StatusForm form, StatusAnswer answer,
                                 const QVariantMap& properties);

} // namespace korvale
