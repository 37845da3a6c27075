// SPDX-License-Identifier: MIT
#include "tests/resources/catalogue_keys.h"
#include "tests/resources/compiled_catalogue.h"

#include <QCoreApplication>
#include <QFile>
#include <QScopeGuard>
#include <QSet>
#include <QTest>
#include <QTranslator>

namespace
{

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool load_as_at_start(QTranslator &translator, const QString &locale)
{
    return translator.load("VIRELO_" + locale, ":/translations/");
}

Compiled_Catalogue compiled(const QString &language)
{
    return Compiled_Catalogue(content(":/translations/VIRELO_" + language + ".qm"));
}

} // namespace

// The compiled catalogues: what they hold, read from their bytes, and which of them a locale finds.
class tst_catalogues : public QObject
{
    Q_OBJECT

private slots:
    void german_catalogue_has_181_messages();
    void german_catalogue_has_exactly_the_keys_data();
    void german_catalogue_has_exactly_the_keys();
    void german_telling_rows_data();
    void german_telling_rows();
    void german_spacer_changes_nothing_on_the_screen();
    void german_text_is_never_empty_but_for_the_spacer();
    void english_catalogue_has_34_messages();
    void english_catalogue_changes_back_next_prompt_and_one_header_only();
    void english_quit_stands_alone_in_the_air_and_group_tabs();
    void english_key_is_a_german_key_but_for_quit_in_the_air_tab();

    void locale_finds_its_catalogue_data();
    void locale_finds_its_catalogue();
    void german_locale_shows_german();
    void british_locale_shows_a_short_back_data();
    void british_locale_shows_a_short_back();
    void british_locale_shows_short_texts_of_the_networks();
    void french_locale_shows_the_source_texts();
    void german_leaves_unknown_keys_as_they_are();
};

void tst_catalogues::german_catalogue_has_181_messages()
{
    const Compiled_Catalogue german = compiled("de");
    QVERIFY(german.readable);
    QCOMPARE(german.hash_entries, 181);
    QCOMPARE(german.messages.size(), 181);
}

void tst_catalogues::german_catalogue_has_exactly_the_keys_data()
{
    struct Count {
        const char *context;
        int messages;
    };
    QTest::addColumn<int>("messages");
    for (const Count &row : std::initializer_list<Count>{{"Client", 2},
                                                         {"Client_Conf", 18},
                                                         {"Client_Conf_StatIP", 11},
                                                         {"Client_Group", 19},
                                                         {"Client_Hood", 4},
                                                         {"Client_Overview", 21},
                                                         {"Client_Settings_Air", 27},
                                                         {"Client_Settings_Debug", 1},
                                                         {"Client_Settings_Empty", 1},
                                                         {"Client_Settings_Group", 9},
                                                         {"Client_Settings_Sub", 24},
                                                         {"Client_Settings_Sub_EQ", 2},
                                                         {"Client_Settings_Sub_Profiles", 5},
                                                         {"Client_Update", 26},
                                                         {"Client_WLANs", 9},
                                                         {"Web_File", 2}})
        QTest::newRow(row.context) << row.messages;
    QCOMPARE(german_keys.size(), 16);
}

void tst_catalogues::german_catalogue_has_exactly_the_keys()
{
    QFETCH(int, messages);
    const QByteArray context = QTest::currentDataTag();
    QList<QByteArray> keys = compiled("de").keys(context);
    QList<QByteArray> expected = german_keys.value(context);
    std::sort(keys.begin(), keys.end());
    std::sort(expected.begin(), expected.end());
    QCOMPARE(keys, expected);
    QCOMPARE(keys.size(), messages);
}

