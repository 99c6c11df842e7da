#include "model/FileThreatKeys.h"

#include "ParsedJson.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace korvale {
namespace {

/// The scalar identifiers of a list as keys of files.
class Keys {
public:
    explicit Keys(const std::string& list) : m_list(parsedJson(QByteArray::fromStdString(list))) {
        m_storage.bytes = m_list.document()->bytes;
    }

    [[nodiscard]] FileThreatKey key(std::uint32_t state, std::uint32_t element) const {
        return {state, m_list.document()->nodes[element + 1]};
    }
    [[nodiscard]] const FileThreatRows::Storage& storage() const { return m_storage; }
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_list.size()); }

private:
    JsonValue m_list;
    FileThreatRows::Storage m_storage;
};

/// Decimal digits of value + times * 2^64.
std::string plusMultipleOf2To64(std::uint64_t value, std::uint64_t times) {
    __extension__ using Wide = unsigned __int128;
    Wide sum = (static_cast<Wide>(times) << 64U) + value;
    std::string digits;
    for (; sum != 0; sum /= 10) {
        digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(sum % 10)));
    }
    return digits;
}

TEST(FileThreatKeys, IdentifiersThatAreEqualModulo2To64HaveHashesOfTheirOwn) {
    std::string list = "[";
    for (std::uint64_t i = 1; i <= 1000; ++i) {
        list.append(i == 1 ? "\"" : ",\"").append(plusMultipleOf2To64(12345, i)).append("\"");
    }
    const Keys keys(list.append("]"));
    const FileThreatKeys rule(keys.storage());
    std::set<std::uint64_t> hashes;
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        hashes.insert(rule.hash(keys.key(1, i)));
    }
    EXPECT_EQ(hashes.size(), keys.size());
}

TEST(FileThreatKeys, EachByteOfAnIdentifierCounts) {
    const std::string id = "0123456789abcdef0123456789abcdef0123456789";
    std::string list = "[\"" + id + "\"";
    for (std::size_t i = 0; i < id.size(); ++i) {
        std::string other = id;
        other[i] = other[i] == '7' ? '8' : '7';
        list.append(",\"").append(other).append("\"");
    }
    const Keys keys(list + "]");
    const FileThreatKeys rule(keys.storage());
    std::set<std::uint64_t> hashes;
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        hashes.insert(rule.hash(keys.key(9, i)));
        EXPECT_EQ(rule.equal(keys.key(9, 0), keys.key(9, i)), i == 0);
    }
    EXPECT_EQ(hashes.size(), keys.size());
}

TEST(FileThreatKeys, StateAndIdentifierAreOneText) {
    const Keys keys(R"(["12","2",12,"",112,"x",2.0,"02","112"])");
    const FileThreatKeys rule(keys.storage());
    const auto same = [&](FileThreatKey a, FileThreatKey b) {
        EXPECT_EQ(rule.equal(a, b), rule.equal(b, a));
        EXPECT_EQ(rule.equal(a, b), rule.hash(a) == rule.hash(b));
        return rule.equal(a, b);
    };
    EXPECT_TRUE(same(keys.key(1, 0), keys.key(11, 1)));
    EXPECT_TRUE(same(keys.key(1, 0), keys.key(1, 2)));
    EXPECT_TRUE(same(keys.key(11, 1), keys.key(11, 6)));
    EXPECT_TRUE(same(keys.key(112, 3), keys.key(1, 0)));
    EXPECT_TRUE(same({112, {}}, keys.key(1, 0)));
    EXPECT_TRUE(same(keys.key(1, 4), keys.key(1, 8)));
    EXPECT_FALSE(same(keys.key(1, 1), keys.key(1, 7)));
    EXPECT_FALSE(same(keys.key(1, 5), keys.key(2, 5)));
}

} // namespace
} // namespace korvale
