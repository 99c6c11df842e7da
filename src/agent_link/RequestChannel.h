#pragma once

#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <memory>

namespace korvale {

class ServiceReply;

/// Gets the reply to one request, exactly once. nullptr: what came was not a dictionary (an error,
/// a reply of another signature, no connection at all).
using ReplyHandler = std::function<void(const ServiceReply*)>;

/// A private queue on which one reply is handled. Destroying it abandons a reply that has not come
/// yet: once the destructor has returned, the handler is not running and never will again.
class ReplyQueue {
public:
    ReplyQueue() = default;
    ReplyQueue(const ReplyQueue&) = delete;
    ReplyQueue& operator=(const ReplyQueue&) = delete;
    virtual ~ReplyQueue() = default;
};

/// What the senders of commands need of the service channel. Called on the main thread; nothing
/// here waits, and no request has a time-out.
class RequestChannel {
public:
    virtual ~RequestChannel() = default;

    /// Sends an envelope made by createXPCRequest. The handler runs on the main thread, before the
    /// return when there is no connection at all.
    virtual void send(const QVariantMap& envelope, ReplyHandler handler) = 0;

    /// The same with the handler on a queue of its own, for a main thread that is about to sleep.
    /// Never null.
    [[nodiscard]] virtual std::unique_ptr<ReplyQueue>
    sendOnPrivateQueue(const QVariantMap& envelope, ReplyHandler handler) = 0;

    /// Another number for each life of the service: it changes when the service has lost its name
    /// or the bus has gone, so that what was asked before will not be answered by the present one.
    [[nodiscard]] virtual std::uint32_t serviceLife() const = 0;
};

} // namespace korvale
