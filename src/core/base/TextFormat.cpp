#include "core/base/TextFormat.h"

namespace korvale {
namespace {

/// Length of the placeholder at the start of `text` (which begins with a per cent sign), 0 if none.
qsizetype placeholderLength(QStringView text) {
    const auto unitAt = [text](qsizetype i) { return i < text.size() ? text[i].unicode() : u'\0'; };
    switch (unitAt(1)) {
    case u'@':
    case u's':
    case u'i':
    case u'd':
    case u'u':
        return 2;
    case u'l':
        return unitAt(2) == u'i' || unitAt(2) == u'd' ? 3 : 0;
    default:
        return 0;
    }
}

} // namespace

QString formatText(QStringView format, std::initializer_list<QString> arguments) {
    qsizetype room = format.size();
    for (const QString& argument : arguments) {
        room += argument.size();
    }
    QString result;
    result.reserve(room);
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
