#include "support/test_home.h"

#include "core/setting.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {

FactoryHome::FactoryHome() {
    const QDir factory(QStringLiteral(VELLORIA_PROGRAM_FOLDER));
    for (const QString& name : factory.entryList(QDir::Files)) {
        // Neither the programs themselves nor plug-ins, which a test puts there when it wants one.
        if (!name.startsWith(u"velloria"_s) && !name.endsWith(u".dll"_s) && !name.endsWith(u".exe"_s))
            platform::copyFile(factory.filePath(name), home.filePath(name));
    }
    setNow(u"2004/05/06 08:05:09"_s);
}

shell::StartResult FactoryHome::start(const std::optional<shell::Login>& login) {
    return shell::Startup(run).run(home.path(), login);
}

void FactoryHome::setNow(const QString& now) {
    clock = platform::FixedClock(QDateTime::fromString(now, u"yyyy/MM/dd HH:mm:ss"_s));
}

bool FactoryHome::exists(const QString& file) const {
    return QFileInfo::exists(file);
}

QByteArray FactoryHome::bytesOf(const QString& file) const {
    return platform::readFile(file);
}

QString FactoryHome::pageOf(const QString& file) const {
    return platform::fromCodePage(bytesOf(file));
}

void FactoryHome::writeFile(const QString& file, const QByteArray& bytes) const {
    platform::replaceFile(file, bytes, platform::Durability::Derived);
}

QStringList FactoryHome::boxes() const {
    QStringList boxes;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"message"_s)
            boxes += event[u"kind"_s].toString() + u": "_s + event[u"text"_s].toString();
    }
    return boxes;
}

unsigned FactoryHome::modeOf(const QString& file) {
    struct stat status {};
    return ::stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

QMap<QString, QByteArray> FactoryHome::contentOf(const QString& folder) {
    QMap<QString, QByteArray> content;
    QDirIterator names(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (names.hasNext()) {
        const QString name = names.next();
        content.insert(name.sliced(folder.size()), names.fileInfo().isDir() ? "(folder)" : platform::readFile(name));
    }
    return content;
}

TestHome::TestHome() {
    startAt(u"2004/05/06 08:05:09"_s);
}

void TestHome::startAt(const QString& now) {
    setNow(now);
    if (start() != shell::StartResult::Ready)
        throw std::runtime_error("the start ended early");
}

QSet<QString> FactoryHome::boxTitles() const {
    QSet<QString> titles;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"message"_s)
            titles += event[u"title"_s].toString();
    }
    return titles;
}

QString FactoryHome::lastStatus() const {
    const QStringList texts = desk.texts(u"status"_s);
    return texts.isEmpty() ? QString() : texts.last();
}

QStringList FactoryHome::turns() const {
    QStringList turns;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"pointer"_s)
            turns += event[u"shape"_s].toString();
        else if (event[u"event"_s] == u"message"_s)
            turns += event[u"text"_s].toString();
        else if (event[u"event"_s] == u"failure"_s)
            turns += u"failure"_s;
    }
    return turns;
}

QStringList FactoryHome::told() const {
    QStringList told;
    for (const QJsonValue& event : desk.events) {
        const QString name = event[u"event"_s].toString();
        if (name != u"pointer"_s)
            told += name + u": "_s + event[name == u"navigate"_s ? u"url"_s : u"text"_s].toString();
    }
    return told;
}

QJsonObject FactoryHome::lastFileEvent() const {
    QJsonObject last;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"file"_s)
            last = event.toObject();
    }
    return last;
}

int TestHome::write(const QString& day, const QString& title, const QString& contents) {
    store::Entry entry = entryOf(day, title);
    entry.contents = contents;
    return write(entry);
}

int TestHome::write(const store::Entry& entry) {
    return diary().saveEntries({entry}, store::PublishTime::AsGiven, {}).front().number;
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

void TestHome::refuseRows(const QString& condition) {
    // A sum that overflows in an index: triggers are off.
    sql(u"CREATE INDEX Refused ON Contents (CASE WHEN %1 THEN abs(-9223372036854775808) END)"_s.arg(condition));
}

QString TestHome::sqlValue(const QString& query) {
    const store::sqlite::Connection connection(session.databaseFile(), store::sqlite::Access::ReadOnly);
    store::sqlite::Statement rows(connection, query.toUtf8());
    if (!rows.next())
        return {};
    const QString value = rows.text(0);
    return value.isNull() ? u"NULL"_s : value;
}

void TestHome::setSetting(const core::Setting& key, const QString& value) {
    core::writeQuietly(session, key, value);
}

void TestHome::removeSetting(const core::Setting& key) {
    core::SettingsChange change;
    change.remove(session, key);
    change.writeQuietly();
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

bool holdsInChild(const std::function<bool()>& action) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            ::_exit(action() ? 0 : 1);
        } catch (...) {
            ::_exit(1); // the child must never go on with the parent's tests
        }
    }
    int result = -1;
    ::waitpid(child, &result, 0);
    return WIFEXITED(result) && WEXITSTATUS(result) == 0;
}

bool holdsForNobody(const std::function<bool()>& action) {
    constexpr uid_t kNobody = 65534;
    return holdsInChild([&] { return (::geteuid() != 0 || ::setuid(kNobody) == 0) && action(); });
}

} // namespace velloria::tests
