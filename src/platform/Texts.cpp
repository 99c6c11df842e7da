#include "platform/Texts.h"

#include <QCoreApplication>

namespace korvale {

QString localizedText(const char* key) {
    return qtTrId(key);
}

} // namespace korvale
