#include "store/jet_diary.h"

#include "platform/child_program.h"
#include "platform/failure.h"
#include "store/database_format.h"
#include "store/jet_record.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::ChildProgram;
using platform::Failure;
using std::chrono::milliseconds;

namespace {

/// What the shell and the loader end with when there is no such program, or a library of it is missing.
constexpr int kNotStarted = 127;

[[noreturn]] void refuseStart(const QString& program, const QString& reason) {
    throw Failure(u"旧形式(Jet)の日記を読むプログラムを起動できません。"_s, program, reason,
                  u"日記は変更されていません。Velloriaをインストールし直してください。"_s);
}

QString reasonOf(const ChildProgram::End& end) {
    return end.bySignal ? u"読み取りプログラムがシグナル%1で止まりました"_s.arg(end.code)
                        : u"読み取りプログラムが終了コード%1で止まりました"_s.arg(end.code);
}

} // namespace

struct JetDiary::Answer {
    jet::Record record;

    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&record);
    }
};

JetDiary::JetDiary(QString file, JetProgram program)
    : m_file(std::move(file))
    , m_program(program.file.isEmpty() ? JetProgram{platform::folderOfExecutable() + u"velloria-jet"_s, program.silence}
                                       : std::move(program)) {}

JetDiary::~JetDiary() = default;

void JetDiary::start(const QStringList& arguments) {
    m_isAtEnd = false;
    m_count = -1;
    m_read = 0;
    m_child.reset();
    try {
        m_child = std::make_unique<ChildProgram>(m_program.file, arguments);
    } catch (const Failure& failure) {
        refuseStart(m_program.file, failure.reason());
    }
}

void JetDiary::refuseDamaged(const QString& reason, qint64 expected) const {
    QString read = u"「%1」は"_s.arg(m_table);
    if (expected >= 0)
        read += u"%1件のうち"_s.arg(expected);
    read += u"%1件まで読めました: "_s.arg(m_read);
    throw Failure(u"旧形式(Jet)の日記データベースが壊れています。"_s, m_file,
                  (m_table.isEmpty() ? u""_s : read) + reason, unchangedAndRestore());
}

QByteArray JetDiary::nextRecord() {
    const auto read = [this](qint64 count) {
        QByteArray bytes;
        const ChildProgram::Reading reading = m_child->read(count, m_program.silence, bytes);
        if (reading == ChildProgram::Reading::Silent)
            refuseDamaged(u"読み取りが%1秒間進みません"_s.arg(double(m_program.silence.count()) / 1000), m_count);
        if (reading == ChildProgram::Reading::End) {
            const auto end = m_child->waitForEnd(m_program.silence);
            if (end && !end->bySignal && end->code == kNotStarted)
                refuseStart(m_program.file, {});
            refuseDamaged(end && (end->bySignal || end->code != 0) ? reasonOf(*end) : u"読み取りが途中で終わりました"_s,
                          m_count);
        }
        return bytes;
    };
    const quint32 length = jet::lengthOf(read(jet::kLengthBytes));
    if (length > jet::kLongestRecord)
        refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
    return read(length);
}

JetDiary::Answer JetDiary::nextAnswer() {
    for (;;) {
        std::optional<jet::Record> record = jet::recordOf(nextRecord());
        if (!record)
            refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
        if (std::holds_alternative<jet::Progress>(*record))
            continue;
        if (const auto* error = std::get_if<jet::Error>(&*record)) {
            m_read = error->read;
            switch (error->fault) {
            case jet::Fault::NoTable:
                throw Failure(u"旧形式(Jet)の日記に必要な表がありません。"_s, m_file, error->reason,
                              unchangedAndRestore());
            case jet::Fault::NoColumn:
                throw Failure(u"旧形式(Jet)の日記に必要な列がありません。"_s, m_file, error->reason,
                              unchangedAndRestore());
            case jet::Fault::NotReadable:
                throw Failure(u"旧形式(Jet)の日記データベースを読み取れません。"_s, m_file, error->reason,
                              unchangedAndRestore());
            case jet::Fault::Damaged:
                break;
            }
            refuseDamaged(error->reason, error->expected);
        }
        return {std::move(*record)};
    }
}

/// The last record is only as good as the end of the program behind it.
void JetDiary::requireGoodEnd() {
    QByteArray more;
    if (m_child->read(1, m_program.silence, more) != ChildProgram::Reading::End)
        refuseDamaged(u"読み取りが終わりません"_s, m_count);
    const auto end = m_child->waitForEnd(m_program.silence);
    if (!end)
        refuseDamaged(u"読み取りが終わりません"_s, m_count);
    if (end->bySignal || end->code != 0)
        refuseDamaged(reasonOf(*end), m_count);
    m_isAtEnd = true;
    m_child.reset();
}

qint64 JetDiary::open(const QString& table, const QStringList& columns) {
    m_table = table;
    m_columns = columns.size();
    start(QStringList{u"table"_s, m_file, table} + columns);
    const Answer answer = nextAnswer();
    const auto* begin = answer.as<jet::Begin>();
    if (!begin || begin->count < 0)
        refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
    m_count = begin->count;
    return m_count;
}

bool JetDiary::next(std::vector<OldValue>& row) {
    if (m_isAtEnd)
        return false;
    Answer answer = nextAnswer();
    if (auto* values = std::get_if<jet::Row>(&answer.record)) {
        if (qsizetype(values->values.size()) != m_columns || m_read == m_count)
            refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
        ++m_read;
        row = std::move(values->values);
        return true;
    }
    const auto* end = answer.as<jet::End>();
    if (!end)
        refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
    if (end->sent != m_count || m_read != m_count || (end->defined != 0 && end->defined != m_count))
        refuseDamaged(u"件数が合いません"_s, end->defined != 0 ? end->defined : m_count);
    requireGoodEnd();
    return false;
}

qint64 JetDiary::version() {
    m_table.clear();
    start({u"version"_s, m_file});
    const Answer answer = nextAnswer();
    const auto* version = answer.as<jet::Version>();
    if (!version)
        refuseDamaged(u"読み取りプログラムの応答を理解できません"_s, m_count);
    requireGoodEnd();
    return version->number;
}

} // namespace velloria::store
