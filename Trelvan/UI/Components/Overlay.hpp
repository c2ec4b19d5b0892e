#pragma once

#include "UI/Components/Look.hpp"

#include <QPointer>
#include <QWidget>
#include <functional>

namespace trelvan {

/// Lies over a window's whole content while it is open, an ordinary widget without a grab. The keyboard goes
/// into it, stays inside, and comes back to where it was.
class Overlay : public QWidget {
  public:
    /// Told once it is closed, however that came about.
    std::function<void()> onClosed;

    /// Opens with the keyboard on `first`.
    void open(QWidget* first);
    void close();
    [[nodiscard]] bool isOpen() const { return isOpen_; }

    bool eventFilter(QObject* object, QEvent* event) override;

  protected:
    Overlay(Look& look, QWidget* covered);
    ~Overlay() override;

    bool focusNextPrevChild(bool next) override;
    [[nodiscard]] Look& look() const { return look_; }
    /// The size of what it covers has changed.
    virtual void place() {}

  private:
    void cover();
    [[nodiscard]] QList<QWidget*> focusable() const;

    Look& look_;
    QPointer<QWidget> before_;
    bool isOpen_ = false;
};

}  // namespace trelvan