void tst_catalogues::german_telling_rows_data()
{
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("german");
    struct Row {
        const char *context;
        const char *source;
        const char *german;
    };
    static const Row rows[] = {
        {"Client_Settings_Air", "WiFi", "WiFI"},
        {"Client_Settings_Air", "Coaxial (1)", "Coax (1)"},
        {"Client_Settings_Air", "Beep!", "Piep!"},
        {"Client_Settings_Air", "Speaker Position:", "Position:"},
        {"Client_Settings_Air", "Strong Reverb", "Sehr hallig"},
        {"Client_Settings_Air", "Strongly Dampened", "Stark bedämpft"},
        {"Client_Settings_Sub", " ", ""},
        {"Client_Settings_Sub", "12 dB/oct", "12 dB/Oct"},
        {"Client_Settings_Sub", "Speaker:", "Gerät:"},
        {"Client_Settings_Sub", "Slope:", "Steilheit:"},
        {"Client_Settings_Sub", "Inverse", "Invertiert"},
        {"Client_Settings_Group", "Volume: 0 / 100", "Lautstärke: 0 / 100"},
        {"Client_Settings_Sub_Profiles", "SAVE", "OK"},
        {"Client_Hood", "Time Delay:", "Time Delay:"},
        {"Client_Hood", "Restart App to turn on debugging", "Für DEBUG Tab App neu starten!"},
        {"Client_Settings_Empty", "Unknow Speaker type... :-(", "Unbekannter Lautsprechertyp... :-("},
        {"Client_Conf", "SAVE", "OK"},
        {"Client_Conf", "Clicking on SAVE will reboot your\nVIRELO Air-Speakers!",
         "Klicken auf OK lässt Ihre\nVIRELO Airs neu starten!"},
    };
    for (const Row &row : rows)
        QTest::addRow("%s: %s", row.context, row.source)
            << QByteArray(row.context) << QByteArray(row.source) << QString::fromUtf8(row.german);
}

void tst_catalogues::german_telling_rows()
{
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    QFETCH(QString, german);
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "de_DE"));
    QCOMPARE(translator.translate(context, source), german);
    const Compiled_Catalogue catalogue = compiled("de");
    QVERIFY(catalogue.messages.contains({context, source})); // the spacer's answer would be the same without
    QCOMPARE(catalogue.messages.value({context, source}), german);
}

void tst_catalogues::german_spacer_changes_nothing_on_the_screen()
{
    // Qt takes the empty translation for none and shows the source text, so the blank row keeps its height.
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "de_DE"));
    QCoreApplication::installTranslator(&translator);
    const auto remove = qScopeGuard([&] { QCoreApplication::removeTranslator(&translator); });
    QCOMPARE(QCoreApplication::translate("Client_Settings_Sub", " "), QStringLiteral(" "));
}

void tst_catalogues::german_text_is_never_empty_but_for_the_spacer()
{
    const Compiled_Catalogue german = compiled("de");
    for (auto message = german.messages.begin(); message != german.messages.end(); ++message) {
        const bool spacer = message.key() == Message_Key("Client_Settings_Sub", " ");
        QVERIFY2(message.value().isEmpty() == spacer, message.key().second);
    }
}

void tst_catalogues::english_catalogue_has_34_messages()
{
    const Compiled_Catalogue english = compiled("en");
    QVERIFY(english.readable);
    QCOMPARE(english.hash_entries, 34);
    QCOMPARE(english.messages.size(), 34);
}

void tst_catalogues::english_catalogue_changes_back_next_prompt_and_one_header_only()
{
    const QMap<QByteArray, QString> changed = {
        {"<< Back", "< Back"},
        {"Next >>", "Next >"},
        {"Please select your private WLAN\n  ", "Please select your private WLAN"},
        {"WiFi Name", "WLAN Name"}};
    const Compiled_Catalogue english = compiled("en");
    QSet<QByteArray> seen;
    for (auto message = english.messages.begin(); message != english.messages.end(); ++message) {
        const QByteArray source = message.key().second;
        QCOMPARE(message.value(), changed.value(source, QString::fromUtf8(source)));
        seen.insert(source);
    }
    for (const QByteArray &source : changed.keys())
        QVERIFY2(seen.contains(source), source);
}

void tst_catalogues::english_quit_stands_alone_in_the_air_and_group_tabs()
{
    const Compiled_Catalogue english = compiled("en");
    QCOMPARE(english.keys("Client_Settings_Air"), QList<QByteArray>{"Quit"});
    QCOMPARE(english.keys("Client_Settings_Group"), QList<QByteArray>{"Quit"});
}

