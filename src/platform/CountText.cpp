#include "platform/CountText.h"

#include <QLocale>

namespace korvale {

QString countText(std::int64_t count) {
    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
    return locale.toString(static_cast<qlonglong>(count));
}

} // namespace korvale
