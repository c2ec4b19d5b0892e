#pragma once

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
    [[nodiscard]] bool failed();

    /// Makes the handlers of this file those of the process. Once, before the first connection.
    static void install();

  private:
    friend struct XErrorRouting;

    _XDisplay* display_;
    XErrorScope* outer_;
    unsigned long firstSerial_;
    unsigned char code_ = 0;
};

}  // namespace trelvan
