#include "UI/EntryIcons.hpp"

#include <QCoreApplication>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <utility>

namespace trelvan {

namespace {

/// How long a thread without work is kept.
constexpr int threadExpiry = 1000;

/// Desktop entries may name their icon with the ending of an image, which names in a theme have not.
QString withoutEnding(QString name) {
    for (const char* ending : {".png", ".svg", ".xpm"}) {
        if (name.endsWith(QLatin1String(ending))) name.chop(4);
    }
    return name;
}

/// Drawings, which have no size of their own, and photographs, which are read the faster for it. The reader
/// of PNG images spoils those with few colours when it scales them.
bool readsScaled(const QImageReader& reader) {
    const QByteArray format = reader.format();
    return format.startsWith("svg") || format == "jpeg" || format == "jpg";
}

QPixmap themeIcon(const QString& name, int side, qreal ratio) {
    const QIcon icon = name.isEmpty() ? QIcon() : QIcon::fromTheme(withoutEnding(name));
    return icon.isNull() ? QPixmap() : icon.pixmap(QSize(side, side), ratio);
}

}  // namespace

QImage readImage(const QString& path, int side) {
    // Devices and pipes could be waited for without end.
    if (!QFileInfo(path).isFile()) return {};
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize most(side, side);
    const QSize size = reader.size();
    if (readsScaled(reader) && !size.isEmpty())
        reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    QImage image = reader.read();
    if (image.isNull()) return {};
    // Colour tables are not scaled well either.
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    if (image.width() > side || image.height() > side)
        image = image.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

EntryIcons::EntryIcons(const Workspace& workspace) : workspace_(workspace) {
    pool_.setMaxThreadCount(1);
    pool_.setExpiryTimeout(threadExpiry);
}

EntryIcons::~EntryIcons() {
    pool_.clear();
    pool_.waitForDone();
}

EntryIcons::Sources EntryIcons::sourcesOf(const SmartButtonApp& app) const {
    Sources sources;
    if (!app.iconPath.empty()) sources.files << QString::fromStdString(app.iconPath);
    if (app.kind != SmartButtonItemKind::application) return sources;
    const auto icon = QString::fromStdString(workspace_.applicationIcon(app.path).value_or(""));
    if (QFileInfo(icon).isAbsolute()) {
        sources.files << icon;
    } else {
        sources.themeName = icon;
    }
    return sources;
}

void EntryIcons::load(const SmartButtonApp& app, int side, qreal ratio, Done done) {
    const Sources sources = sourcesOf(app);
    const auto finish = [side, ratio, name = sources.themeName, done = std::move(done)](QImage image) {
        if (image.isNull()) return done(themeIcon(name, side, ratio));
        image.setDevicePixelRatio(ratio);
        done(QPixmap::fromImage(std::move(image)));
    };
    if (sources.files.isEmpty()) return finish({});
    pool_.start([this, files = sources.files, pixels = qRound(side * ratio), finish] {
        QImage image;
        for (const QString& file : files) {
            if (image.isNull()) image = readImage(file, pixels);
        }
        QMetaObject::invokeMethod(
            &context_, [finish, image] { finish(image); }, Qt::QueuedConnection);
    });
}

void EntryIcons::finish() {
    pool_.waitForDone();
    QCoreApplication::sendPostedEvents(&context_);
}

}  // namespace trelvan
