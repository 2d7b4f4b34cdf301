#pragma once
namespace dialcraft {

// Reports disabled Qt Quick controls as disabled to assistive technology.
// Qt 6.4's accessible Qt Quick item never sets the "disabled" state, so over
// AT-SPI a screen reader would announce the inert placeholder panel's button,
// menu and fields as usable. Later Qt versions are expected to do this
// themselves; the override is built for Qt before 6.5 only (the .cpp file
// says why), and elsewhere the call does nothing.

// Installs the accessibility factory that does it; call once before the first
// window is created.
void report_disabled_quick_controls();

}  // namespace dialcraft
