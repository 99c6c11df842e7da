#pragma once

#include "platform/BusGreeting.h"

#include <QByteArray>
#include <QtEndian>

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale {

/// A process on the bus without a library that keeps it to the rules: it answers calls that nobody
/// made to it, by guessing their numbers.
class RawBusClient {
public:
    explicit RawBusClient(const QByteArray& socketPath)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, socketPath.constData(),
                    static_cast<std::size_t>(socketPath.size()));
        const void* const generic = &address;
        EXPECT_EQ(::connect(m_socket, static_cast<const sockaddr*>(generic), sizeof address), 0);
        send(busGreeting());
        waitForReplyTo(1);
    }
    ~RawBusClient() { ::close(m_socket); }
    RawBusClient(const RawBusClient&) = delete;
    RawBusClient& operator=(const RawBusClient&) = delete;

    /// One reply to each of the first `calls` calls of the client `receiver`: an envelope.
    void answerWithEnvelope(const QByteArray& receiver, int calls, const QByteArray& data) {
        QByteArray entry;
        appendText(entry, "<DATA>");
        entry.append('\2').append("ay").append('\0');
        pad(entry, 4);
        appendNumber(entry, static_cast<quint32>(data.size()));
        entry += data;
        QByteArray body;
        appendNumber(body, static_cast<quint32>(entry.size()));
        pad(body, 8);
        answer(receiver, calls, "a{sv}", body + entry);
    }
    /// The same, a text.
    void answerWithText(const QByteArray& receiver, int calls, const QByteArray& text) {
        QByteArray body;
        appendText(body, text);
        answer(receiver, calls, "s", body);
    }
    /// Returns once the bus has dealt with everything sent so far.
    void flush() {
        QByteArray fields;
        appendField(fields, 1, 'o', "/org/freedesktop/DBus");
        appendField(fields, 3, 's', "GetId");
        appendField(fields, 6, 's', "org.freedesktop.DBus");
        sendMessage(1, fields, {});
        waitForReplyTo(m_serial);
    }

private:
    static void pad(QByteArray& bytes, qsizetype unit) {
        bytes.append((unit - bytes.size() % unit) % unit, '\0');
    }
    static void appendNumber(QByteArray& bytes, quint32 number) {
        std::array<char, sizeof number> little{};
        qToLittleEndian(number, little.data());
        bytes.append(little.data(), little.size());
    }
    static void appendText(QByteArray& bytes, const QByteArray& text) {
        appendNumber(bytes, static_cast<quint32>(text.size()));
        bytes.append(text).append('\0');
    }
    static void startField(QByteArray& fields, char number, char type) {
        pad(fields, 8);
        fields.append(number).append('\1').append(type).append('\0');
    }
    static void appendField(QByteArray& fields, char number, char type, const QByteArray& text) {
        startField(fields, number, type);
        appendText(fields, text);
    }
    static QByteArray replySerial(quint32 serial) {
        QByteArray field;
        startField(field, 5, 'u');
        appendNumber(field, serial);
        return field;
    }

    void answer(const QByteArray& receiver, int calls, const QByteArray& signature,
                const QByteArray& body) {
        for (int call = 1; call <= calls; ++call) {
            QByteArray fields = replySerial(static_cast<quint32>(call));
            appendField(fields, 6, 's', receiver);
            startField(fields, 8, 'g');
            fields.append(static_cast<char>(signature.size())).append(signature).append('\0');
            sendMessage(2, fields, body);
        }
    }
    /// `type`: 1 a call, 2 a reply.
    void sendMessage(char type, const QByteArray& fields, const QByteArray& body) {
        QByteArray message;
        message.append('l').append(type).append(type == 1 ? '\0' : '\1').append('\1');
        appendNumber(message, static_cast<quint32>(body.size()));
        appendNumber(message, ++m_serial);
        appendNumber(message, static_cast<quint32>(fields.size()));
        message += fields;
        pad(message, 8);
        send(message + body);
    }
    void send(const QByteArray& bytes) const {
        EXPECT_EQ(::send(m_socket, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                         MSG_NOSIGNAL),
                  bytes.size());
    }
    void waitForReplyTo(quint32 serial) {
        QByteArray heard;
        std::array<char, 4096> bytes{};
        pollfd readable{m_socket, POLLIN, 0};
        while (!heard.contains(replySerial(serial)) && ::poll(&readable, 1, 20'000) == 1) {
            const ssize_t size = ::recv(m_socket, bytes.data(), bytes.size(), 0);
            if (size <= 0) {
                break;
            }
            heard.append(bytes.data(), size);
        }
        EXPECT_TRUE(heard.contains(replySerial(serial)));
    }

    int m_socket;
    quint32 m_serial = 1; ///< the greeting's
};

} // namespace korvale
