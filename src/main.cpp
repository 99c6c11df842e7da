#include "core/Launch.h"

int main(int argc, char** argv) {
    return korvale::runKorvaleUI(argc, argv);
}
