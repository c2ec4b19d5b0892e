#pragma once

#include "Desktop/Harness/ClientWindow.hpp"

#include <string>
#include <vector>

namespace trelvan::desktop {

/// Paints, in large letters, what an application's window has received. Main thread.
class Viewer {
  public:
    explicit Viewer(ClientWindow& client);
    ~Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// A line of the story that the window tells below what it received.
    void say(const std::string& line);
    void paint();

  private:
    void write(const std::string& text, const char* font, const char* colour, int x, int baseline);

    ClientWindow& window;
    Pixmap canvas = None;
    std::vector<std::string> story;
};

/// What an event is to a person: "Control+C", "button 9 pressed"; empty for the events that only accompany
/// one.
std::string inWords(const ClientEvent& event);

}  // namespace trelvan::desktop
