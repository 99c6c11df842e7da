#pragma once

/// The stand-in is built on the agent's own rooms "publish" and "bus", whose names it uses like its
/// own.
namespace korvale::agent {}
namespace korvale::sim {
using namespace korvale::agent; // NOLINT(google-build-using-namespace)
} // namespace korvale::sim
