#include "agent/watch/DescriptorMessage.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/uio.h>

namespace korvale::agent {
namespace {

struct Control {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> bytes{};
};

} // namespace

bool sendMessage(int socket, const void* message, std::size_t size, int descriptor) {
    iovec content{const_cast<void*>(message), size};
    Control control;
    msghdr header{};
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    if (descriptor >= 0) {
        header.msg_control = control.bytes.data();
        header.msg_controllen = control.bytes.size();
        cmsghdr* const part = CMSG_FIRSTHDR(&header);
        part->cmsg_level = SOL_SOCKET;
        part->cmsg_type = SCM_RIGHTS;
        part->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(part), &descriptor, sizeof descriptor);
    }
    ssize_t sent = -1;
    do {
        sent = ::sendmsg(socket, &header, MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(size);
}

Received receiveMessage(int socket, void* message, std::size_t size, UniqueFd& descriptor) {
    for (;;) {
        iovec content{message, size};
        Control control;
        msghdr header{};
        header.msg_iov = &content;
        header.msg_iovlen = 1;
        header.msg_control = control.bytes.data();
        header.msg_controllen = control.bytes.size();
        const ssize_t got = ::recvmsg(socket, &header, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return got < 0 && errno == EAGAIN ? Received::Nothing : Received::End;
        }
        descriptor.reset();
        const cmsghdr* const part = CMSG_FIRSTHDR(&header);
        if (part != nullptr && part->cmsg_type == SCM_RIGHTS) {
            int passed = -1;
            std::memcpy(&passed, CMSG_DATA(part), sizeof passed);
            descriptor.reset(passed);
        }
        if (got == static_cast<ssize_t>(size)) {
            return Received::Message;
        }
    }
}

} // namespace korvale::agent
