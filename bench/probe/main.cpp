// Looks at another program's windows:
// plim_probe pause PROCESS TITLE | plim_probe caret [LEFT TOP WIDTH HEIGHT]

#include "bench/probe/CaretWatch.h"
#include "bench/probe/PauseWatch.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto number = [&](std::size_t i) {
        return int(std::strtol(arguments[i].c_str(), nullptr, 10));
    };
    bool isDone = false;
    if (arguments.size() == 3 && arguments[0] == "pause")
        isDone = watchPauses(std::uint32_t(number(1)), arguments[2]);
    else if (arguments == std::vector<std::string>{"caret"})
        isDone = watchForCaret(std::nullopt);
    else if (arguments.size() == 5 && arguments[0] == "caret")
        isDone = watchForCaret(Area{number(1), number(2), number(3), number(4)});
    else
        std::fputs("usage: plim_probe pause PROCESS TITLE\n"
                   "       plim_probe caret [LEFT TOP WIDTH HEIGHT]\n",
                   stderr);
    return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
}