void tst_catalogues::english_key_is_a_german_key_but_for_quit_in_the_air_tab()
{
    // A key under a wrong context, or with a wrong blank, would never be asked for.
    for (const Message_Key &key : compiled("en").messages.keys()) {
        const bool german = german_keys.value(key.first).contains(key.second);
        QVERIFY2(german != (key == Message_Key("Client_Settings_Air", "Quit")),
                 key.first + ": " + key.second);
    }
}

void tst_catalogues::locale_finds_its_catalogue_data()
{
    QTest::addColumn<QString>("catalogue");
    for (const char *locale : {"de_DE", "de_AT", "de_CH", "de"})
        QTest::newRow(locale) << ":/translations/VIRELO_de.qm";
    for (const char *locale : {"en_GB", "en_US", "en"})
        QTest::newRow(locale) << ":/translations/VIRELO_en.qm";
    for (const char *locale : {"fr_FR", "C"})
        QTest::newRow(locale) << "";
}

void tst_catalogues::locale_finds_its_catalogue()
{
    QFETCH(QString, catalogue);
    QTranslator translator;
    QCOMPARE(load_as_at_start(translator, QTest::currentDataTag()), !catalogue.isEmpty());
    QCOMPARE(translator.filePath(), catalogue);
    QCOMPARE(translator.isEmpty(), catalogue.isEmpty());
}

void tst_catalogues::german_locale_shows_german()
{
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "de_AT"));
    QCOMPARE(translator.translate("Client_Overview", "Quit"), QStringLiteral("Beenden"));
    QCOMPARE(translator.translate("Client_Group", "Click \"Create Group\"!"),
             QStringLiteral("Auf „Gruppe erstellen“ klicken!"));
}

void tst_catalogues::british_locale_shows_a_short_back_data()
{
    QTest::addColumn<QByteArray>("context");
    for (auto keys = german_keys.begin(); keys != german_keys.end(); ++keys) {
        if (keys.value().contains("<< Back"))
            QTest::newRow(keys.key()) << keys.key();
    }
}

void tst_catalogues::british_locale_shows_a_short_back()
{
    QFETCH(QByteArray, context);
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "en_GB"));
    QCOMPARE(translator.translate(context, "<< Back"), QStringLiteral("< Back"));
}

void tst_catalogues::british_locale_shows_short_texts_of_the_networks()
{
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "en_GB"));
    QCOMPARE(translator.translate("Client_WLANs", "Next >>"), QStringLiteral("Next >"));
    QCOMPARE(translator.translate("Client_WLANs", "Please select your private WLAN\n  "),
             QStringLiteral("Please select your private WLAN"));
    QCOMPARE(translator.translate("Client_WLANs", "WiFi Name"), QStringLiteral("WLAN Name"));
}

void tst_catalogues::french_locale_shows_the_source_texts()
{
    QTranslator translator;
    QVERIFY(!load_as_at_start(translator, "fr_FR"));
    QCoreApplication::installTranslator(&translator); // refused or not, the texts have to stand
    const auto remove = qScopeGuard([&] { QCoreApplication::removeTranslator(&translator); });
    for (auto keys = german_keys.begin(); keys != german_keys.end(); ++keys) {
        for (const QByteArray &source : keys.value())
            QCOMPARE(QCoreApplication::translate(keys.key(), source), QString::fromUtf8(source));
    }
}

void tst_catalogues::german_leaves_unknown_keys_as_they_are()
{
    // These labels are English in German as well: their keys are in no catalogue, and that is meant.
    QTranslator translator;
    QVERIFY(load_as_at_start(translator, "de"));
    QCoreApplication::installTranslator(&translator);
    const auto remove = qScopeGuard([&] { QCoreApplication::removeTranslator(&translator); });
    QCOMPARE(QCoreApplication::translate("Client_Hood", "Restart App!"), QStringLiteral("Restart App!"));
    QCOMPARE(QCoreApplication::translate("Client_Settings_Air", "SPDIF Vol:"), QStringLiteral("SPDIF Vol:"));
    QCOMPARE(QCoreApplication::translate("Client_Overview", "in "), QStringLiteral("in "));
}

QTEST_GUILESS_MAIN(tst_catalogues)
#include "tst_catalogues.moc"
