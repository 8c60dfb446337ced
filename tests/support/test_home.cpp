#include "support/test_home.h"

#include "core/ini.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "shell/startup.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {

TestHome::TestHome() {
    const QDir factory(QStringLiteral(VELLORIA_PROGRAM_FOLDER));
    for (const QString& name : factory.entryList(QDir::Files)) {
        if (name != u"velloria-cli"_s)
            platform::copyFile(factory.filePath(name), home.filePath(name));
    }
    startAt(u"2004/05/06 08:05:09"_s);
}

void TestHome::startAt(const QString& now) {
    clock = std::make_unique<platform::FixedClock>(QDateTime::fromString(now, u"yyyy/MM/dd HH:mm:ss"_s));
    shell::Startup startup(session, desk, *clock);
    if (startup.run(home.path() + u'/', std::nullopt) != shell::StartResult::Ready)
        throw std::runtime_error("the start ended early");
}

int TestHome::write(const QString& day, const QString& title, const QString& contents) {
    store::Entry entry = entryOf(day, title);
    entry.contents = contents;
    return write(entry);
}

int TestHome::write(const store::Entry& entry) {
    return diary().SaveEntries({entry}, store::PublishTime::AsGiven, {}).front().number;
}

store::Entry TestHome::entryOf(const QString& day, const QString& title) {
    store::Entry entry;
    entry.day = day;
    entry.number = 0;
    entry.title = title;
    entry.contents = entry.extend = entry.excerpt = entry.importMark = u""_s;
    entry.weather = u"-"_s;
    entry.genre = u"一般"_s;
    return entry;
}

void TestHome::sql(const QString& statement) {
    store::sqlite::Connection connection(session.databaseFile(), store::sqlite::Access::ReadWrite);
    connection.execute(statement.toUtf8().constData());
}

QString TestHome::sqlValue(const QString& query) {
    const store::sqlite::Connection connection(session.databaseFile(), store::sqlite::Access::ReadOnly);
    store::sqlite::Statement rows(connection, query.toUtf8());
    if (!rows.next())
        return {};
    const QString value = rows.text(0);
    return value.isNull() ? u"NULL"_s : value;
}

namespace {

QString fileOf(const core::Session& session, site::SettingsFile file) {
    switch (file) {
    case site::SettingsFile::Frame:
        return session.FrameIniFile;
    case site::SettingsFile::Rss:
        return session.RSSIniFile;
    case site::SettingsFile::HaloScan:
        return session.HaloScanIniFile;
    case site::SettingsFile::Endpoints:
        return session.MyPath + u"endpoints.ini"_s;
    case site::SettingsFile::Customize:
        break;
    }
    return session.CustIniFile;
}

} // namespace

void TestHome::setSetting(const site::SiteKey& key, const QString& value) {
    core::WriteIni(fileOf(session, key.file), key.section, key.name, value);
}

void TestHome::removeSetting(const site::SiteKey& key) {
    core::DeleteIniKey(fileOf(session, key.file), key.section, key.name);
}

void TestHome::clearSettings() {
    for (const QString& file : {session.CustIniFile, session.FrameIniFile, session.RSSIniFile, session.HaloScanIniFile})
        writeFile(file, {});
}

void TestHome::writePiece(const QString& name, const QByteArray& bytes) {
    writeFile(session.DataPath + u"Customize/"_s + name + u".htm"_s, bytes);
}

void TestHome::useSite(const QString& fileName) {
    session.FilePath = path(u"site/"_s);
    session.FileName = fileName;
    platform::makeFolder(path(u"site"_s));
}

bool TestHome::exists(const QString& file) const {
    return QFileInfo::exists(file);
}

QByteArray TestHome::bytesOf(const QString& file) const {
    return platform::readFile(file);
}

QString TestHome::pageOf(const QString& file) const {
    return platform::fromCodePage(bytesOf(file));
}

void TestHome::writeFile(const QString& file, const QByteArray& bytes) const {
    platform::replaceFile(file, bytes, platform::Durability::Derived);
}

} // namespace velloria::tests
