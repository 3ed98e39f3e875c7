#pragma once

#include <cstdint>
#include <string>

/// From when the process shows the window with that title until standard input ends, asks the
/// window again and again whether it is alive, and then says the longest time that an answer took:
/// so long the program did not attend to its events. Whether all went well.
[[nodiscard]] bool watchPauses(std::uint32_t processId, const std::string &title);
