#include "model/Utf8Text.h"

#include <QStringDecoder>

namespace korvale {

namespace {

using Flag = QStringDecoder::Flag;

} // namespace

std::optional<QString> textFromUtf8(QByteArrayView bytes) {
    // Stateless: a sequence that the end cuts off is an error, not something to wait for.
    QStringDecoder decoder(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text.isNull() ? QStringLiteral("") : text;
}

QString utf8Text(std::string_view valid) {
    const QByteArrayView bytes(valid.data(), static_cast<qsizetype>(valid.size()));
    // Faster, but it drops U+FEFF in front.
    return valid.starts_with("\xEF\xBB\xBF") ? textFromUtf8(bytes).value_or(QString())
                                             : QString::fromUtf8(bytes);
}

} // namespace korvale
