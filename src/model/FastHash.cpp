#include "model/FastHash.h"

#include <QRandomGenerator>

#include <array>

namespace korvale {

std::uint64_t hashSeed() {
    static const std::uint64_t seed = QRandomGenerator::system()->generate64();
    return seed;
}

std::uint64_t fastBlockHash(std::string_view block, std::uint64_t seed) {
    struct Words {
        std::array<std::uint64_t, 8> word;
    };
    constexpr std::array<std::uint64_t, 4> salts{0xA0761D6478BD642FU, 0xE7037ED1A0B428DBU,
                                                 0x8EBC6AF09C88C6E3U, 0x589965CC75374CC3U};
    std::array<std::uint64_t, 4> lanes{seed, ~seed, seed + salts[0], seed ^ salts[1]};
    std::string_view rest = block;
    for (; rest.size() >= sizeof(Words); rest.remove_prefix(sizeof(Words))) {
        Words words;
        std::memcpy(&words, rest.data(), sizeof words);
        for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
            lanes[lane] = mixWords(words.word[lane * 2] ^ salts[lane],
                                   words.word[lane * 2 + 1] ^ lanes[lane]);
        }
    }
    const std::uint64_t both =
        mixWords(lanes[0] ^ salts[2], lanes[1]) ^ mixWords(lanes[2] ^ salts[3], lanes[3]);
    return fastHash(rest, both + block.size());
}

} // namespace korvale
