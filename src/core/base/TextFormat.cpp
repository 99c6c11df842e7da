#include "core/base/TextFormat.h"

#include <array>

namespace korvale {
namespace {

/// Length of the placeholder at the start of `text` (which begins with a per cent sign), 0 if none.
qsizetype placeholderLength(QStringView text) {
    static constexpr std::array placeholders{u"%@", u"%s", u"%i", u"%d", u"%u", u"%li", u"%ld"};
    for (const QStringView placeholder : placeholders) {
        if (text.startsWith(placeholder)) {
            return placeholder.size();
        }
    }
    return 0;
}

} // namespace

QString formatText(QStringView format, std::initializer_list<QString> arguments) {
    QString result;
    auto argument = arguments.begin();
    while (!format.isEmpty()) {
        const qsizetype percent = format.indexOf(u'%');
        if (percent < 0) {
            result += format;
            break;
        }
        result += format.first(percent);
        format = format.sliced(percent);
        if (const qsizetype length = placeholderLength(format); length > 0) {
            result += argument != arguments.end() ? *argument++ : QStringLiteral("(null)");
            format = format.sliced(length);
        } else {
            result += u'%';
            format = format.sliced(format.startsWith(u"%%") ? 2 : 1);
        }
    }
    return result;
}

} // namespace korvale
