#include <gtest/gtest.h>

#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <cmath>
#include <filesystem>
#include <random>

#include "defects/canvasmarks.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/paintmarks.h"
#include "shell/dialogs/CSizeDlg.h"
#include "tests/defectswindows/oddpictures.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

const QRgb Red = qRgb(255, 0, 0);
const QRgb Green = qRgb(0, 255, 0);
const QRgb Blue = qRgb(0, 0, 255);
const QRgb Ground = qRgb(96, 96, 96);

QImage Plain(int width, int height, QRgb colour = Ground) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// Antialiased lines and compressed files give colours between.
bool IsNear(QRgb is, QRgb expected, int most = 60) {
    return std::abs(qRed(is) - qRed(expected)) <= most && std::abs(qGreen(is) - qGreen(expected)) <= most &&
           std::abs(qBlue(is) - qBlue(expected)) <= most;
}

class CtrlPic : public testing::Test {
protected:
    CtrlPic() : Canvas(&Window) {
        Window.resize(400, 300);
        Canvas.setGeometry(Window.rect());
        MmPerPixel = 0.0F;
        Window.show();
        Window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Window));
    }

    // Lossless, so that pixels can be told exactly. Half the size of the canvas.
    void ShowPlain(const char* name = "p.png", QRgb colour = Ground) {
        Path = Folder.WriteFile(name, Encoded(Plain(200, 150, colour), "png"));
        ASSERT_TRUE(Canvas.ShowPicture(Path));
    }

    void Drag(QPoint from, QPoint to) {
        QTest::mousePress(&Canvas, Qt::LeftButton, {}, from);
        QTest::mouseMove(&Canvas, (from + to) / 2);
        QTest::mouseMove(&Canvas, to);
        QTest::mouseRelease(&Canvas, Qt::LeftButton, {}, to);
    }

    void Click(QPoint at) { QTest::mouseClick(&Canvas, Qt::LeftButton, {}, at); }

    void DrawText(QPoint from, QPoint to, const QString& text) {
        Canvas.SetTool(ToolMode::Text);
        InNextDialog([text](CSizeDlg& dialog) {
            Type(dialog, 1085, text);
            PressKey(*dialog.GetDlgItem(1085), Qt::Key_Return);
        });
        Drag(from, to);
    }

    QImage Baked(const char* name = "p.png") {
        Canvas.BakeToFile();
        QImage image;
        const std::string bytes = Folder.ReadFile(name);
        image.loadFromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
        return image;
    }

    static void ExpectPixels(const QImage& image, QRgb colour, std::initializer_list<QPoint> points) {
        for (const QPoint& point : points) {
            EXPECT_TRUE(IsNear(image.pixel(point), colour))
                << point.x() << "," << point.y() << " is " << std::hex << image.pixel(point);
        }
    }

    static int CountUnlike(const QImage& image, const QRect& area, QRgb ground) {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                count += IsNear(image.pixel(x, y), ground, 8) ? 0 : 1;
            }
        }
        return count;
    }

    CTestFolder Folder;
    QWidget Window;
    CCtrlPic Canvas;
    std::string Path;
};

}  // namespace

TEST_F(CtrlPic, LinesStandInTheBakedFileWhereTheMouseDrewThemAndNowhereElse) {
    ShowPlain();
    Canvas.SetTool(ToolMode::Circle);
    Drag({150, 120}, {50, 20});  // from the lower right
    Canvas.SetTool(ToolMode::Arrow);
    Drag({300, 50}, {200, 50});
    Canvas.SetTool(ToolMode::Reference);
    Drag({20, 200}, {80, 200});
    Drag({20, 280}, {140, 280});

    const QImage image = Baked();
    ASSERT_EQ(image.size(), QSize(400, 300));
    ExpectPixels(image, Red, {{50, 70}, {149, 70}, {100, 20}, {100, 119}});
    // Inside of the circle, in the corner of its rectangle, outside.
    ExpectPixels(image, Ground, {{100, 70}, {54, 24}, {45, 70}, {155, 70}});
    // The shaft; the barbs, which go back from the tip.
    ExpectPixels(image, Red, {{202, 50}, {250, 50}, {298, 50}, {204, 54}, {203, 46}});
    ExpectPixels(image, Ground, {{194, 50}, {304, 50}, {196, 54}, {250, 53}, {212, 58}});
    // One line each and no box; their lengths beside them.
    ExpectPixels(image, Red, {{22, 200}, {78, 200}});
    ExpectPixels(image, Blue, {{20, 280}, {138, 280}});
    EXPECT_GT(CountUnlike(image, {20, 190, 60, 9}, Ground), 20);
    EXPECT_GT(CountUnlike(image, {50, 270, 60, 9}, Ground), 20);
    EXPECT_EQ(CountUnlike(image, {160, 130, 240, 170}, Ground), 0);
}

