#pragma once

#include <QByteArray>

#include <vector>

namespace korvale {

/// The user's languages, the most wanted first, from LANGUAGE and the locale for messages:
/// "de_AT@euro" gives de_AT@euro, de_AT, de@euro, de. None in the locales C and POSIX, where
/// LANGUAGE does not count (gettext's rule), which is the untranslated program.
[[nodiscard]] std::vector<QByteArray> userLanguages();

} // namespace korvale
