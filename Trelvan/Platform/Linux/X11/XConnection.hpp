#pragma once

#include "Platform/PlatformFailure.hpp"

#include <memory>
#include <string_view>
#include <variant>

struct _XDisplay;

namespace trelvan {

/// One connection to the X server with the extensions that the platform needs. One thread at a time.
class XConnection {
  public:
    /// The connection, or what is missing for one.
    [[nodiscard]] static std::variant<std::unique_ptr<XConnection>, PlatformFailure> open();

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

    /// Keeps the server's own screen saver and energy saving from coming on; ends with the connection. Calls
    /// count: as many ends as beginnings. Nothing happens where the server has no such extension.
    void suspendScreenSaver(bool on) const;

  private:
    explicit XConnection(_XDisplay* display) : display_(display) {}
    /// The extension that the server lacks, or has in a version too old; empty when it has all.
    [[nodiscard]] std::string_view queryExtensions();

    _XDisplay* display_;
    int inputOpcode_ = 0;
    int keyboardEventBase_ = 0;
};

}  // namespace trelvan
