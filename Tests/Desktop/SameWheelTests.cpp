#include "Desktop/DesktopTest.hpp"

#include <cmath>
#include <filesystem>
#include <random>
#include <sstream>

/// With all settings at their defaults a wheel does to applications what it does without the program.
namespace trelvan::desktop {
namespace {

constexpr int notch = HardwareDevice::partsOfANotch;

class SameWheelTest : public DesktopTest {
  protected:
    struct Parts {
        int up = 0;
        int left = 0;
    };
    using Stroke = std::vector<Parts>;
    enum class Pace { asFastAsItGoes, oneByOne };
    /// Begins each turn in the record of the toolkit's window.
    static constexpr auto turnMark = "wheel ";

    static Stroke notches() {
        Stroke stroke;
        for (const int up : {1, 1, 1, -1, -1, 2, -3}) stroke.push_back({up * notch, 0});
        for (const int left : {1, 1, -1, -1, -1, 2, -1}) stroke.push_back({0, left * notch});
        stroke.push_back({notch, -notch});
        return stroke;
    }
    /// Parts of notches in both directions; whole notches all together, so that the wheel ends as it began.
    static Stroke fractions() {
        std::mt19937 random(3);
        std::uniform_int_distribution<int> fraction(1, 100);
        Stroke stroke;
        Parts sum;
        for (int step = 0; step < 600; ++step) {
            const int part = step / 40 % 2 == 0 ? fraction(random) : -fraction(random);
            stroke.push_back(step % 4 == 3 ? Parts{0, part} : Parts{part, 0});
            sum = {sum.up + stroke.back().up, sum.left + stroke.back().left};
        }
        // A busy toolkit forgets all motions but the last; so the last one has both axes.
        stroke.push_back({notch - sum.up % notch, notch - sum.left % notch});
        return stroke;
    }
    void make(const Stroke& stroke) {
        for (const Parts& parts : stroke) trackball().scrollParts(parts.up, parts.left);
    }
    /// What the client is shown for the stroke: every wheel button with its modifiers.
    std::string shownFor(const Stroke& stroke) {
        client().forget();
        make(stroke);
        passSentinel();
        std::ostringstream shown;
        for (const ClientEvent& event : client().events()) {
            if (event.button < 4 || event.button > 7) continue;
            shown << (event.kind == Kind::buttonPress ? '+' : '-') << event.button << " state " << event.state
                  << '\n';
        }
        return shown.str();
    }

    /// How far a toolkit's window has scrolled after each part of the stroke.
    std::vector<Turn> scrolledAfterEach(const Stroke& stroke) {
        client().forget();
        std::vector<Turn> result;
        for (const Parts& parts : stroke) {
            make({parts});
            passSentinel();
            result.push_back(client().scrolled());
        }
        return result;
    }

