// SPDX-License-Identifier: MIT
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QMovie>
#include <QResource>
#include <QTest>
#include <QXmlStreamReader>

namespace
{

struct Picture {
    const char *name;
    const char *kind;
    QSize size; // invalid for a vector picture
};

const QSize wide(2048, 701);
const QSize narrow(640, 219);
const QSize product(54, 100);
const QSize taller(640, 289);

const QList<Picture> pictures = {
    {"Deko_Air_2k.png", "png", wide},
    {"Deko_Air_640.png", "png", narrow},
    {"Deko_Sub_2k.png", "png", wide},
    {"Deko_Sub_640.png", "png", narrow},
    {"Deko_Palette_2k.png", "png", wide},
    {"Deko_Palette_640.png", "png", narrow},
    {"Deko_WLAN_2k.png", "png", wide},
    {"Deko_WLAN_640.png", "png", narrow},
    {"ajax-loader.gif", "gif", {32, 32}},
    {"vc3.jpg", "jpeg", product},
    {"vc5.jpg", "jpeg", product},
    {"vc7.jpg", "jpeg", product},
    {"vc8.jpg", "jpeg", product},
    {"vc9.jpg", "jpeg", product},
    {"vs12.jpg", "jpeg", product},
    {"mist.png", "png", {118, 90}},
    {"Palette_600px.png", "png", {600, 270}},
    {"Palette_640px.png", "png", narrow},
    {"Palette_2048px.png", "png", {2048, 700}},
    {"Sub_640px.png", "png", taller},
    {"Air_640px.png", "png", taller},
    {"Funk_640px.png", "png", taller},
    {"Slider.png", "png", {64, 46}},
    {"Slider.jpg", "jpeg", {64, 46}},
    {"slider_handle.png", "png", {60, 62}},
    {"slider.svg", "svg", {}},
};

const QStringList catalogues = {"VIRELO_de.qm", "VIRELO_en.qm"};

QStringList picture_names()
{
    QStringList names;
    for (const Picture &picture : pictures)
        names.append(picture.name);
    names.sort();
    return names;
}

QString in_tree(const QString &name)
{
    return ":/GRAFX/" + name;
}

QImage image(const QString &name)
{
    return QImage(in_tree(name));
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList sorted_files(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

// The kind that the bytes themselves tell; the file name is not asked.
QByteArray kind_of(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    if (xml.readNextStartElement())
        return xml.namespaceUri() == QLatin1String("http://www.w3.org/2000/svg") ? xml.name().toUtf8()
                                                                                 : "xml";
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer);
}

QList<QImage> busy_frames()
{
    QImageReader reader(in_tree("ajax-loader.gif"));
    QList<QImage> frames;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        frames.append(frame);
    return frames;
}

// Mean difference of the colour channels, 0 to 255.
double difference(const QImage &left, const QImage &right)
{
    qint64 sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb a = left.pixel(x, y);
            const QRgb b = right.pixel(x, y);
            sum += qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
        }
    }
    return sum / 3.0 / left.width() / left.height();
}

} // namespace

// The resource tree as a program sees it that links the core: nothing here registers it.
class tst_resources : public QObject
{
    Q_OBJECT

private slots:
    void tree_has_28_files_in_two_folders();
    void tree_has_format_version_2();
    void file_is_stored_uncompressed_data();
    void file_is_stored_uncompressed();
    void picture_has_its_kind_and_size_data();
    void picture_has_its_kind_and_size();
    void picture_is_stored_byte_for_byte_data();
    void picture_is_stored_byte_for_byte();
    void banner_is_under_400_kB_and_the_same_in_both_sizes_data();
    void banner_is_under_400_kB_and_the_same_in_both_sizes();
    void banners_differ_from_each_other();
    void product_pictures_are_on_white_and_differ();
    void busy_sign_runs_for_ever();
    void busy_sign_has_12_frames_that_differ_and_are_transparent();
};

void tst_resources::tree_has_28_files_in_two_folders()
{
    QStringList names = sorted_files(":/GRAFX");
    names.sort();
    QCOMPARE(names, picture_names());
    QCOMPARE(sorted_files(":/translations"), catalogues);
    QCOMPARE(names.size() + catalogues.size(), 28);
}

void tst_resources::tree_has_format_version_2()
{
    // No call tells the version of a registered tree, so the generated initialiser is read.
    const QByteArray source = content(VIRELO_COMPILED_TREE);
    QVERIFY(!source.isEmpty());
    QVERIFY(source.contains("int version = 2;"));
    QVERIFY(QResource(in_tree("vc3.jpg")).lastModified().isValid()); // what version 1 lacks
}

