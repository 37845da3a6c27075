// SPDX-License-Identifier: MIT
#include "tests/resources/catalogue_keys.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

namespace
{

const QString root = QStringLiteral(VIRELO_SOURCE_DIR);
const QStringList folders = {"app",      "zeroconf", "control", "device",
                             "overview", "settings", "network", "update"};

struct Text {
    QByteArray context;
    QByteArray source;
};

// Texts that pass through tr and have no key: they are English in German as well, and that is meant.
bool stays_english(const Text &text)
{
    static const QMap<QByteArray, QList<QByteArray>> meant = {
        {"Client_Hood", {"Restart App!"}},
        {"Client_Overview", {"in "}},
        {"Client_Settings_Air", {"SPDIF Vol:"}},
        {"Client_Settings_Empty2", {"TEST!... :-(", "Speaker:"}},
        {"Client_WLANs", {"OK"}},
    };
    return meant.value(text.context).contains(text.source);
}

QList<Text> texts_of(QIODevice *catalogue)
{
    QList<Text> texts;
    QByteArray context;
    QXmlStreamReader xml(catalogue);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText().toUtf8();
        else if (xml.name() == QLatin1String("source"))
            texts.append({context, xml.readElementText().toUtf8()});
    }
    return texts;
}

} // namespace

// The sources against the catalogues: a text that differs from its key by one character would stay
// untranslated.
class tst_translated_texts : public QObject
{
    Q_OBJECT

private slots:
    void text_of_the_sources_has_a_german_key_data();
    void text_of_the_sources_has_a_german_key();

private:
    QTemporaryDir folder;
};

void tst_translated_texts::text_of_the_sources_has_a_german_key_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("source");
    const QString found = folder.filePath("found.ts");
    QStringList arguments = {"-silent", "-locations", "none", "-I", root};
    for (const QString &name : folders)
        arguments.append(root + "/" + name);
    arguments += {"-ts", found};
    QCOMPARE(QProcess::execute(VIRELO_LUPDATE, arguments), 0);
    QFile file(found);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<Text> texts = texts_of(&file);
    QVERIFY(!texts.isEmpty());
    for (const Text &text : texts)
        QTest::addRow("%s: %s", text.context.constData(), text.source.constData())
            << text.context << text.source;
}

void tst_translated_texts::text_of_the_sources_has_a_german_key()
{
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    QVERIFY(german_keys.value(context).contains(source) || stays_english({context, source}));
}

QTEST_GUILESS_MAIN(tst_translated_texts)
#include "tst_translated_texts.moc"