    /// What another program with a window in the client's place writes into the file for the stroke, between
    /// a click of the middle button and one of the left. `marks` are its words for the two. `first` comes
    /// before.
    std::string recordedBy(std::vector<std::string> arguments, const std::filesystem::path& record,
                           const std::pair<std::string, std::string>& marks, const Stroke& stroke,
                           Pace pace = Pace::asFastAsItGoes, const Stroke& first = {}) {
        closeClient();
        std::filesystem::remove(record);
        const ChildProcess recorder({.arguments = std::move(arguments),
                                     .environment = desktop().environment(),
                                     .directory = desktop().folder(),
                                     .output = record,
                                     .errors = desktop().folder() / "recorder.errors"});
        const XConnection connection(desktop().displayName());
        const auto listens = [&] {
            XWarpPointer(connection.get(), None, connection.root(), 0, 0, 0, 0, 700, 400);
            XSync(connection.get(), False);
            trackball().click(2);
            // A terminal that does not report the mouse yet takes each click for a wish to paste.
            return waitUntil([&] { return readFile(record).find(marks.first) != std::string::npos; },
                             std::chrono::milliseconds{50});
        };
        EXPECT_TRUE(waitUntil(listens)) << readFile(desktop().folder() / "recorder.errors");
        if (!first.empty()) {
            make(first);
            const auto begun = readFile(record).rfind(marks.first);
            trackball().click(2);
            EXPECT_TRUE(waitUntil([&] { return readFile(record).rfind(marks.first) != begun; }));
        }
        for (const Parts& parts : stroke) {
            const auto before = readFile(record).rfind(turnMark);
            make({parts});
            if (pace == Pace::oneByOne) {
                EXPECT_TRUE(waitUntil([&] { return readFile(record).rfind(turnMark) != before; }));
            }
        }
        trackball().click(1);
        EXPECT_TRUE(waitUntil([&] { return readFile(record).find(marks.second) != std::string::npos; }));
        const std::string all = readFile(record);
        const auto begin = all.rfind(marks.first);
        const auto end = all.find(marks.second);
        useClient(Protocol::core);
        if (begin == std::string::npos || end == std::string::npos) return "no record";
        return all.substr(begin, end - begin);
    }
    std::string recordedByQt(const Stroke& stroke, Pace pace) {
        return recordedBy({WHEEL_RECORDER}, desktop().folder() / "wheel.record", {"button 4\n", "button 1\n"},
                          stroke, pace);
    }
    std::string recordedByGtk(const Stroke& stroke, Pace pace) {
        // By itself GTK ignores how far a device's wheel turns first in a window.
        return recordedBy({"/usr/bin/python3", GTK_WHEEL_RECORDER}, desktop().folder() / "gtk.record",
                          {"button 2\n", "button 1\n"}, stroke, pace,
                          {{notch, 0}, {notch, 0}, {0, notch}, {0, notch}});
    }
    /// That the toolkit's window turned as far as the wheel did, in the unit of both.
    static void expectWholeStroke(const std::string& record, const Stroke& stroke, int rounding) {
        std::istringstream words(record);
        Parts sum;
        for (const Parts& parts : stroke) sum = {sum.up - parts.up, sum.left - parts.left};
        for (std::string word; words >> word;) {
            if (word != "wheel") continue;
            int x = 0;
            int y = 0;
            words >> x >> y;
            sum = {sum.up + y, sum.left + x};
        }
        EXPECT_LE(std::abs(sum.up), rounding) << record;
        EXPECT_LE(std::abs(sum.left), rounding) << record;
    }
    /// A terminal that is asked to report the mouse to the program inside it.
    std::string recordedByXterm(const Stroke& stroke) {
        const auto record = desktop().folder() / "xterm.record";
        const std::string script =
            "stty raw -echo; printf '\\033[?1000h\\033[?1006h'; exec cat > '" + record.string() + "'";
        return recordedBy({"/usr/bin/xterm", "-geometry", "150x35+240+160", "-e", "sh", "-c", script}, record,
                          {"[<1;", "[<0;"}, stroke);
    }
};

TEST_F(SameWheelTest, CoreClientIsShownTheSameNotches) {
    const std::string without = shownFor(notches());
    start(Settings());
    EXPECT_EQ(shownFor(notches()), without);
    EXPECT_NE(without, "");
}

TEST_F(SameWheelTest, CoreClientIsShownTheSameForPartsOfNotches) {
    const std::string without = shownFor(fractions());
    start(Settings());
    EXPECT_EQ(shownFor(fractions()), without);
    EXPECT_NE(without, "");
}

TEST_F(SameWheelTest, ToolkitScrollsTheSameAfterEachNotch) {
    useClient(Protocol::xinput2);
    const auto without = scrolledAfterEach(notches());
    start(Settings());
    EXPECT_EQ(scrolledAfterEach(notches()), without);
    EXPECT_EQ(without.at(2), (Turn{3, 0}));
}

TEST_F(SameWheelTest, ToolkitScrollsPartsOfNotchesOnceTheyAreWhole) {
    useClient(Protocol::xinput2);
    const auto without = scrolledAfterEach(fractions());
    start(Settings());
    const auto with = scrolledAfterEach(fractions());
    ASSERT_EQ(with.size(), without.size());
    for (std::size_t step = 0; step < with.size(); ++step) {
        // Never ahead or behind by a whole line, and nothing of it adds up.
        EXPECT_LT(std::abs(with[step].vertical - without[step].vertical), 1) << "step " << step;
        EXPECT_LT(std::abs(with[step].horizontal - without[step].horizontal), 1) << "step " << step;
        EXPECT_EQ(with[step].vertical, std::round(with[step].vertical));
    }
    EXPECT_NEAR(with.back().vertical, without.back().vertical, 1e-6);
    EXPECT_NEAR(with.back().horizontal, without.back().horizontal, 1e-6);
}

TEST_F(SameWheelTest, QtWindowReceivesTheSameNotches) {
    const Stroke stroke{{notch, 0}, {notch, 0}, {-notch, 0}, {0, notch}, {0, -notch}, {0, -notch}};
    const std::string without = recordedByQt(stroke, Pace::oneByOne);
    start(Settings());
    EXPECT_EQ(recordedByQt(stroke, Pace::oneByOne), without);
    EXPECT_NE(without.find("wheel 0 120"), std::string::npos) << without;
}

TEST_F(SameWheelTest, QtWindowScrollsAsFarForPartsOfNotchesAndForSeveral) {
    for (const Stroke& stroke : {notches(), fractions()}) {
        // The toolkit rounds each part to its own unit.
        expectWholeStroke(recordedByQt(stroke, Pace::asFastAsItGoes), stroke, 2);
        start(Settings());
        expectWholeStroke(recordedByQt(stroke, Pace::asFastAsItGoes), stroke, 0);
        stop();
    }
}

TEST_F(SameWheelTest, GtkWindowScrollsTheSameAfterEachNotch) {
    const Stroke stroke{{notch, 0}, {notch, 0}, {-notch, 0}, {0, notch}, {0, -notch}, {0, -notch}};
    const std::string without = recordedByGtk(stroke, Pace::oneByOne);
    start(Settings());
    EXPECT_EQ(recordedByGtk(stroke, Pace::oneByOne), without);
    EXPECT_NE(without.find(turnMark), std::string::npos) << without;
}

TEST_F(SameWheelTest, GtkWindowScrollsAsFarForPartsOfNotches) {
    const auto sum = [](const std::string& record) {
        std::istringstream words(record);
        std::pair<double, double> total;
        for (std::string word; words >> word;) {
            if (word != "wheel") continue;
            double x = 0;
            double y = 0;
            words >> x >> y;
            total = {total.first + x, total.second + y};
        }
        return total;
    };
    const auto without = sum(recordedByGtk(fractions(), Pace::asFastAsItGoes));
    start(Settings());
    const auto with = sum(recordedByGtk(fractions(), Pace::asFastAsItGoes));
    // A line is 68 points and more, and each record is rounded to thousandths.
    EXPECT_NEAR(with.first, without.first, 1);
    EXPECT_NEAR(with.second, without.second, 1);
    EXPECT_NE(with.first, 0);
}

TEST_F(SameWheelTest, XtermReceivesTheSameNotchesAndParts) {
    for (const Stroke& stroke : {notches(), fractions()}) {
        const std::string without = recordedByXterm(stroke);
        start(Settings());
        EXPECT_EQ(recordedByXterm(stroke), without);
        EXPECT_NE(without.find("[<64;"), std::string::npos) << without;
        stop();
    }
}

}  // namespace
}  // namespace trelvan::desktop
