// The launch arguments of the window app, described once: -h/--help and
// --version answer before any application object exists, so they work without
// a display, and the manual page and the shell completions are written from the
// same table. Main thread, at the very start of main().

#pragma once

#include "core/CliProgram.h"

namespace LaunchUsage {

// The app's command line: -scan, -section (its names from SidebarItem), -demo.
CliProgram program();

// Answers -h/--help, --version and the build's --help-man and --completion
// SHELL. Returns the exit status when one of them was given, or -1 when the
// app should start.
int handle(int argc, char *argv[]);

} // namespace LaunchUsage
