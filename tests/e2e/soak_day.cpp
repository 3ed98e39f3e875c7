// A day's work in minutes: soak_day MINUTES
//
// Drives the built program on the display of the environment, as one who works a hundred times as
// fast, and looks at what its processes take whenever everything is put away again. Ends with 0
// when after the first quarter of the time nothing has grown until the end.

#include "tests/e2e/Keyboard.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/ProcessFamily.h"
#include "tests/e2e/StoredNotes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr int noteCount = 7;    ///< all of them rows on the screen
constexpr double warmUp = 0.25; ///< of the time
constexpr double allowedGrowth = 1.05;
constexpr int restBeforeLook = 1500; ///< ms: what is let go is given back by and by
constexpr int firstColour = 23;      ///< in the options, pixels
constexpr double colourStep = 41.67;
constexpr int colourCount = 7;

struct Look {
    double minutes;
    int edits;
    ProcessFamily family;
};

/// What the looks of a stretch of time have in common.
struct Stretch {
    double megabytes = 0;                                  ///< the median
    qsizetype descriptors = 0, threads = 0, processes = 0; ///< the least

    static Stretch of(std::vector<Look> looks)
    {
        Stretch stretch;
        std::ranges::sort(looks, {}, [](const Look &look) { return look.family.megabytes; });
        stretch.megabytes = looks[looks.size() / 2].family.megabytes;
        const auto least = [&looks](auto member) {
            return std::ranges::min(looks, {},
                                    [member](const Look &look) { return look.family.*member; })
                       .family.*
                   member;
        };
        stretch.descriptors = least(&ProcessFamily::descriptors);
        stretch.threads = least(&ProcessFamily::threads);
        stretch.processes = least(&ProcessFamily::processes);
        return stretch;
    }
};

class Day
{
public:
    explicit Day(double minutes) : m_minutes(minutes) { m_random.seed(1); }

