#pragma once

/// Makes sure that file names of any language reach the tools: in a locale without an encoding of its own ("C",
/// "POSIX") the process and its children use UTF-8. Called before the application object is made; does nothing
/// elsewhere.
void useUtf8Paths();

/// Makes Qt draw without a display, unless the environment names a platform. Called before the application
/// object is made.
void useOffscreenPlatform();
