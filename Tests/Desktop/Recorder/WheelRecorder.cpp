#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>
#include <cstdio>

/// A toolkit's window that writes down, a line each, what its wheel and its buttons do. The tests compare the
/// record with the program running and without.
namespace {

class Recorder : public QWidget {
  protected:
    void wheelEvent(QWheelEvent* event) override {
        std::printf("wheel %d %d modifiers %d\n", event->angleDelta().x(), event->angleDelta().y(),
                    static_cast<int>(event->modifiers()));
        std::fflush(stdout);
    }
    void mousePressEvent(QMouseEvent* event) override {
        std::printf("button %d\n", static_cast<int>(event->button()));
        std::fflush(stdout);
    }
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Recorder window;
    window.setGeometry(240, 160, 960, 560);
    window.show();
    return QApplication::exec();
}