    [[nodiscard]] bool pass()
    {
        QStringList headings;
        for (int note = 0; note < noteCount; ++note)
            headings << u"Note %1"_s.arg(note);
        storeNotesCalled(m_home, headings);
        if (!m_plim.open() || !m_keyboard.isConnected())
            return complain("it does not start");
        m_time.start();
        std::printf("%8s %8s %10s %12s %8s %10s\n", "minute", "edits", "MB", "descriptors",
                    "threads", "processes");
        while (minutes() < m_minutes) {
            if (!work())
                return false;
            look();
        }
        m_plim.sendSignal(SIGTERM);
        const QList<qint64> family = ProcessFamily::members(m_plim.processId());
        if (m_plim.exitCode() != 0)
            return complain("it does not end well");
        const auto areGone = [&family] {
            return std::ranges::none_of(family,
                                        [](qint64 id) { return ::kill(pid_t(id), 0) == 0; });
        };
        if (!QTest::qWaitFor(areGone, XTools::patience))
            return complain("it leaves processes behind");
        const bool isFlat = judge();
        if (!m_plim.warnings().isEmpty())
            return complain(m_plim.warnings().join(u'\n').toUtf8().constData());
        return isFlat;
    }

private:
    [[nodiscard]] double minutes() const { return double(m_time.elapsed()) / 60'000; }

    [[nodiscard]] bool complain(const char *what)
    {
        std::printf("FAILED after %.1f minutes: %s\n", minutes(), what);
        const QString picture = QDir::tempPath() + u"/plim-soak-day.png"_s;
        XTools::run(u"import"_s, {u"-silent"_s, u"-window"_s, u"root"_s, picture});
        std::printf("note %d, main window %s, see %s\n", m_note,
                    m_plim.mainWindow().isActive() ? "active" : "not active", qPrintable(picture));
        const QString said = m_plim.said();
        std::printf("%s\n", qPrintable(said.right(1000)));
        return false;
    }

    /// Some of everything, and then everything is as it was but the notes' colours.
    [[nodiscard]] bool work()
    {
        for (int i = 0; i < 3; ++i) {
            if (!selectAnother() || !edit())
                return complain("an edit in the main window");
        }
        const int stickies = m_random.bounded(1, 4);
        for (int i = 0; i < stickies; ++i) {
            if (!bringForward() || !openSticky((m_note + 1 + i) % noteCount) || !edit())
                return complain("an edit in a sticky window");
            if (!recolour())
                return complain("a change of colour");
        }
        while (!m_plim.stickies().isEmpty()) {
            if (!closeSticky())
                return complain("closing a sticky window");
        }
        if (!bringForward() || !search())
            return complain("a search");
        if (!speak(m_isPolish ? "en" : "pl"))
            return complain("another language");
        return true;
    }

    [[nodiscard]] bool bringForward()
    {
        m_plim.mainWindow().activate();
        return waitFor([this] { return m_plim.mainWindow().isActive(); });
    }

    [[nodiscard]] bool selectAnother()
    {
        m_note = (m_note + m_random.bounded(1, noteCount)) % noteCount;
        return m_plim.selectRow(m_note, storedID(m_note));
    }

    /// Writes something and takes it away again: what is measured is not the user's words.
    [[nodiscard]] bool edit()
    {
        const auto reports = m_plim.said().count("accepted"_L1);
        const QByteArray words =
            '\n' + QByteArray::number(m_random.generate()) + " words and words";
        for (const char key : words) {
            m_keyboard.press(key);
            QTest::qWait(8);
        }
        if (!waitFor([&] { return m_plim.said().count("accepted"_L1) > reports; }))
            return false;
        for (qsizetype i = 0; i < words.size(); ++i) {
            m_keyboard.press('\b');
            QTest::qWait(8);
        }
        ++m_edits;
        return true;
    }

    [[nodiscard]] bool openSticky(int note) { return m_plim.openSticky(note, storedID(note)); }

    [[nodiscard]] bool recolour()
    {
        const StickyOnScreen sticky = m_plim.stickies().constLast();
        sticky.clickControl(StickyOnScreen::Colour);
        if (!waitFor([&] { return m_plim.optionsOf(sticky).has_value(); }))
            return false;
        m_plim.optionsOf(sticky)->click(
            {firstColour + int(colourStep * m_random.bounded(colourCount)), firstColour});
        QTest::qWait(50);
        m_plim.press({u"Escape"_s});
        return waitFor([&] { return !m_plim.optionsOf(sticky); });
    }

    [[nodiscard]] bool closeSticky()
    {
        const auto count = m_plim.stickies().size();
        const StickyOnScreen sticky = m_plim.stickies().constLast();
        sticky.activate();
        if (!waitFor([&] { return sticky.isActive(); }))
            return false;
        m_plim.press({u"ctrl+w"_s});
        return waitFor([&] { return m_plim.stickies().size() < count; });
    }

    [[nodiscard]] bool search()
    {
        m_plim.press({u"ctrl+f"_s});
        m_keyboard.type("note " + QByteArray::number(m_random.bounded(noteCount)));
        QTest::qWait(300);
        m_plim.press({u"Escape"_s, u"Escape"_s});
        QTest::qWait(200);
        return true;
    }

    /// The last menu has the languages, and nothing else. A key that comes before the menu is lost.
    [[nodiscard]] bool speak(const QByteArray &language)
    {
        constexpr int attempts = 5;
        constexpr int menuTime = 300; // ms
        m_isPolish = language == "pl";
        const auto isSpoken = [&] {
            return m_home.read(u".config/Plim/Plim.conf"_s).contains("plimLanguage=" + language);
        };
        for (int attempt = 0; attempt < attempts; ++attempt) {
            for (const QString &key :
                 {u"F10"_s, u"Left"_s, m_isPolish ? u"Home"_s : u"Up"_s, u"Return"_s}) {
                m_plim.press({key});
                QTest::qWait(menuTime * (1 + attempt));
            }
            if (QTest::qWaitFor(isSpoken))
                return true;
            m_plim.press({u"Escape"_s, u"Escape"_s});
            if (!bringForward())
                return false;
        }
        return false;
    }

    void look()
    {
        QTest::qWait(restBeforeLook);
        m_looks.push_back({minutes(), m_edits, ProcessFamily::of(m_plim.processId())});
        const Look &look = m_looks.back();
        std::printf("%8.2f %8d %10.1f %12lld %8lld %10lld\n", look.minutes, look.edits,
                    look.family.megabytes, qlonglong(look.family.descriptors),
                    qlonglong(look.family.threads), qlonglong(look.family.processes));
        std::fflush(stdout);
    }

    [[nodiscard]] bool judge() const
    {
        std::vector<Look> looks = m_looks;
        std::erase_if(looks,
                      [this](const Look &look) { return look.minutes < warmUp * m_minutes; });
        const auto fifth = std::ptrdiff_t(looks.size() / 5);
        if (fifth == 0) {
            std::printf("FAILED: too short to judge\n");
            return false;
        }
        const Stretch before = Stretch::of({looks.begin(), looks.begin() + fifth});
        const Stretch after = Stretch::of({looks.end() - fifth, looks.end()});
        std::printf("\n%-14s %12s %12s\n", "", "first fifth", "last fifth");
        std::printf("%-14s %12.1f %12.1f\n", "MB, median", before.megabytes, after.megabytes);
        bool isFlat = after.megabytes <= allowedGrowth * before.megabytes;
        const auto row = [&isFlat](const char *name, qsizetype first, qsizetype second) {
            std::printf("%-14s %12lld %12lld\n", name, qlonglong(first), qlonglong(second));
            isFlat &= second <= first;
        };
        row("descriptors", before.descriptors, after.descriptors);
        row("threads", before.threads, after.threads);
        row("processes", before.processes, after.processes);
        std::printf("%s\n", isFlat ? "nothing has grown" : "FAILED: something grows");
        return isFlat;
    }

    template <typename Condition>
    [[nodiscard]] static bool waitFor(Condition condition)
    {
        return QTest::qWaitFor(condition, XTools::patience);
    }

    double m_minutes;
    ThrowAwayHome m_home;
    PlimRun m_plim{m_home};
    Keyboard m_keyboard;
    QRandomGenerator m_random;
    QElapsedTimer m_time;
    std::vector<Look> m_looks;
    int m_note = 0;
    int m_edits = 0;
    bool m_isPolish = false;
};
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    bool isNumber = false;
    const double minutes = application.arguments().value(1).toDouble(&isNumber);
    if (!isNumber || minutes <= 0) {
        std::fputs("usage: soak_day MINUTES\n", stderr);
        return 2;
    }
    return Day(minutes).pass() ? 0 : 1;
}
