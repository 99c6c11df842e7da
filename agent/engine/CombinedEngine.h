#pragma once

#include "agent/engine/Engine.h"

namespace korvale::agent {

/// The built-in engine first, which finds at once, then the other one, if there is one. What is
/// found gets the SHA-256 of its content.
class CombinedEngine final : public Engine {
public:
    /// Both are borrowed and outlive it. `other` may be null: then the built-in one alone decides.
    CombinedEngine(Engine& builtIn, Engine* other);

    Judgement judge(int descriptor, std::chrono::milliseconds deadline,
                    std::stop_token stop = {}) override;
    /// That of the other engine, with a key for both; the built-in one's when it is alone.
    [[nodiscard]] EngineState state() const override;
    EngineState refresh() override;

private:
    static EngineState combined(const EngineState& builtIn, EngineState other);

    Engine& m_builtIn;
    Engine* m_other;
};

} // namespace korvale::agent
