#pragma once

#include "model/CCCryptMessage.h"
#include "model/UpdaterKey.h"
#include "model/UpdaterKeyTables.h"

#include <QDate>
#include <QString>

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace korvale::fakes {

/// What the updater would leave on `day` for these bytes, framing included.
inline QString encryptedBytes(std::string_view framed, QDate day) {
    const UpdaterKey key(updaterBaseKey, day);
    const std::vector<std::uint8_t> input(framed.begin(), framed.end());
    const std::uint8_t none = 0; // an empty vector has no address
    std::vector<std::uint8_t> output(framed.size() + cipherBlockLength);
    std::size_t length = output.size();
    EXPECT_EQ(CCCrypt_Message(input.empty() ? &none : input.data(), input.size(),
                              key.bytes().data(), key.bytes().size(), updaterVectorArea.data(),
                              output.data(), &length, 1),
              CCCryptStatus::success);
    const QByteArrayView encrypted(output.data(), static_cast<qsizetype>(length));
    return QString::fromLatin1(encrypted.toByteArray().toBase64());
}

/// The same for a text.
inline QString updaterMessage(const QString& text, QDate day) {
    return encryptedBytes("\x01\x02" + text.toStdString() + "\x03\x04\x05", day);
}

} // namespace korvale::fakes