TEST_F(CtrlPic, TextsAreAskedForWrappedInTheirBoxAndDottedWithoutOne) {
    ShowPlain();
    Canvas.SetDefaultText("(PL)破裂");
    Canvas.SetTool(ToolMode::Text);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "备注");
        EXPECT_EQ(TextOf(dialog, 1085), "(PL)破裂");
        Photograph(dialog, "remark");
        Press(dialog, CSizeDlg::IdCancel);
    });
    Drag({40, 20}, {200, 80});
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(CountUnlike(Baked(), {0, 0, 400, 300}, Ground), 0);

    Canvas.SetColour(0x00FF8000);
    DrawText({140, 200}, {40, 100}, "管道接口处破裂, a crackalongthewholejoint, 长约三十厘米");
    QImage image = Baked();
    const QRect box(40, 100, 100, 100);
    EXPECT_GT(CountUnlike(image, box, Ground), 800);
    EXPECT_EQ(CountUnlike(image, {0, 0, 400, 100}, Ground), 0);
    EXPECT_EQ(CountUnlike(image, {143, 100, 250, 200}, Ground), 0);
    EXPECT_EQ(CountUnlike(image, {0, 201, 400, 99}, Ground), 0);
    const QRgb blueFirst = qRgb(0x00, 0x80, 0xFF);  // colours are numbers with red in their lowest byte
    EXPECT_LT(CountUnlike(image, box, blueFirst), 100 * 100 - 200);

    // OK with nothing entered leaves the dotted box.
    DrawText({200, 20}, {300, 80}, "");
    image = Baked();
    const int dots = CountUnlike(image, {200, 20, 101, 1}, Ground);
    EXPECT_GT(dots, 25);
    EXPECT_LT(dots, 76);
}

TEST_F(CtrlPic, AShapeInHandKeepsItsPlaceAmongTheOthersAndEscDropsIt) {
    ShowPlain();
    Canvas.SetTool(ToolMode::Measuring);
    Click({200, 20});
    Click({200, 280});
    Canvas.SetTool(ToolMode::Circle);
    QPushButton button("x", &Window);
    button.setShortcut(QKeySequence("C"));
    button.show();
    int presses = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++presses; });

    QTest::mousePress(&Canvas, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&Canvas, {300, 200});
    QImage shown = Canvas.grab().toImage();
    shown = shown.scaled(400, 300, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_FALSE(IsNear(shown.pixel(100, 150), Ground, 90));
    // The measured line lies over the circle.
    EXPECT_FALSE(qRed(shown.pixel(200, 100)) > qGreen(shown.pixel(200, 100)));
    EXPECT_EQ(Canvas.cursor().shape(), Qt::CrossCursor);
    QTest::keyClick(&Canvas, Qt::Key_C);
    QTest::keyClick(&Canvas, Qt::Key_Escape);
    WaitFor(250);  // a shortcut shows its button pressed first
    EXPECT_EQ(presses, 0);
    QTest::keyClick(&Canvas, Qt::Key_C);
    EXPECT_TRUE(WaitFor([&] { return presses == 1; }));
    QTest::mouseRelease(&Canvas, Qt::LeftButton, {}, {300, 200});
    const QImage image = Baked();
    ExpectPixels(image, Ground, {{100, 150}, {300, 150}});
    ExpectPixels(image, Green, {{200, 100}});
}

