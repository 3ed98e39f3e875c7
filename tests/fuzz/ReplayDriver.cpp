#include "tests/RandomSeed.h"
#include "tests/fuzz/FuzzTarget.h"

#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

// Stands in for clang's fuzzer where another compiler builds: gives the target every input of its
// corpus, and then, for some seconds, random changes of them.
//
// fuzz_x CORPUS [SECONDS [SEED]]: what brings the target down is left in the current directory.

namespace
{
QByteArray current; ///< what the target has just been given

/// Of the program itself, so that a busy machine changes nothing.
double secondsUsed()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

void say(std::string_view text)
{
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

/// What the program has of it. No input leaves anything behind, nor does one of a few thousand
/// bytes take many megabytes.
struct Memory {
    std::size_t kept = 0; ///< bytes in use; 0 where a sanitizer has its own
    long most = 0;        ///< that it ever had, in kilobytes

    static Memory now()
    {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return {::mallinfo2().uordblks, usage.ru_maxrss};
    }
    [[nodiscard]] bool isAboutThatOf(const Memory &other) const
    {
        constexpr std::size_t keptMore = 1 << 20;
        constexpr long mostMore = 64 << 10;
        std::fprintf(stderr, "%zu bytes kept after %zu, at most %ld kB after %ld\n", kept,
                     other.kept, most, other.most);
        return kept <= other.kept + keptMore && (kept == 0 || most <= other.most + mostMore);
    }
};

/// Only what a signal's handler may call.
void keepInput(int signal)
{
    static constexpr const char *name = "crash-input";
    const int file = ::open(name, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    [[maybe_unused]] const auto written =
        ::write(file, current.constData(), std::size_t(current.size()));
    say(signal == SIGVTALRM ? "one input takes too long: " : "one input brings it down: ");
    say(name);
    say("\n");
    ::_exit(1);
}

void watchSignals()
{
    // A stack that is used up has no room for the handler either.
    static std::array<char, 65536> stack;
    const stack_t own{.ss_sp = stack.data(), .ss_flags = 0, .ss_size = stack.size()};
    ::sigaltstack(&own, nullptr);
    struct sigaction action = {};
    action.sa_handler = keepInput;
    action.sa_flags = SA_ONSTACK;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGVTALRM})
        ::sigaction(signal, &action, nullptr);
}

void give(const QByteArray &input)
{
    constexpr itimerval patience{.it_interval = {}, .it_value = {.tv_sec = 20, .tv_usec = 0}};
    ::setitimer(ITIMER_VIRTUAL, &patience, nullptr);
    current = input;
    // A copy of exactly that size: a sanitizer sees when the target reads behind it.
    const std::vector<std::uint8_t> bytes(current.cbegin(), current.cend());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

std::vector<QByteArray> inputsIn(const QString &directory)
{
    std::vector<QByteArray> inputs;
    QStringList paths;
    for (QDirIterator files(directory, QDir::Files); files.hasNext();)
        paths += files.next();
    paths.sort(); // the seed must say everything
    for (const QString &path : paths) {
        if (QFile file(path); file.open(QIODevice::ReadOnly))
            inputs.push_back(file.readAll());
    }
    return inputs;
}

class Mutator
{
public:
    Mutator(const std::vector<QByteArray> &inputs, quint32 seed) : m_inputs(inputs), m_random(seed)
    {
    }

    QByteArray next()
    {
        QByteArray input = any();
        for (int change = m_random.bounded(6); change >= 0; --change)
            mutate(input);
        constexpr qsizetype longest = 4096;
        input.truncate(longest);
        return input;
    }

private:
    [[nodiscard]] const QByteArray &any()
    {
        return m_inputs[m_random.bounded(quint32(m_inputs.size()))];
    }
    [[nodiscard]] qsizetype placeIn(const QByteArray &text)
    {
        return m_random.bounded(int(text.size()) + 1);
    }
    [[nodiscard]] QByteArray pieceOf(const QByteArray &text)
    {
        constexpr int longest = 24;
        return text.mid(placeIn(text), m_random.bounded(longest));
    }

    void mutate(QByteArray &input)
    {
        static constexpr std::string_view telling = "<>\"'&;=/!-[]{}()\\#%*_`|,.: \n\t0aZ\x01\x7f";
        const qsizetype at = placeIn(input);
        switch (m_random.bounded(7)) {
        case 0:
            input.insert(at, telling[m_random.bounded(quint32(telling.size()))]);
            return;
        case 1:
            input.insert(at, char(m_random.bounded(256)));
            return;
        case 2:
            if (at < input.size())
                input[at] = char(input[at] ^ (1 << m_random.bounded(8)));
            return;
        case 3:
            input.remove(at, m_random.bounded(16));
            return;
        case 4:
            input.insert(at, pieceOf(input));
            return;
        case 5:
            input.insert(at, pieceOf(any()));
            return;
        default:
            input.insert(at, pieceOf(input).repeated(m_random.bounded(40)));
        }
    }

    const std::vector<QByteArray> &m_inputs;
    QRandomGenerator m_random;
};
} // namespace

int main(int argc, char **argv)
{
    constexpr double someSeconds = 2;
    if (argc < 2) {
        say("which corpus?\n");
        return 1;
    }
    const std::vector<QByteArray> inputs = inputsIn(QString::fromLocal8Bit(argv[1]));
    const double seconds = argc > 2 ? std::strtod(argv[2], nullptr) : someSeconds;
    const quint32 seed = argc > 3 ? quint32(std::strtoul(argv[3], nullptr, 10)) : randomSeed();
    std::fprintf(stderr, "%zu inputs, then seed %u\n", inputs.size(), seed);
    if (inputs.empty() || LLVMFuzzerInitialize(&argc, &argv) != 0)
        return 1;
    watchSignals();
    for (const QByteArray &input : inputs)
        give(input);
    const Memory before = Memory::now();
    Mutator mutator(inputs, seed);
    long count = 0;
    for (const double end = secondsUsed() + seconds; secondsUsed() < end; ++count)
        give(mutator.next());
    std::fprintf(stderr, "%ld changed inputs\n", count);
    return Memory::now().isAboutThatOf(before) ? 0 : 1;
}
