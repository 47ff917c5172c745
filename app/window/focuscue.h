#pragma once

/// Styles show the focus of a button or a list of choices only in a window where the Tab key was used. From now
/// on each window that opens, or becomes active again, after a key was pressed shows it at once, and after a
/// press of the mouse as before. Called once, at the start.
void showFocusAfterKeys();
