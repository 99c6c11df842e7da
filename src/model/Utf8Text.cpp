#include "model/Utf8Text.h"

#include <QStringDecoder>

namespace korvale {

std::optional<QString> textFromUtf8(QByteArrayView bytes) {
    // Stateless: a sequence that the end cuts off is an error, not something to wait for.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace korvale
