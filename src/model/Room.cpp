#include "model/Displays.h"
#include "model/TableFeeds.h"
