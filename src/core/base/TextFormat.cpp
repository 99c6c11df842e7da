#include "core/base/TextFormat.h"

#include <QVarLengthArray>

#include <algorithm>
#include <numeric>

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
    QVarLengthArray<QStringView, 16> pieces; // put together at once, in memory of just their size
    auto argument = arguments.begin();
    for (qsizetype percent = format.indexOf(u'%'); percent >= 0; percent = format.indexOf(u'%')) {
        pieces.append(format.first(percent));
        format = format.sliced(percent);
        qsizetype length = placeholderLength(format);
        if (length > 0) {
            pieces.append(argument != arguments.end() ? QStringView(*argument++) : u"(null)");
        } else {
            pieces.append(format.first(1));
            length = format.startsWith(u"%%") ? 2 : 1;
        }
        format = format.sliced(length);
    }
    pieces.append(format);
    const qsizetype size =
        std::accumulate(pieces.begin(), pieces.end(), qsizetype{0},
                        [](qsizetype sum, QStringView piece) { return sum + piece.size(); });
    QString result(size, Qt::Uninitialized);
    QChar* next = result.data();
    for (const QStringView piece : pieces) {
        next = std::copy(piece.begin(), piece.end(), next);
    }
    return result;
}

} // namespace korvale
