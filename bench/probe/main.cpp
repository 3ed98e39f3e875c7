// Looks at another program's windows: plim_probe pause PROCESS TITLE | plim_probe caret

#include "bench/probe/CaretWatch.h"
#include "bench/probe/PauseWatch.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    bool isDone = false;
    if (arguments.size() == 3 && arguments[0] == "pause")
        isDone = watchPauses(std::uint32_t(std::strtoul(arguments[1].c_str(), nullptr, 10)),
                             arguments[2]);
    else if (arguments == std::vector<std::string>{"caret"})
        isDone = watchForCaret();
    else
        std::fputs("usage: plim_probe pause PROCESS TITLE | plim_probe caret\n", stderr);
    return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
}
