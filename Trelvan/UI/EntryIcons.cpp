#include "UI/EntryIcons.hpp"

#include <QFileInfo>
#include <QIcon>
#include <QImageReader>

namespace trelvan {

namespace {

/// Desktop entries may name their icon with the ending of an image, which names in a theme have not.
QString themeName(QString name) {
    for (const char* ending : {".png", ".svg", ".xpm"}) {
        if (name.endsWith(QLatin1String(ending))) name.chop(4);
    }
    return name;
}

QPixmap themeIcon(const QString& name, int side, qreal ratio) {
    const QIcon icon = QIcon::fromTheme(themeName(name));
    return icon.isNull() ? QPixmap() : icon.pixmap(QSize(side, side), ratio);
}

}  // namespace

QPixmap imageIcon(const QString& path, int side, qreal ratio) {
    // Devices and pipes could be waited for without end.
    if (!QFileInfo(path).isFile()) return {};
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize most = QSize(side, side) * ratio;
    if (const QSize size = reader.size(); size.isValid() && !size.isEmpty())
        reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    QImage image = reader.read();
    if (image.isNull()) return {};
    // A format that does not know its size beforehand came as it is.
    if (image.width() > most.width() || image.height() > most.height())
        image = image.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(std::move(image));
}

QPixmap entryIcon(const SmartButtonApp& app, const Workspace& workspace, int side, qreal ratio) {
    if (!app.iconPath.empty()) {
        auto own = imageIcon(QString::fromStdString(app.iconPath), side, ratio);
        if (!own.isNull()) return own;
    }
    if (app.kind != SmartButtonItemKind::application) return {};
    const auto name = workspace.applicationIcon(app.path);
    if (!name) return {};
    const auto icon = QString::fromStdString(*name);
    return QFileInfo(icon).isAbsolute() ? imageIcon(icon, side, ratio) : themeIcon(icon, side, ratio);
}

}  // namespace trelvan
