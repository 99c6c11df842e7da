#include "core/AppDelegate.h"

namespace korvale {

int runKorvaleUI(int /*argc*/, char** /*argv*/) {
    return 0;
}

} // namespace korvale
