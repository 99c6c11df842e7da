#pragma once

#include "agent/base/UniqueFd.h"

#include <cstddef>

namespace korvale::agent {

/// Sends one message and, unless it is -1, a descriptor with it, over a local socket that keeps
/// messages apart. Never waits; false when it is full or the other side is gone. Allocates nothing.
[[nodiscard]] bool sendMessage(int socket, const void* message, std::size_t size, int descriptor);

enum class Received { Message, Nothing, End };

/// Takes one message of exactly `size` bytes; others are dropped. Never waits. Allocates nothing.
[[nodiscard]] Received receiveMessage(int socket, void* message, std::size_t size,
                                      UniqueFd& descriptor);

} // namespace korvale::agent
