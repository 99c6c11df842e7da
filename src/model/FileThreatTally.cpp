#include "model/FileThreatTally.h"

#include "model/StateVocabulary.h"

namespace korvale {

void FileThreatTally::add(std::uint32_t state) {
    const bool unsafe = (state & FileStateBit::unsafe) != 0;
    if (!unsafe && (state & FileStateBit::abnormal) == 0) {
        return;
    }
    if ((state & FileStateBit::quarantined) != 0) {
        ++(unsafe ? unsafeQuarantined : abnormalQuarantined);
    } else if ((state & FileStateBit::waived) != 0) {
        ++(unsafe ? unsafeWaived : abnormalWaived);
    } else {
        ++(unsafe ? unsafeDetected : abnormalDetected);
    }
}

} // namespace korvale
