#include "platform/BusGreeting.h"

#include <QtEndian>

#include <unistd.h>

namespace korvale {
namespace {

void appendNumber(QByteArray& message, quint32 number) {
    const quint32 bytes = qToLittleEndian(number);
    const void* const address = &bytes;
    message.append(static_cast<const char*>(address), sizeof bytes);
}

void padTo8(QByteArray& message) {
    message.append((8 - message.size() % 8) % 8, '\0');
}

/// One header field: its number, its type and the text.
void appendField(QByteArray& fields, char number, char type, const char* text) {
    padTo8(fields);
    fields.append(number).append('\1').append(type).append('\0');
    appendNumber(fields, static_cast<quint32>(qstrlen(text)));
    fields.append(text).append('\0');
}

QByteArray hello() {
    QByteArray fields;
    appendField(fields, 1, 'o', "/org/freedesktop/DBus");
    appendField(fields, 2, 's', "org.freedesktop.DBus");
    appendField(fields, 3, 's', "Hello");
    appendField(fields, 6, 's', "org.freedesktop.DBus");
    QByteArray message("l\1\0\1", 4); // little-endian, a call, no flags, protocol 1
    appendNumber(message, 0);         // length of the body
    appendNumber(message, 1);         // serial
    appendNumber(message, static_cast<quint32>(fields.size()));
    message += fields;
    padTo8(message);
    return message;
}

} // namespace

QByteArray busGreeting() {
    return QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::getuid()).toHex() +
           "\r\nBEGIN\r\n" + hello();
}

bool isGreetingAnswered(const QByteArray& heard) {
    const qsizetype lineEnd = heard.indexOf("\r\n");
    // Behind the line that lets the client in comes a message; the first one is about Hello.
    return lineEnd >= 0 && (!heard.startsWith("OK") || heard.size() > lineEnd + 2);
}

} // namespace korvale
