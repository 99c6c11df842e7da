// Reads texts (each behind its length in decimal and a line feed) from standard input and writes
// what the program's reader makes of each, one line a text, for json_judge.py.
#include "model/JsonValue.h"

#include <QByteArray>

#include <iostream>
#include <iterator>
#include <string>

using namespace korvale;

namespace {

/// Prefix notation: kind, then a number's spelling, a text's bytes in hexadecimal, or a size.
void write(const JsonValue& value) {
    const std::string utf8(value.utf8());
    switch (value.kind()) {
    case JsonKind::Null:
    case JsonKind::False:
    case JsonKind::True:
        std::cout << " "
                  << "nft"[static_cast<int>(value.kind())];
        break;
    case JsonKind::Number:
        std::cout << " N" << utf8;
        break;
    case JsonKind::Text:
        std::cout << " T" << QByteArray::fromStdString(utf8).toHex().constData();
        break;
    case JsonKind::List:
        std::cout << " L" << value.size();
        for (const JsonValue& element : value.elements()) {
            write(element);
        }
        break;
    case JsonKind::Object:
        std::cout << " O" << value.size();
        for (const JsonMember& member : value.members()) {
            write(member.name);
            write(member.value);
        }
        break;
    }
}

} // namespace

int main() {
    std::size_t size = 0;
    while (std::cin >> size && std::cin.get() == '\n') {
        std::string text(size, '\0');
        if (!std::cin.read(text.data(), static_cast<std::streamsize>(size))) {
            return 1;
        }
        const auto value = JsonValue::parse(QByteArray::fromStdString(text));
        std::cout << (value ? "value" : "absent");
        if (value) {
            write(*value);
        }
        std::cout << '\n';
    }
    return 0;
}