void tst_resources::file_is_stored_uncompressed_data()
{
    QTest::addColumn<QString>("path");
    for (const Picture &picture : pictures)
        QTest::newRow(picture.name) << in_tree(picture.name);
    for (const QString &name : catalogues)
        QTest::newRow(qPrintable(name)) << ":/translations/" + name;
}

void tst_resources::file_is_stored_uncompressed()
{
    QFETCH(QString, path);
    const QResource resource(path);
    QVERIFY(resource.isValid());
    QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
    QVERIFY(resource.size() > 0);
    QCOMPARE(resource.size(), qint64(content(path).size()));
}

void tst_resources::picture_has_its_kind_and_size_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QSize>("size");
    for (const Picture &picture : pictures)
        QTest::newRow(picture.name) << picture.name << QByteArray(picture.kind) << picture.size;
}

void tst_resources::picture_has_its_kind_and_size()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, kind);
    QFETCH(QSize, size);
    QCOMPARE(kind_of(content(in_tree(name))), kind);
    if (size.isValid())
        QCOMPARE(image(name).size(), size);
}

void tst_resources::picture_is_stored_byte_for_byte_data()
{
    QTest::addColumn<QString>("name");
    for (const Picture &picture : pictures)
        QTest::newRow(picture.name) << picture.name;
}

void tst_resources::picture_is_stored_byte_for_byte()
{
    QFETCH(QString, name);
    const QByteArray source = content(QStringLiteral(VIRELO_SOURCE_DIR "/resources/GRAFX/") + name);
    QVERIFY(!source.isEmpty());
    const QResource resource(in_tree(name));
    const auto *stored = reinterpret_cast<const char *>(resource.data());
    QVERIFY(QByteArray::fromRawData(stored, int(resource.size())) == source);
}

void tst_resources::banner_is_under_400_kB_and_the_same_in_both_sizes_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Air", "Sub", "Palette", "WLAN"})
        QTest::newRow(name) << name;
}

void tst_resources::banner_is_under_400_kB_and_the_same_in_both_sizes()
{
    QFETCH(QString, name);
    const QString large = "Deko_" + name + "_2k.png";
    const QString small = "Deko_" + name + "_640.png";
    QVERIFY(QResource(in_tree(large)).size() <= 400000);
    QVERIFY(QResource(in_tree(small)).size() <= 400000);
    const QImage shrunk = image(large).scaled(narrow, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVERIFY(difference(shrunk, image(small)) < 4.0);
}

void tst_resources::banners_differ_from_each_other()
{
    const QList<QImage> banners = {image("Deko_Air_640.png"), image("Deko_Sub_640.png"),
                                   image("Deko_Palette_640.png"), image("Deko_WLAN_640.png")};
    for (int i = 0; i < banners.size(); ++i) {
        for (int j = 0; j < i; ++j)
            QVERIFY(difference(banners[i], banners[j]) > 8.0);
    }
}

void tst_resources::product_pictures_are_on_white_and_differ()
{
    QList<QImage> products;
    for (const char *name : {"vc3.jpg", "vc5.jpg", "vc7.jpg", "vc8.jpg", "vc9.jpg", "vs12.jpg"}) {
        const QImage picture = image(name);
        for (const QPoint &corner : {QPoint(0, 0), QPoint(53, 0), QPoint(0, 99), QPoint(53, 99)})
            QVERIFY2(qGray(picture.pixel(corner)) > 250, name);
        for (const QImage &other : qAsConst(products))
            QVERIFY2(difference(picture, other) > 8.0, name);
        products.append(picture);
    }
}

void tst_resources::busy_sign_runs_for_ever()
{
    QMovie movie(in_tree("ajax-loader.gif"));
    QVERIFY(movie.isValid());
    QCOMPARE(movie.loopCount(), -1);
}

void tst_resources::busy_sign_has_12_frames_that_differ_and_are_transparent()
{
    const QList<QImage> frames = busy_frames();
    QVERIFY(frames.size() >= 12);
    for (int i = 0; i < frames.size(); ++i) {
        QCOMPARE(frames[i].size(), QSize(32, 32));
        QVERIFY(frames[i] != frames[(i + 1) % frames.size()]);
        QCOMPARE(qAlpha(frames[i].pixel(0, 0)), 0);
        QCOMPARE(qAlpha(frames[i].pixel(16, 16)), 0);
        int shown = 0;
        for (int at = 0; at < 32 * 32; ++at)
            shown += qAlpha(frames[i].pixel(at % 32, at / 32)) == 255 ? 1 : 0;
        QVERIFY(shown > 100);
    }
}

QTEST_GUILESS_MAIN(tst_resources)
#include "tst_resources.moc"
