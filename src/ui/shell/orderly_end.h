#pragma once
// An end asked for from outside goes like a close: SIGTERM, SIGINT and
// SIGHUP (a plain kill, Ctrl+C in the terminal, a logout, `systemctl --user
// stop`) and the desktop session's end close every window, so each runs its
// shut-down hook once with the same printed lines and the same save, and the
// event loop ends with status 0. A second signal while that goes on ends the
// process at once, by the signal's default action. The handler only writes a
// byte to a pipe; the event loop reads it and does the rest.
class QGuiApplication;

namespace dialcraft {

void install_orderly_end(QGuiApplication& app);

}  // namespace dialcraft