// Layers that are carried from change to change must never be told from a drawing made anew: not where shapes
// cross, not below others, and not after more was taken back than is kept.
TEST_F(CtrlPic, AfterAnyChangesThePixelsAreThoseOfADrawingMadeAnew) {
    std::mt19937 random(5);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    QImage picture = Plain(200, 150);
    for (int i = 0; i < 30'000; ++i) {
        picture.setPixel(i % 200, i / 200, qRgb(below(256), below(256), below(256)));
    }
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("noise.png", Encoded(picture, "png"))));
    const auto expectFresh = [&](const std::string& after) {
        const QImage shown = Canvas.grab().toImage().convertToFormat(QImage::Format_RGB32);
        QImage fresh = picture.scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                           .convertToFormat(QImage::Format_RGB32);
        fresh.setDevicePixelRatio(shown.devicePixelRatio());
        const CanvasMarks marks = MarksOf(Canvas.Annotations());
        QPainter painter(&fresh);
        PaintMarks(painter, marks.Below, Canvas.size());
        PaintMarks(painter, marks.InHand, Canvas.size());
        if (Canvas.Annotations().HasCapture()) {
            QImage above(shown.size(), QImage::Format_ARGB32_Premultiplied);
            above.setDevicePixelRatio(shown.devicePixelRatio());
            above.fill(Qt::transparent);
            QPainter abovePainter(&above);
            PaintMarks(abovePainter, marks.Above, Canvas.size());
            abovePainter.end();
            painter.drawImage(0, 0, above);
        } else {
            PaintMarks(painter, marks.Above, Canvas.size());
        }
        PaintMarks(painter, marks.Top, Canvas.size());
        painter.end();
        ASSERT_EQ(shown, fresh) << after;
    };
    const auto somewhere = [&] { return QPoint(below(440) - 20, below(340) - 20); };  // also beside it
    const auto change = [&](int kind) {
        constexpr ToolMode drawn[] = {ToolMode::Reference, ToolMode::Circle, ToolMode::Arrow};
        if (kind < 9) {
            const QPoint from = somewhere();
            const int reach = below(4) == 0 ? 400 : 60;
            const QPoint to = from + QPoint(below(2 * reach) - reach, below(2 * reach) - reach);
            Canvas.SetTool(drawn[kind % 3]);
            QTest::mousePress(&Canvas, Qt::LeftButton, {}, from);
            QTest::mouseMove(&Canvas, to);
            expectFresh("a press");
            if (kind == 8) {
                QTest::keyClick(&Canvas, Qt::Key_Escape);
            }
            QTest::mouseRelease(&Canvas, Qt::LeftButton, {}, to);
        } else if (kind < 15) {
            Canvas.SetTool(kind == 9 ? ToolMode::Calibration : ToolMode::Measuring);
            Click(somewhere());
        } else if (kind == 15) {
            const QPoint from = somewhere();
            DrawText(from, from + QPoint(below(200), below(90)),
                     below(3) == 0 ? "" : "管道 a\u0301\u0301\u0301 破裂");
        } else if (kind < 20) {
            (void)Canvas.UndoLast(Canvas.GetTool());
        } else if (kind < 24) {
            (void)Canvas.UndoLast(static_cast<ToolMode>(below(7)));
        } else if (kind == 24) {
            Canvas.SetColour(static_cast<std::uint32_t>(below(0x1000000)));
        } else if (kind == 25) {
            Canvas.ClearCalibration();
        } else if (below(4) == 0) {
            Canvas.ClearObjects();
        }
    };
    for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
        const int kind = below(27);
        change(kind);
        expectFresh("change " + std::to_string(i) + " of kind " + std::to_string(kind));
    }
    for (const ToolMode tool : {ToolMode::Arrow, ToolMode::Circle}) {
        Canvas.SetTool(tool);
        for (int i = 0; i < 80; ++i) {
            Drag({i, 2 * i}, {399 - i, 299});
            Canvas.grab();
        }
        for (int i = 0; i < 80 && !HasFatalFailure(); ++i) {
            Canvas.UndoLast(tool);
            expectFresh("taken back " + std::to_string(i));
        }
    }
}

