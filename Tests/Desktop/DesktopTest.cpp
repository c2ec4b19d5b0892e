#include "Desktop/DesktopTest.hpp"

#include <algorithm>
#include <array>

namespace trelvan::desktop {
namespace {

/// The desktop of this run; taken down by the environment below, whatever the tests did.
std::unique_ptr<VirtualDesktop>& shared() {
    static std::unique_ptr<VirtualDesktop> desktop;
    return desktop;
}

class DesktopEnvironment : public testing::Environment {
  public:
    void TearDown() override { shared().reset(); }
};

const auto* const environment = testing::AddGlobalTestEnvironment(new DesktopEnvironment);

}  // namespace

VirtualDesktop& DesktopTest::desktop() {
    return *shared();
}

void DesktopTest::SetUp() {
    if (shared() && !shared()->isAlive()) shared().reset();
    if (!shared()) shared() = std::make_unique<VirtualDesktop>();
    desktop().reset();
    useClient(Protocol::core);
}

void DesktopTest::TearDown() {
    if (!shared() || !shared()->isAlive()) {
        ADD_FAILURE() << "the desktop did not survive the test";
        return;
    }
    for (HardwareDevice* device : {&trackball(), &mouse(), &desktop().keyboard()}) device->releaseAll();
    if (application) {
        EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }))
            << "a key or a button is still held";
        if (HasFailure()) std::cout << "The client received:\n" << describe(client().events());
    }
    if (HasFailure() && running) std::cout << "The program's output:\n" << program().output();
    running.reset();
    application.reset();
}

void DesktopTest::launch(const Settings& settings, const std::map<std::string, std::string>& more,
                         const std::vector<std::string>& command) {
    running.reset();
    running = std::make_unique<TrelvanProcess>(desktop(), settings, more, command);
}

void DesktopTest::start(const Settings& settings, const std::map<std::string, std::string>& more) {
    launch(settings, more);
    // Taking the devices may itself move the pointer to where it is; that is over when a press gets through.
    passSentinel();
    client().warpPointer(client().middle());
    client().forget();
}

void DesktopTest::useClient(Protocol protocol, const std::string& windowClass) {
    application.reset();
    application = std::make_unique<ClientWindow>(desktop().displayName(), protocol, "Client", windowClass);
}

Position DesktopTest::passSentinel() {
    const int before = client().count(Kind::buttonPress, sentinelButton);
    trackball().click(sentinelButton);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, sentinelButton, before + 1))
        << "the sentinel is lost";
    Position place;
    for (const ClientEvent& event : client().events()) {
        if (event.kind == Kind::buttonPress && event.button == sentinelButton) place = {event.x, event.y};
    }
    return place;
}

std::string DesktopTest::wholeOutput() {
    // Lines keep their order, so what came before the sentinel's stands before it.
    constexpr auto line = "Botón 5 sin mapeo registrado";
    static_assert(xButton(5) == sentinelButton);
    const int before = program().lines(line);
    passSentinel();
    EXPECT_TRUE(waitUntil([&] { return program().lines(line) > before; }));
    return program().output();
}

bool DesktopTest::isNoKeyDown() {
    std::array<char, 32> keys{};
    XQueryKeymap(client().connection().get(), keys.data());
    return std::ranges::all_of(keys, [](char eight) { return eight == 0; });
}

void DesktopTest::activate(ClientWindow& window) {
    auto& connection = window.connection();
    connection.activate(window.window());
    EXPECT_TRUE(waitUntil([&] {
        return connection.property(connection.root(), "_NET_ACTIVE_WINDOW") ==
               std::vector<long>{static_cast<long>(window.window())};
    }));
}

std::vector<unsigned> DesktopTest::buttonsArrived() {
    auto buttons = client().buttonsPressed();
    std::erase(buttons, static_cast<unsigned>(sentinelButton));
    return buttons;
}

}  // namespace trelvan::desktop
