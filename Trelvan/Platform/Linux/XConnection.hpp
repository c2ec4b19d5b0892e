#pragma once

#include <memory>
#include <string>
#include <variant>

struct _XDisplay;

namespace trelvan {

/// One connection to the X server with the extensions that the platform needs. One thread at a time.
class XConnection {
  public:
    /// The connection, or one English line that names what is missing.
    [[nodiscard]] static std::variant<std::unique_ptr<XConnection>, std::string> open();

    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    ~XConnection();

    [[nodiscard]] _XDisplay* display() const { return display_; }
    [[nodiscard]] unsigned long root() const;
    [[nodiscard]] int descriptor() const;
    /// Major opcode that marks XInput events, and the first event code of XKB.
    [[nodiscard]] int inputOpcode() const { return inputOpcode_; }
    [[nodiscard]] int keyboardEventBase() const { return keyboardEventBase_; }
    [[nodiscard]] unsigned long atom(const char* name) const;

  private:
    explicit XConnection(_XDisplay* display) : display_(display) {}
    /// What the server lacks, empty when nothing.
    [[nodiscard]] std::string queryExtensions();

    _XDisplay* display_;
    int inputOpcode_ = 0;
    int keyboardEventBase_ = 0;
};

}  // namespace trelvan
