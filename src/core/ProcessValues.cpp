#include "core/ProcessValues.h"

namespace korvale {

ProcessValues& processValues() {
    static ProcessValues values;
    return values;
}

void resetProcessValues() {
    processValues() = {};
}

} // namespace korvale
