// SPDX-License-Identifier: Apache-2.0
#include "api/environment_settings.h"
#include "api/parameter_query.h"
#include "api/settings_file.h"
#include "platform/box_paths.h"
#include "tests/support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

// Content of a row whose file does not exist.
const QByteArray missing = "(no file)";

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        BoxPaths::setRoot(m_dir->path());
        qputenv("APP_HOME", QFile::encodeName(m_dir->path() + '/'));
        qputenv("Q_PRIVATE_SETTING_PATH", "private_settings_10_0_0_5_88");
    }

    void readSetting_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        row("stored", QByteArray(R"({"city":"Oslo"})"), "Oslo");
        row("non-ASCII", QByteArray(R"({"city":"Київ"})"), "Київ");
        row("blank before", QByteArray("\n {\"city\":\"Oslo\"}"), "Oslo");
        row("text behind", QByteArray("{\"city\":\"Oslo\"}\njunk"), "Oslo");
        row("missing file", missing, "none");
        row("empty file", QByteArray(), "none");
        row("no JSON", QByteArray("city=Oslo"), "none");
        row("cut short", QByteArray("{\"city\":\"Os"), "none");
        row("list", QByteArray(R"(["city","Oslo"])"), "none");
        row("other member", QByteArray(R"({"City":"Oslo"})"), "none");
        row("number", QByteArray(R"({"city":5})"), "none");
        row("blank in a value", QByteArray(R"({"a":"b c","city":"Oslo"})"), "none");
        row("broken UTF-8", QByteArray("\xff\xfe\xff"), "none");
        row("deep", QByteArray(100000, '['), "none");
    }

    void readSetting()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        if (content != missing)
            writeFile(settingsPath(), content);
        QCOMPARE(SettingsFile::ofCurrentPortal().read("city", "none"), expected);
    }

    void writeSetting_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        row("new file", missing, "a", "b", QByteArray(R"({"a":"b"})"));
        row("replaces", QByteArray(R"({"a":"x","c":1})"), "a", "b",
            QByteArray(R"({"a":"b","c":1})"));
        row("no JSON is lost", QByteArray("a=b"), "c", "d", QByteArray(R"({"c":"d"})"));
        row("blank is lost", QByteArray(R"({"a":"x y"})"), "c", "d", QByteArray(R"({"c":"d"})"));
        row("list stays", QByteArray(R"(["a",1])"), "c", "d", QByteArray(R"(["a",1])"));
        row("empty name", missing, "", "", QByteArray(R"({"":""})"));
        row("quotes, backslash, line break", missing, "\"a\"", "b\\\n\"",
            QByteArray("{\"\\\"a\\\"\":\"b\\\\\\n\\\"\"}"));
        row("non-ASCII", missing, "місто", "Zürich", QByteArray(R"({"місто":"Zürich"})"));
    }

    void writeSetting()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        if (before != missing)
            writeFile(settingsPath(), before);
        SettingsFile::ofCurrentPortal().write({{name, value}});
        QCOMPARE(contentOf(settingsPath()), after);
    }

    void everyPortalHasItsOwnFile()
    {
        SettingsFile::ofCurrentPortal().write({{"language", "uk"}});
        qputenv("Q_PRIVATE_SETTING_PATH", "private_settings_other");
        QCOMPARE(SettingsFile::ofCurrentPortal().read("language", "en"), QString("en"));
        SettingsFile::ofCurrentPortal().write({{"language", "tr"}});
        qputenv("Q_PRIVATE_SETTING_PATH", "private_settings_10_0_0_5_88");
        QCOMPARE(SettingsFile::ofCurrentPortal().read("language", "en"), QString("uk"));
    }

    void unfinishedFilesAreRemoved()
    {
        const QStringList kept = {"private_settings_a",
                                  "private_settings_a.AbCdEfG",
                                  "private_settings_a.BACKUP",
                                  "private_settings_a.Backup",
                                  "private_settings_a.backup",
                                  "private_settings_b.AbCdEf",
                                  "userdata",
                                  "userdata.AbCdEf"};
        for (const QString &name : kept)
            writeFile(m_dir->filePath(name), "x");
        writeFile(m_dir->filePath("private_settings_a.bcDefg"), "x");
        QFile::link("private_settings_a", m_dir->filePath("private_settings_a.ABCDEF"));
        removeUnfinishedSettings();
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name), kept);
        QVERIFY(QFileInfo(m_dir->filePath("private_settings_a.ABCDEF")).isSymLink());
    }

    void noPortalAnnouncedYet()
    {
        qunsetenv("Q_PRIVATE_SETTING_PATH");
        const SettingsFile settings = SettingsFile::ofCurrentPortal();
        settings.write({{"language", "uk"}});
        QCOMPARE(settings.read("language", "en"), QString("en"));
        QVERIFY(QDir(m_dir->path()).isEmpty());
    }

    void environment_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("result");
        row("defaults", R"({"varList":["timezone_conf","clock_format","language"]})",
            "{\"clock_format\":\"12h\",\"language\":\"en\","
            "\"timezone_conf\":\"Europe/Kiev\"}");
        row("no defaults", R"({"varList":["timezone_conf_int","x"]})",
            R"({"timezone_conf_int":"","x":""})");
        row("stored, twice", R"({"varList":["city","city"]})", R"({"city":"Oslo"})");
        row("stored number", R"({"varList":["zoom"]})", R"({"zoom":""})");
        row("only texts count", R"({"varList":["language","foo",5,null,["city"],{}]})",
            R"({"foo":"","language":"en"})");
        row("odd names", "{\"varList\":[\"\",\"a b\",\"\\\"\\n\",\"/../é\"]}",
            "{\"\":\"\",\"\\\"\\n\":\"\",\"/../é\":\"\",\"a b\":\"\"}");
        row("empty list", R"({"varList":[]})", "{}");
        row("no list", R"({"varlist":["city"]})", "{}");
        row("text for a list", R"({"varList":"city"})", "{}");
        row("array", R"(["city"])", "{}");
        row("no JSON", "varList", "{}");
    }

    void environment()
    {
        QFETCH(QString, args);
        QFETCH(QString, result);
        writeFile(settingsPath(), R"({"city":"Oslo","zoom":3})");
        QCOMPARE(environmentAnswer(args, SettingsFile::ofCurrentPortal()),
                 QString(R"({"errCode":0,"errMsg":"","result":%1})").arg(result));
    }

    void storeEnvironment_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QByteArray>("after");
        row("texts only", R"({"b":"2","a":"1","n":3,"t":true,"o":{"x":"y"}})",
            QByteArray(R"({"a":"1","b":"2","old":"x"})"));
        row("a blank empties the file for the next name", R"({"b":"2","a":"New York"})",
            QByteArray(R"({"b":"2"})"));
        row("array", R"(["a","b"])", QByteArray(R"({"old":"x"})"));
        row("no JSON", "{a:b}", QByteArray(R"({"old":"x"})"));
    }

    void storeEnvironment()
    {
        QFETCH(QString, args);
        QFETCH(QByteArray, after);
        writeFile(settingsPath(), R"({"old":"x"})");
        ::storeEnvironment(args, SettingsFile::ofCurrentPortal());
        QCOMPARE(contentOf(settingsPath()), after);
    }

    void parameterQuery_data()
    {
        QTest::addColumn<QString>("par");
        QTest::addColumn<QString>("answer");
        row("video mode", "vmode", "720");
        row("graphics mode", "gmode", "720");
        row("address", "IPAddress", "10.0.0.7");
        row("serial", "SerialNumber", "SN1");
        row("MAC", "MACAddress", "00:1A:2B:3C:4D:5E");
        row("model", "Model", "of Q_MODEL");
        row("description", "ImageDescription", "of Q_IMAGE_DESCRIPTION");
        row("version", "ImageVersion", "of Q_IMAGE_VERSION");
        row("date", "ImageDate", "of Q_IMAGE_DATE");
        row("hardware", "HardwareVersion", "of Q_HARDWARE_VERSION");
        row("software", "Img_Ver", "of Q_SW_VERSION");
        row("other spelling", "model", "");
        row("blank behind", "vmode ", "");

        row("language", "getenv language", "en");
        row("time zone", "getenv timezone_conf", "Europe/Kiev");
        row("time zone number", "getenv timezone_conf_int", "Europe/Kiev");
        row("time server", "getenv ntpurl", "pool.ntp.org");
        row("partitions", "getenv mtdparts", "boot RootFs2");
        row("word inside", "getenv language_of_menu", "en");
        row("no default", "getenv clock_format", "");
        row("stored", "getenv city", "Oslo");
        row("verb inside a word", "/bin/getenv city", "Oslo");
        row("three pieces", "getenv language extra", "");
        row("two blanks", "getenv  language", "");
        row("one piece", "getenv", "");
        row("read before write", "setenv getenv", "");
        row("read before storage", "getenv get_hdd_info", "");

        row("storage", "get_storage_info", "[disk]");
        row("disk, words around", "x get_hdd_info y", "[disk]");
        row("storage before count", "get_crc_count get_hdd_info", "[disk]");
        row("count", "get_crc_count 1", "0");
        row("count before removal", "RemoveFile get_crc_count", "0");
        row("unknown", "reboot", "");
        row("empty", "", "");
        row("odd letters", "\"\n\\ ü", "");
    }

    void parameterQuery()
    {
        QFETCH(QString, par);
        QFETCH(QString, answer);
        for (const char *name : {"Q_MODEL", "Q_IMAGE_DESCRIPTION", "Q_IMAGE_VERSION",
                                 "Q_IMAGE_DATE", "Q_HARDWARE_VERSION", "Q_SW_VERSION"})
            qputenv(name, QByteArray("of ") + name);
        writeFile(settingsPath(), R"({"city":"Oslo"})");
        QCOMPARE(query(par), answer);
        QCOMPARE(m_storageCalls, answer == "[disk]" ? 1 : 0);
        qunsetenv("Q_MODEL");
        QCOMPARE(query("Model"), QString());
        QCOMPARE(contentOf(settingsPath()), QByteArray(R"({"city":"Oslo"})"));
    }

    void setByQuery_data()
    {
        QTest::addColumn<QString>("par");
        QTest::addColumn<QByteArray>("after");
        row("set", "setenv city Rome", QByteArray(R"({"city":"Rome"})"));
        row("other order", "a b setenv", QByteArray(R"({"b":"setenv"})"));
        row("empty value", "setenv city ", QByteArray(R"({"city":""})"));
        row("no value", "setenv city", missing);
        row("four pieces", "setenv city New York", missing);
        row("reads instead", "setenv getenv x", missing);
    }

    void setByQuery()
    {
        QFETCH(QString, par);
        QFETCH(QByteArray, after);
        QCOMPARE(query(par), QString());
        QCOMPARE(contentOf(settingsPath()), after);
    }

    void removeByQuery_data()
    {
        QTest::addColumn<QString>("par");
        QTest::addColumn<QString>("answer");
        row("plain", "RemoveFile %1/file", "Ok");
        row("quoted", "RemoveFile \"%1/file\"", "Ok");
        row("quoted file name", "RemoveFile \"%1/\"quoted\"\"", "Ok");
        row("one quote only", "RemoveFile \"%1/file", "Fail");
        row("missing", "RemoveFile %1/none", "Fail");
        row("directory", "RemoveFile %1", "Fail");
        row("lone quote", "RemoveFile \"", "Fail");
        row("empty name", "RemoveFile ", "Fail");
        row("blank in the name", "RemoveFile %1/a file", "");
        row("no name", "RemoveFile", "");
    }

    void removeByQuery()
    {
        QFETCH(QString, par);
        QFETCH(QString, answer);
        for (const char *name : {"file", "a", "\"quoted\""})
            writeFile(m_dir->filePath(name), "x");
        QCOMPARE(query(par.replace("%1", m_dir->path())), answer);
        const int left = int(QDir(m_dir->path()).count()) - 2; // without "." and ".."
        QCOMPARE(left, answer == "Ok" ? 2 : 3);
    }

private:
    QString settingsPath() const { return m_dir->filePath("private_settings_10_0_0_5_88"); }

    QString query(const QString &par)
    {
        m_storageCalls = 0;
        const auto storageInfo = [this] {
            ++m_storageCalls;
            return QString("[disk]");
        };
        return answerParameterQuery(par, {"10.0.0.7", "SN1", "00:1A:2B:3C:4D:5E", storageInfo},
                                    SettingsFile::ofCurrentPortal());
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    int m_storageCalls = 0;
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
