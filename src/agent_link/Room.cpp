#include "model/Displays.h"
