#pragma once

namespace orvelle::test {

// What a long run does to the program from outside, by commands on standard
// input, a line each, and answers on standard output. Each returns at the end
// of the input, with the code that the process ends with.

/// "toggle N": asks the program over the session bus to open or close its menu
/// and waits until N menus are shown; answers the milliseconds that this took,
/// or "failed" and why. "await N" only waits.
int runMenuHand();
/// "text CONTENT": takes the clipboard with that text; answers "taken".
int runClipboardHand();
/// logind on the system bus that the environment names: "sleep", "wake",
/// "lock", "unlock" announce that; each answers "said". "leave" and "return"
/// take its name from the bus and back. Says "inhibited" whenever somebody
/// asks to delay the shutdown.
int runLogindHand();

} // namespace orvelle::test
