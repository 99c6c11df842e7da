#include "model/FastHash.h"

#include <QRandomGenerator>

namespace korvale {

std::uint64_t hashSeed() {
    static const std::uint64_t seed = QRandomGenerator::system()->generate64();
    return seed;
}

} // namespace korvale
