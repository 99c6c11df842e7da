#pragma once

#include "agent/base/ControlInterface.h"
#include "agent/bus/BusInterface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonObject>

#include <optional>

namespace korvale::agent {

/// One call of korvale-agentctl. Copies answer the same call; it is to be answered once.
struct ControlCall {
    QDBusMessage message;
    QDBusConnection connection;
    const control::Method* method = nullptr; ///< an entry of control::kMethods
    QJsonObject arguments;

    /// The arguments that a text holds: a JSON object of at most `kLongestArguments` bytes.
    [[nodiscard]] static std::optional<QJsonObject> argumentsOf(const QByteArray& text);
    /// Bytes of arguments that are looked at.
    static constexpr qsizetype kLongestArguments = qsizetype{1} << 20;

    /// The bus name of the caller.
    [[nodiscard]] QString caller() const { return message.service(); }
    /// Answers with `answer` and "ok" true.
    void succeed(QJsonObject answer = {}) const;
    /// Answers with "ok" false, one of the codes of ControlInterface.h, and a sentence.
    void fail(std::string_view code, const QString& sentence) const;
    /// Answers with exactly this object.
    void reply(const QJsonObject& answer) const;
};

/// Takes the calls.
class ControlHandler {
public:
    virtual ~ControlHandler() = default;
    /// Answers now or later.
    virtual void control(const ControlCall& call) = 0;
};

/// The interface "com.korvale.agent_control": each method takes one text and answers one text, both
/// of them JSON objects. Arguments that are none are answered here.
class ControlPort : public BusInterface {
public:
    /// `handler` must outlive this object.
    explicit ControlPort(ControlHandler& handler) : m_handler(handler) {}

    [[nodiscard]] QString interfaceName() const override;
    [[nodiscard]] QString introspection() const override;
    bool handle(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    ControlHandler& m_handler;
};

} // namespace korvale::agent
