#pragma once

#include <QString>

namespace korvale {

/// The text of `key` in the user's language; English where that language lacks it, the key itself
/// where English lacks it too. Looked up at each call, never cached. Main thread.
/// The translators are installed by Translations; without them every key is its own text.
[[nodiscard]] QString localizedText(const char* key);

} // namespace korvale
