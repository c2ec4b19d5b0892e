#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/RecordingService.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Session/LinuxNotifications.hpp"
#include "Support/CapturingLog.hpp"

#include <QDBusArgument>
#include <QStringList>

namespace trelvan::desktop {
namespace {

constexpr auto serviceName = "org.freedesktop.Notifications";

class LinuxNotificationsTest : public ServerTest {
  protected:
    /// A daemon with these capabilities.
    static RecordingService::Answer daemonWith(const QStringList& capabilities) {
        return [capabilities](const RecordingService::Call& call) -> QVariantList {
            if (call.method == "GetCapabilities") return {capabilities};
            return {1U};
        };
    }
    /// The arguments of the only request to show something.
    static QVariantList shown(const RecordingService& daemon) {
        EXPECT_TRUE(runUntil([&] { return daemon.calls().size() >= 2; }));
        if (daemon.calls().empty() || daemon.calls().back().method != "Notify") return QVariantList(8);
        return daemon.calls().back().arguments;
    }

    NotificationRequest request{.identifier = "1", .kind = {}, .title = "T < U", .body = "a & b <i>c</i>"};
};

/// Answers with the options it was made with.
class Delegate : public NotificationDelegate {
  public:
    explicit Delegate(std::uint32_t options) : options_(options) {}
    void willPresent(const NotificationRequest& /*request*/,
                     const std::function<void(std::uint32_t)>& answer) override {
        ++asked;
        answer(options_);
    }
    int asked = 0;

