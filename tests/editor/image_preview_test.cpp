#include "editor/image_preview.h"

#include "platform/file_write.h"
#include "support/test_home.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using editor::drawPreview;
using editor::ImagePreview;
using editor::kPreviewSide;
using editor::PreviewFailure;

class ImagePreviewTest : public FactoryHome {
protected:
    QString save(const QString& name, const QImage& image) {
        EXPECT_TRUE(image.save(path(name))) << name.toStdString();
        return path(name);
    }
    static QImage red(int width, int height) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::red);
        return image;
    }
    static std::optional<PreviewFailure> failure(const QString& file) { return drawPreview(file, 1).failure; }
    /// The most memory that this process ever had, in megabytes.
    static long peak() {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    }
    /// A PNG header of any size in front of pixels for a few lines.
    QString pngOf(const QString& name, quint32 width, quint32 height) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        red(4, 4).save(&buffer, "PNG");
        qToBigEndian(width, bytes.data() + 16);
        qToBigEndian(height, bytes.data() + 20);
        qToBigEndian(quint32(crcOf(bytes.mid(12, 17))), bytes.data() + 29);
        writeFile(path(name), bytes);
        return path(name);
    }
    static quint32 crcOf(const QByteArray& bytes) {
        quint32 crc = ~0U;
        for (const char byte : bytes) {
            crc ^= quint8(byte);
            for (int i = 0; i < 8; ++i)
                crc = (crc >> 1) ^ (crc & 1U ? 0xEDB88320U : 0U);
        }
        return ~crc;
    }
};

TEST_F(ImagePreviewTest, ThePictureLiesAtTheOriginAndTheStripIsWhite) {
    for (const char* ending : {"png", "jpg", "bmp"}) {
        const ImagePreview wide = drawPreview(save(u"wide."_s + QLatin1StringView(ending), red(500, 100)), 1);
        ASSERT_FALSE(wide.failure) << ending;
        EXPECT_EQ(wide.size, QSize(500, 100));
        EXPECT_EQ(wide.picture.size(), QSize(kPreviewSide, kPreviewSide));
        const auto isRed = [&](const ImagePreview& preview, int x, int y) {
            return preview.picture.pixelColor(x, y).red() > 200 && preview.picture.pixelColor(x, y).green() < 60;
        };
        EXPECT_TRUE(isRed(wide, 0, 0) && isRed(wide, 166, 32));
        EXPECT_EQ(wide.picture.pixelColor(0, 34), QColor(Qt::white));
        EXPECT_EQ(wide.picture.pixelColor(166, 166), QColor(Qt::white));
        const ImagePreview high = drawPreview(save(u"high."_s + QLatin1StringView(ending), red(100, 500)), 1);
        EXPECT_TRUE(isRed(high, 0, 0) && isRed(high, 32, 166));
        EXPECT_EQ(high.picture.pixelColor(34, 0), QColor(Qt::white));
        const ImagePreview small = drawPreview(save(u"small."_s + QLatin1StringView(ending), red(3, 3)), 1);
        EXPECT_TRUE(isRed(small, 0, 0) && isRed(small, 166, 166)) << "a small picture grows";
    }
}

TEST_F(ImagePreviewTest, ItIsDrawnInDevicePixels) {
    const ImagePreview preview = drawPreview(save(u"a.png"_s, red(500, 100)), 2);
    EXPECT_EQ(preview.picture.size(), QSize(334, 334));
    EXPECT_EQ(preview.picture.pixelColor(333, 65), QColor(Qt::red));
    EXPECT_EQ(preview.picture.pixelColor(0, 67), QColor(Qt::white));
    EXPECT_EQ(drawPreview(path(u"a.png"_s), 1.25).picture.size(), QSize(209, 209));
}

TEST_F(ImagePreviewTest, TheContentTellsTheFormatAndTheNameDoesNot) {
    ASSERT_TRUE(red(10, 20).save(path(u"photo.gif"_s), "PNG"));
    EXPECT_EQ(drawPreview(path(u"photo.gif"_s), 1).size, QSize(10, 20));
}

TEST_F(ImagePreviewTest, ACamerasOrientationTurnsNothing) {
    QByteArray bytes = bytesOf(save(u"a.jpg"_s, red(60, 30)));
    // Behind the mark of the picture's beginning: one that says "turn me to the right".
    bytes.insert(2, QByteArray::fromHex("ffe10022457869660000"
                                        "4d4d002a00000008"
                                        "0001011200030000000100060000"
                                        "00000000"));
    writeFile(path(u"a.jpg"_s), bytes);
    QImageReader turned(path(u"a.jpg"_s));
    ASSERT_EQ(turned.transformation(), QImageIOHandler::TransformationRotate90);
    const ImagePreview preview = drawPreview(path(u"a.jpg"_s), 1);
    EXPECT_EQ(preview.size, QSize(60, 30));
    EXPECT_EQ(preview.picture.pixelColor(0, 166), QColor(Qt::white));
}

