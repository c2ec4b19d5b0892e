#pragma once

#include <string_view>

struct _XDisplay;

namespace trelvan {

/// Catches the X errors that the requests of its block provoke, on the thread that made it.
///
/// Scopes nest. Errors outside every scope are logged by name and never end the program.
class XErrorScope {
  public:
    explicit XErrorScope(_XDisplay* display);
    XErrorScope(const XErrorScope&) = delete;
    XErrorScope& operator=(const XErrorScope&) = delete;
    ~XErrorScope();

    /// Waits for the server and tells whether a request so far failed.
    [[nodiscard]] bool failed() { return error() != 0; }
    /// Waits for the server; the protocol's code of the first error so far, 0 when there was none.
    [[nodiscard]] int error();

    /// The name by which errors of an extension's requests are logged; text that lives on. Any thread.
    static void nameExtension(int majorOpcode, const char* name);

    /// Makes the handlers of this file those of the process: before the first connection, and again after a
    /// library that has its own opened one.
    static void install();

  private:
    friend struct XErrorRouting;

    _XDisplay* display_;
    XErrorScope* outer_;
    unsigned long firstSerial_;
    unsigned char code_ = 0;
};

/// Says on standard error that the connection is lost, once.
void reportConnectionLost(std::string_view display);

}  // namespace trelvan
