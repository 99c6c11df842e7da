#pragma once

#include <QByteArray>

namespace korvale::sim {

/// The EICAR anti-virus test string (68 harmless ASCII characters), put together at run time so
/// that neither this source nor the program is itself taken for a test file.
[[nodiscard]] QByteArray eicarTestString();

} // namespace korvale::sim