  private:
    std::uint32_t options_;
};

TEST_F(LinuxNotificationsTest, BodyIsEscapedForADaemonThatReadsMarkup) {
    const RecordingService daemon(busAddress(), serviceName, daemonWith({"body", "body-markup"}));
    LinuxNotifications notifications(bus(), [] { return false; });
    notifications.add(request);
    const auto arguments = shown(daemon);
    EXPECT_EQ(arguments[3], "T < U");
    EXPECT_EQ(arguments[4], "a &amp; b &lt;i&gt;c&lt;/i&gt;");
}

TEST_F(LinuxNotificationsTest, BodyIsPlainForADaemonThatDoesNot) {
    const RecordingService daemon(busAddress(), serviceName, daemonWith({"body"}));
    LinuxNotifications notifications(bus(), [] { return false; });
    notifications.add(request);
    EXPECT_EQ(shown(daemon)[4], "a & b <i>c</i>");
}

TEST_F(LinuxNotificationsTest, RequestCarriesNameIconUrgencyAndSound) {
    const RecordingService daemon(busAddress(), serviceName, daemonWith({}));
    LinuxNotifications notifications(bus(), [] { return false; });
    request.level = InterruptionLevel::timeSensitive;
    notifications.add(request);
    const auto arguments = shown(daemon);
    EXPECT_EQ(arguments[0], "Trelvan");
    EXPECT_EQ(arguments[1], 0U);
    EXPECT_EQ(arguments[2], "input-mouse");
    const auto hints = qdbus_cast<QVariantMap>(arguments[6]);
    EXPECT_EQ(hints["urgency"].value<uchar>(), 1);
    EXPECT_EQ(hints["sound-name"], "message-new-instant");
    EXPECT_EQ(hints["desktop-entry"], "trelvan");
    EXPECT_FALSE(hints.contains("suppress-sound"));
    EXPECT_EQ(arguments[7], -1);
}

TEST_F(LinuxNotificationsTest, CriticalIsCriticalAndPassiveIsLow) {
    for (const auto& [level, urgency] :
         {std::pair{InterruptionLevel::critical, 2}, {InterruptionLevel::passive, 0}}) {
        const RecordingService daemon(busAddress(), serviceName, daemonWith({}));
        LinuxNotifications notifications(bus(), [] { return false; });
        request.level = level;
        notifications.add(request);
        EXPECT_EQ(qdbus_cast<QVariantMap>(shown(daemon)[6])["urgency"].value<uchar>(), urgency);
    }
}

TEST_F(LinuxNotificationsTest, DelegateIsAskedOnlyWhileTheProgramIsFrontmost) {
    const RecordingService daemon(busAddress(), serviceName, daemonWith({}));
    bool isFrontmost = false;
    LinuxNotifications notifications(bus(), [&] { return isFrontmost; });
    Delegate delegate(presentationOption::banner);
    notifications.setDelegate(&delegate);
    notifications.add(request);
    EXPECT_EQ(delegate.asked, 0);
    shown(daemon);
    isFrontmost = true;
    notifications.add(request);
    EXPECT_EQ(delegate.asked, 1);
    ASSERT_TRUE(runUntil([&] { return daemon.calls().size() >= 4; }));
    const auto hints = qdbus_cast<QVariantMap>(daemon.calls().back().arguments.value(6));
    EXPECT_EQ(hints.value("suppress-sound"), true);
    EXPECT_FALSE(hints.contains("sound-name"));
}

TEST_F(LinuxNotificationsTest, WithoutBannerAndListNothingIsShown) {
    const RecordingService daemon(busAddress(), serviceName, daemonWith({}));
    LinuxNotifications notifications(bus(), [] { return true; });
    Delegate silent(presentationOption::sound);
    notifications.setDelegate(&silent);
    notifications.add(request);
    notifications.setDelegate(nullptr);
    request.title = "second";
    notifications.add(request);
    EXPECT_EQ(shown(daemon)[3], "second");
    EXPECT_EQ(daemon.methods(), (std::vector<std::string>{"GetCapabilities", "Notify"}));
}

TEST_F(LinuxNotificationsTest, OnlyAnEqualIdentifierReplaces) {
    const RecordingService daemon(busAddress(), serviceName,
                                  [](const RecordingService::Call& call) -> QVariantList {
                                      if (call.method == "GetCapabilities") return {QStringList()};
                                      return {call.arguments.value(3) == "first" ? 7U : 8U};
                                  });
    LinuxNotifications notifications(bus(), [] { return false; });
    std::vector<uint> replaced;
    for (const auto& [identifier, title] : {std::pair{"a", "first"}, {"b", "second"}, {"a", "third"}}) {
        request.identifier = identifier;
        request.title = title;
        notifications.add(request);
        ASSERT_TRUE(runUntil([&] { return daemon.calls().size() == 2 * (replaced.size() + 1); }));
        replaced.push_back(daemon.calls().back().arguments.value(1).toUInt());
        // The number is on its way back.
        runUntil([] { return false; }, std::chrono::milliseconds{50});
    }
    EXPECT_EQ(replaced, (std::vector<uint>{0, 0, 7}));
}

/// A daemon that numbers what is new and keeps the number of what it replaces.
class NumberingDaemon {
  public:
    explicit NumberingDaemon(const std::string& busAddress, uint first = 1)
        : next_(first), service_(busAddress, serviceName, [this](const RecordingService::Call& call) {
              return answer(call);
          }) {}

    /// The titles shown so far, each with the number that it was to replace.
    using Shown = std::vector<std::pair<std::string, uint>>;
    [[nodiscard]] const Shown& shown() const { return shown_; }

  private:
    QVariantList answer(const RecordingService::Call& call) {
        if (call.method == "GetCapabilities") return {QStringList()};
        const uint replaces = call.arguments.value(1).toUInt();
        shown_.emplace_back(call.arguments.value(3).toString().toStdString(), replaces);
        return {replaces != 0 ? replaces : next_++};
    }

    uint next_;
    Shown shown_;
    RecordingService service_;
};

/// Posts of several kinds, each with an identifier of its own.
class NotificationKindTest : public LinuxNotificationsTest {
  protected:
    void post(const std::string& kind, const std::string& title) {
        request.identifier = "id-" + title;
        request.kind = kind;
        request.title = title;
        notifications.add(request);
    }
    static bool waitFor(const NumberingDaemon& daemon, std::size_t count) {
        return runUntil([&] { return daemon.shown().size() >= count; });
    }

