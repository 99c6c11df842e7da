#include "agent/engine/ClamdReplies.h"

#include <charconv>

namespace korvale::agent {

bool ClamdReplies::feed(std::string_view bytes, std::vector<ClamdReply>& replies) {
    if (!m_fault.empty()) {
        return false;
    }
    m_begun += bytes;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = m_begun.find('\0', start)) != std::string::npos;
         start = end + 1) {
        if (!take(std::string_view(m_begun).substr(start, end - start), replies)) {
            return false;
        }
    }
    m_begun.erase(0, start);
    if (m_begun.size() > longestReply) {
        m_fault = m_begun.substr(0, 80);
        return false;
    }
    return true;
}

bool ClamdReplies::take(std::string_view line, std::vector<ClamdReply>& replies) {
    ClamdReply reply;
    const char* const end = line.data() + line.size();
    const auto [behind, error] = std::from_chars(line.data(), end, reply.number);
    const std::string_view rest(behind, static_cast<std::size_t>(end - behind));
    if (error != std::errc() || reply.number == 0 || !rest.starts_with(": ") ||
        line.size() > longestReply) {
        m_fault = line.empty() ? "an empty reply" : line.substr(0, 80);
        return false;
    }
    reply.text = rest.substr(2);
    replies.push_back(std::move(reply));
    return true;
}

} // namespace korvale::agent