TEST_F(ImagePreviewTest, APathThatLeadsNowhereIsWrong) {
    EXPECT_EQ(failure(u""_s), PreviewFailure::Path);
    EXPECT_EQ(failure(path(u"no.gif"_s)), PreviewFailure::Path);
}

TEST_F(ImagePreviewTest, WhatIsNoPictureIsNotLoaded) {
    ASSERT_EQ(::mkfifo(path(u"pipe.gif"_s).toUtf8().constData(), 0600), 0);
    platform::makeFolder(path(u"folder.gif"_s));
    writeFile(path(u"empty.gif"_s), {});
    writeFile(path(u"text.jpg"_s), "not a picture\n");
    writeFile(path(u"zeros.png"_s), QByteArray(5000, '\0'));
    for (const QString& name :
         {u"pipe.gif"_s, u"folder.gif"_s, u"empty.gif"_s, u"text.jpg"_s, u"zeros.png"_s, u"diary.ini"_s}) {
        if (!exists(path(name)))
            writeFile(path(name), "[ALL]\r\n");
        EXPECT_EQ(failure(path(name)), PreviewFailure::Load) << name.toStdString();
    }
    EXPECT_EQ(failure(u"/dev/null"_s), PreviewFailure::Load);
}

TEST_F(ImagePreviewTest, APictureThatBreaksOffIsNoFaultOfTheProgram) {
    for (const char* ending : {"png", "bmp", "jpg"}) {
        const QString file = save(u"a."_s + QLatin1StringView(ending), red(300, 300));
        const QByteArray bytes = bytesOf(file);
        for (const qsizetype size : {qsizetype(1), qsizetype(7), qsizetype(20), qsizetype(33), bytes.size() / 2}) {
            writeFile(file, bytes.first(size));
            const ImagePreview preview = drawPreview(file, 1);
            EXPECT_TRUE(preview.failure || preview.size == QSize(300, 300)) << ending << " cut to " << size;
        }
    }
    const QString png = save(u"b.png"_s, red(300, 300));
    writeFile(png, bytesOf(png).first(33));
    EXPECT_EQ(failure(png), PreviewFailure::Load);
}

TEST_F(ImagePreviewTest, AVeryWidePictureIsShown) {
    const ImagePreview preview = drawPreview(save(u"wide.png"_s, red(40000, 20)), 1);
    ASSERT_FALSE(preview.failure);
    EXPECT_EQ(preview.size, QSize(40000, 20));
    EXPECT_EQ(preview.picture.pixelColor(0, 0), QColor(Qt::red)) << "a thread of it at least";
    EXPECT_EQ(drawPreview(save(u"high.png"_s, red(20, 40000)), 1).picture.pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(ImagePreviewTest, APictureOfTheLargestCamerasIsShown) {
    QImage image(12000, 9000, QImage::Format_Grayscale8);
    ASSERT_FALSE(image.isNull());
    image.fill(90);
    const ImagePreview preview = drawPreview(save(u"a.jpg"_s, image), 1);
    ASSERT_FALSE(preview.failure);
    EXPECT_EQ(preview.size, QSize(12000, 9000));
    EXPECT_EQ(preview.picture.pixelColor(80, 60).red(), 90);
    EXPECT_FALSE(drawPreview(save(u"a.png"_s, image), 1).failure);
}

TEST_F(ImagePreviewTest, AHeaderOfAnySizeExhaustsNoMemory) {
    const long before = peak();
    for (const auto& [width, height] : {std::pair{40000U, 40000U}, {1'000'000U, 1'000'000U}, {0x7FFFFFFFU, 1U}}) {
        const QString file = pngOf(u"a.png"_s, width, height);
        EXPECT_TRUE(failure(file)) << width << " x " << height;
    }
    // A picture of sixteen hundred million pixels in two megabytes: GIF, with nothing behind its header.
    QByteArray gif("GIF89a");
    gif += QByteArray::fromHex("409c409cf00000000000ffffff2c00000000409c409c0002024c01003b");
    writeFile(path(u"a.gif"_s), gif);
    EXPECT_TRUE(failure(path(u"a.gif"_s)));
    QByteArray bmp(54, '\0');
    bmp.replace(0, 2, "BM");
    qToLittleEndian(quint32(54), bmp.data() + 10);
    qToLittleEndian(quint32(40), bmp.data() + 14);
    qToLittleEndian(quint32(40000), bmp.data() + 18);
    qToLittleEndian(quint32(40000), bmp.data() + 22);
    qToLittleEndian(quint16(1), bmp.data() + 26);
    qToLittleEndian(quint16(24), bmp.data() + 28);
    writeFile(path(u"a.bmp"_s), bmp);
    EXPECT_TRUE(failure(path(u"a.bmp"_s)));
    EXPECT_LT(peak() - before, 700);
}

TEST_F(ImagePreviewTest, TheLimitOfTheProgramStaysAsItWas) {
    const int before = QImageReader::allocationLimit();
    drawPreview(save(u"a.png"_s, red(5, 5)), 1);
    drawPreview(path(u"no.png"_s), 1);
    EXPECT_EQ(QImageReader::allocationLimit(), before);
}

} // namespace
} // namespace velloria::tests