    using Shown = NumberingDaemon::Shown;
    LinuxNotifications notifications{bus(), [] { return false; }};
};

TEST_F(NotificationKindTest, NewsOfTheSameKindReplacesWhatWasShownOfIt) {
    const NumberingDaemon daemon(busAddress());
    post("caps", "one");
    ASSERT_TRUE(waitFor(daemon, 1));
    post("microphone", "two");
    ASSERT_TRUE(waitFor(daemon, 2));
    post("caps", "three");
    ASSERT_TRUE(waitFor(daemon, 3));
    post("microphone", "four");
    ASSERT_TRUE(waitFor(daemon, 4));
    EXPECT_EQ(daemon.shown(), (Shown{{"one", 0}, {"two", 0}, {"three", 1}, {"four", 2}}));
}

TEST_F(NotificationKindTest, WithoutAKindNothingIsReplaced) {
    const NumberingDaemon daemon(busAddress());
    post("", "one");
    post("", "two");
    ASSERT_TRUE(waitFor(daemon, 2));
    EXPECT_EQ(daemon.shown(), (Shown{{"one", 0}, {"two", 0}}));
}

TEST_F(NotificationKindTest, NewsThatComesBeforeTheDaemonAnsweredDoesNotStackEither) {
    const NumberingDaemon daemon(busAddress());
    for (const auto* title : {"one", "two", "three"}) post("caps", title);
    post("microphone", "other");
    ASSERT_TRUE(runUntil([&] { return !daemon.shown().empty() && daemon.shown().back().first == "other"; }));
    // What was overtaken while it waited for its turn is not shown at all.
    EXPECT_EQ(daemon.shown(), (Shown{{"one", 0}, {"three", 1}, {"other", 0}}));
}

TEST_F(NotificationKindTest, AnotherDaemonsNumbersAreNotTakenForThisOnes) {
    {
        const NumberingDaemon first(busAddress(), 7);
        post("caps", "one");
        ASSERT_TRUE(waitFor(first, 1));
        post("caps", "two");
        ASSERT_TRUE(waitFor(first, 2));
        EXPECT_EQ(first.shown().back().second, 7U);
    }
    // Its number 7 may be somebody else's notification.
    const NumberingDaemon second(busAddress(), 3);
    post("caps", "three");
    ASSERT_TRUE(waitFor(second, 1));
    post("caps", "four");
    ASSERT_TRUE(waitFor(second, 2));
    EXPECT_EQ(second.shown(), (Shown{{"three", 0}, {"four", 3}}));
}

TEST_F(NotificationKindTest, NewsThatNobodyCouldShowLeavesTheNextOnesWay) {
    post("caps", "lost");
    post("caps", "lost too");
    runUntil([] { return false; }, std::chrono::milliseconds{100});
    const NumberingDaemon daemon(busAddress());
    post("caps", "shown");
    ASSERT_TRUE(waitFor(daemon, 1));
    EXPECT_EQ(daemon.shown(), (Shown{{"shown", 0}}));
}

TEST_F(LinuxNotificationsTest, MissingDaemonIsLoggedOnce) {
    test::CapturingLog log;
    AppLogger.connect(&log, nullptr);
    LinuxNotifications notifications(bus(), [] { return false; });
    notifications.add(request);
    notifications.add(request);
    EXPECT_TRUE(runUntil([&] { return !log.lines.empty(); }));
    const RecordingService daemon(busAddress(), serviceName, daemonWith({}));
    notifications.add(request);
    shown(daemon);
    AppLogger.disconnect();
    ASSERT_EQ(log.messages(LogLevel::warning).size(), 1U);
    EXPECT_TRUE(log.lines.front().message.starts_with("No hay servicio de notificaciones"));
}

TEST_F(LinuxNotificationsTest, DesktopsAskNobodyForPermission) {
    LinuxNotifications notifications(bus(), [] { return false; });
    std::optional<Notifications::Authorization> answer;
    notifications.getAuthorization([&](auto state) { answer = state; });
    EXPECT_TRUE(runUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, Notifications::Authorization::authorized);
}

}  // namespace
}  // namespace trelvan::desktop
