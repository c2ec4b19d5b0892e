#include "Support/TestDesktop.hpp"
#include "UI/EntryIcons.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QImage>
#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

constexpr int side = 44;

/// A folder for images, and a desktop whose applications have no icons.
class EntryIconTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = std::filesystem::path(testing::TempDir()) / "trelvan-icons-XXXXXX";
        folder = mkdtemp(name.data());
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string image(const std::string& name, QSize size) {
        QImage picture(size, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        const auto path = folder / name;
        EXPECT_TRUE(picture.save(QString::fromStdString(path)));
        return path;
    }
    QPixmap iconOf(const std::string& iconPath, qreal ratio = 1,
                   SmartButtonItemKind kind = SmartButtonItemKind::shortcut) {
        SmartButtonApp app;
        app.kind = kind;
        app.iconPath = iconPath;
        app.path = "/Applications/None.app";
        std::optional<QPixmap> loaded;
        icons.load(app, side, ratio, [&](QPixmap icon) { loaded = std::move(icon); });
        icons.finish();
        EXPECT_TRUE(loaded.has_value());
        return loaded.value_or(QPixmap());
    }

    std::filesystem::path folder;
    test::TestDesktop desktop;
    EntryIcons icons{desktop.workspace()};
};

TEST_F(EntryIconTest, LargeImage_IsBroughtToTheSizeOfTheIcon) {
    const QPixmap icon = iconOf(image("large.png", {3000, 2000}));
    EXPECT_EQ(icon.size(), QSize(44, 29));
}

TEST_F(EntryIconTest, ImageOfAnyDepth_KeepsItsColours) {
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                              QImage::Format_RGB888, QImage::Format_RGBA64}) {
        QImage picture(900, 600, QImage::Format_ARGB32);
        picture.fill(Qt::white);
        const auto path = folder / "depth.png";
        ASSERT_TRUE(picture.convertToFormat(format).save(QString::fromStdString(path)));
        const QImage icon = iconOf(path).toImage();
        EXPECT_EQ(icon.size(), QSize(44, 29));
        for (int x = 0; x < icon.width(); ++x)
            ASSERT_EQ(icon.pixelColor(x, 14), QColor(Qt::white)) << format << " at " << x;
    }
}

TEST_F(EntryIconTest, ImageOfOneColour_KeepsIt) {
    QImage picture(900, 900, QImage::Format_Mono);
    picture.setColorTable({QColor(Qt::red).rgb()});
    picture.fill(0);
    const auto path = folder / "red.png";
    ASSERT_TRUE(picture.save(QString::fromStdString(path)));
    const QImage icon = iconOf(path).toImage();
    for (int x = 0; x < icon.width(); ++x) ASSERT_EQ(icon.pixelColor(x, 22), QColor(Qt::red)) << x;
}

TEST_F(EntryIconTest, Photograph_IsBroughtToTheSizeOfTheIcon) {
    const QPixmap icon = iconOf(image("photograph.jpg", {2000, 3000}));
    EXPECT_EQ(icon.size(), QSize(29, 44));
    EXPECT_GT(icon.toImage().pixelColor(14, 20).red(), 240);
}

TEST_F(EntryIconTest, ScaledScreen_HasAsManyPixelsAsItShows) {
    const QPixmap icon = iconOf(image("large.png", {512, 512}), 1.5);
    EXPECT_EQ(icon.size(), QSize(66, 66));
    EXPECT_EQ(icon.devicePixelRatio(), 1.5);
}

TEST_F(EntryIconTest, VectorImage_IsDrawnAtTheSizeOfTheIcon) {
    const auto path = folder / "drawing.svg";
    std::ofstream(path) << R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16">)"
                        << R"(<rect width="16" height="16" fill="#00ff00"/></svg>)";
    const QPixmap icon = iconOf(path, 2);
    EXPECT_EQ(icon.size(), QSize(88, 88));
    EXPECT_EQ(icon.toImage().pixelColor(44, 44), QColor(0, 255, 0));
}

TEST_F(EntryIconTest, NoImage_LeavesTheSymbol) {
    const auto text = folder / "notes.png";
    std::ofstream(text) << "no image";
    EXPECT_TRUE(iconOf(text).isNull());
    EXPECT_TRUE(iconOf("").isNull());
    EXPECT_TRUE(iconOf(folder / "missing.png").isNull());
    EXPECT_TRUE(iconOf(folder).isNull());
}

TEST_F(EntryIconTest, PipeInPlaceOfAnImage_IsNotWaitedFor) {
    const auto pipe = folder / "pipe.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_TRUE(iconOf(pipe).isNull());
}

TEST_F(EntryIconTest, EntryWithoutAFile_IsToldOfAtOnce) {
    bool isDone = false;
    icons.load({}, side, 1, [&](const QPixmap& icon) { isDone = icon.isNull(); });
    EXPECT_TRUE(isDone);
}

TEST_F(EntryIconTest, FileIsReadOnAnotherThread_AndToldOfOnThisOne) {
    SmartButtonApp app;
    app.iconPath = image("large.png", {100, 100});
    bool isDone = false;
    icons.load(app, side, 1, [&](const QPixmap&) { isDone = true; });
    EXPECT_FALSE(isDone);
    icons.finish();
    EXPECT_TRUE(isDone);
}

TEST_F(EntryIconTest, LoaderThatIsGone_TellsNothing) {
    SmartButtonApp app;
    app.iconPath = image("large.png", {100, 100});
    bool isDone = false;
    {
        EntryIcons passing(desktop.workspace());
        passing.load(app, side, 1, [&](const QPixmap&) { isDone = true; });
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(isDone);
}

TEST_F(EntryIconTest, WrongEnding_IsReadByItsContent) {
    const auto path = image("picture.png", {64, 64});
    const auto renamed = folder / "picture.svg";
    std::filesystem::rename(path, renamed);
    EXPECT_EQ(iconOf(renamed).size(), QSize(44, 44));
}

}  // namespace
}  // namespace trelvan
