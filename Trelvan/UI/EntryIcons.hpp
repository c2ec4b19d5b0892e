#pragma once

#include "Core/Model/SmartButton.hpp"
#include "Platform/Workspace.hpp"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QStringList>
#include <QThreadPool>
#include <functional>

namespace trelvan {

/// Brings the pictures of the radial menu's entries: an entry's own image file, else the application's icon.
///
/// Main thread, which the pointer's events pass through as well: image files, which may be of any size, are
/// read on another thread. Icons of the theme are small, and come at once.
class EntryIcons {
  public:
    /// The picture, no larger than asked for; a null one when there is none or it cannot be read.
    using Done = std::function<void(QPixmap icon)>;

    explicit EntryIcons(const Workspace& workspace);
    EntryIcons(const EntryIcons&) = delete;
    EntryIcons& operator=(const EntryIcons&) = delete;
    /// Waits for the file that is being read.
    ~EntryIcons();

    /// `side` in points, `ratio` real pixels a point. Calls `done` on the main thread, before it returns or
    /// later, or never when this object is gone by then.
    void load(const SmartButtonApp& app, int side, qreal ratio, Done done);
    /// Files whose reading has not begun are not read any more, and their `done` is not called.
    void forget() { pool_.clear(); }
    /// Waits until every file was read and told of.
    void finish();

  private:
    /// Where a picture may come from, the best first.
    struct Sources {
        QStringList files;
        QString themeName;
    };
    [[nodiscard]] Sources sourcesOf(const SmartButtonApp& app) const;

    const Workspace& workspace_;
    /// What was read is told in its name, and not when it is gone.
    QObject context_;
    QThreadPool pool_;
};

/// The image file at the path, brought to the largest size that fits into a square of so many pixels; a null
/// image when it is none. Any thread.
[[nodiscard]] QImage readImage(const QString& path, int side);

}  // namespace trelvan
