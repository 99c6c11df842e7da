#include "agent_sim/TestString.h"

#include <algorithm>
#include <array>

namespace korvale::sim {

QByteArray eicarTestString() {
    // Kept back to front and in pieces.
    constexpr std::array kPieces{"*H+H$!E",  "LIF-TSET-S",  "URIVITNA-DR", "ADNATS-RACIE$",
                                 "}7)CC7)^", "P(45XZP\\4[", "PA@%P!O5X"};
    QByteArray text;
    for (const char* piece : kPieces) {
        text += piece;
    }
    std::reverse(text.begin(), text.end());
    return text;
}

} // namespace korvale::sim