TEST_F(CtrlPic, BakingKeepsTheFormatAndTheTwinAndTheOldFileWhereItFails) {
    const std::string jpeg = Encoded(Plain(200, 150), "jpeg");
    Path = Folder.WriteFile("p.JPG", jpeg);
    Folder.WriteFile("p_original.JPG", jpeg);
    ASSERT_TRUE(Canvas.ShowPicture(Path));
    Canvas.SetTool(ToolMode::Circle);
    Drag({50, 20}, {150, 120});
    const QImage first = Baked("p.JPG");
    EXPECT_EQ(Folder.ReadFile("p.JPG").substr(0, 3), "\xFF\xD8\xFF");
    EXPECT_EQ(first.size(), QSize(400, 300));
    EXPECT_TRUE(IsNear(first.pixel(100, 70), Ground, 6));
    EXPECT_GT(qRed(first.pixel(50, 70)) - qGreen(first.pixel(50, 70)), 90);
    EXPECT_EQ(Folder.ReadFile("p_original.JPG"), jpeg);
    // The picture in memory is the one without the circle: taking it back takes it out of the file.
    Canvas.UndoLast(ToolMode::Circle);
    EXPECT_TRUE(IsNear(Baked("p.JPG").pixel(50, 70), Ground, 6));
    Drag({50, 20}, {150, 120});

    std::filesystem::permissions(Folder.Host("p.JPG"), std::filesystem::perms::owner_read);
    const std::string before = Folder.ReadFile("p.JPG");
    Canvas.BakeToFile();
    EXPECT_EQ(Folder.ReadFile("p.JPG"), before);
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("p.xyz", jpeg)));
    Canvas.BakeToFile();
    EXPECT_EQ(Folder.ReadFile("p.xyz"), jpeg);
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("gone/p.jpg", jpeg)));
    std::filesystem::remove_all(Folder.Host("gone"));
    Canvas.BakeToFile();
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("gone")));
}

TEST_F(CtrlPic, WhatIsNoPictureLeavesItBlackAndOddPicturesAreShown) {
    const auto centre = [this] {
        const QImage shown = Canvas.grab().toImage();
        return shown.pixel(shown.width() / 2, shown.height() / 2);
    };
    const std::string jpeg = Encoded(Plain(64, 48, Green), "jpeg");
    const std::string bad[] = {{},
                               "not a picture",
                               jpeg.substr(0, 100),
                               WithClaimedSize(jpeg, 60'000, 60'000),
                               WithClaimedSize(jpeg, 0, 48),
                               "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"};
    for (const std::string& bytes : bad) {
        ShowPlain();
        EXPECT_FALSE(Canvas.ShowPicture(Folder.WriteFile("bad.jpg", bytes)));
        EXPECT_FALSE(Canvas.HasPicture());
        EXPECT_EQ(centre(), qRgb(0, 0, 0));
        Canvas.BakeToFile();
        EXPECT_EQ(Folder.ReadFile("bad.jpg"), bytes);
    }
    EXPECT_FALSE(Canvas.ShowPicture(Folder.Path("missing.jpg")));
    EXPECT_FALSE(Canvas.ShowPicture(Folder.Path("")));

    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("wide.jpg", Encoded(Plain(30'000, 20, Green), "jpeg"))));
    EXPECT_TRUE(IsNear(centre(), Green));
    EXPECT_EQ(Baked("wide.jpg").size(), QSize(400, 300));
    // By content: the ending lies.
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("png.jpg", Encoded(Plain(9, 9, Blue), "png"))));
    EXPECT_EQ(centre(), Blue);
    QImage clear(20, 20, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("clear.png", Encoded(clear, "png"))));
    EXPECT_EQ(centre(), qRgb(0, 0, 0));

    QImage halves = Plain(64, 48, Red);
    for (int y = 0; y < 48; ++y) {
        for (int x = 32; x < 64; ++x) {
            halves.setPixel(x, y, Blue);
        }
    }
    ASSERT_TRUE(Canvas.ShowPicture(Folder.WriteFile("turned.jpg", WithQuarterTurn(Encoded(halves, "jpeg")))));
    const QImage upright = Baked("turned.jpg");
    ExpectPixels(upright, Red, {{20, 20}, {380, 20}});
    ExpectPixels(upright, Blue, {{20, 280}, {380, 280}});
}
