#pragma once
namespace dialcraft {

// What the link calls to pause before every message it sends. The pause is
// always the full 8 ms and the link always asks for it; only the function
// that waits can be replaced, so that a fuzz target can press the set button
// hundreds of thousands of times without waiting. Programs never replace it.
using PaceSleep = void (*)(unsigned microseconds);

// Installs `sleep` for every later pause and returns the one it replaces;
// nullptr puts the default back, which is usleep.
PaceSleep set_pace_sleep(PaceSleep sleep);

}  // namespace dialcraft
